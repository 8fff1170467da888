// What keeps elements in memory as long as somebody walks over their tree.
#pragma once

#include <memory>

#include "runtime/Export.h"

namespace qxsvg {

class TSVGDocument;
class TSVGElement;
class TSVGStyle;

// Held by whatever goes through a tree and calls handlers of the host on the way: loading, saving,
// styling, drawing, hit testing, emptying and copying, telling of changes, and changing a list of
// children. An element that a handler removes has ended for everybody else (children, listeners,
// identifier), but stays in memory until the outermost walk over its root document is over: who is
// still busy with it finds it empty, without parent and document. A rule of a style sheet stays as
// it is so long.
//
// The root is that of the document an element was made for, which another tree may have taken over
// meanwhile; for one that was made for none it is that of its tree.
//
// The root document itself has to outlive the walk, and so has an element that a handler extracts
// and thereby owns.
class QXSVG_API TTreeWalk {
 public:
  explicit TTreeWalk(const TSVGElement& Element);
  TTreeWalk(const TTreeWalk&) = delete;
  TTreeWalk& operator=(const TTreeWalk&) = delete;
  ~TTreeWalk();

  // Take what has left the tree or a style sheet, which is destroyed when the outermost walk ends.
  // Where there is no root it stays with the caller, who may hold a walk of it.
  void Bury(std::unique_ptr<TSVGElement>&& Departed) const;
  // The same until the end of Other, where that is the one which is part of a larger walk.
  void Bury(std::unique_ptr<TSVGElement>&& Departed, const TTreeWalk& Other) const;
  void Bury(std::unique_ptr<TSVGStyle> Departed) const;

 private:
  bool IsInner() const;

  TSVGDocument* FRoot;
};

}  // namespace qxsvg
