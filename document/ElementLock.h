// The update lock of an element.
#pragma once

#include "document/Element.h"
#include "document/TreeWalk.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

// An update that takes several steps: the notices on the way reach handlers of the host, and one of
// these may remove the element, which stays in memory until its update has ended.
class TElementLock {
 public:
  explicit TElementLock(TSVGElement& Element) : FWalk(Element), FUpdate(Element) {}

 private:
  TTreeWalk FWalk;
  TUpdateLock<TSVGElement> FUpdate;
};

}  // namespace qxsvg
