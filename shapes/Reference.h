// What elements that name another element by its identifier share, and the guards that end loops
// and fans of references.
#pragma once

#include "foundation/Limits.h"
#include "graphics/Repeats.h"
#include "runtime/Export.h"

namespace qxsvg {

// Writes the identifier of the element that Self names: Self listens to the graphic element of the
// new one instead of that of the old, as far as there are such, and tells of its change. The same
// identifier does nothing.
void ChangeReference(TSVGElement& Self, String& Reference, StringView Value);

// The graphic element of that identifier in the document of Self, or null.
TSVGGraphicElement* FindGraphicElement(const TSVGElement& Self, StringView ID);

// The budget of one drawing, hit test or measurement, in elements and in pixels of tiles: the
// outermost scope of a thread fills it, the references followed in there draw from it. A program
// that measures many elements of a document may hold one around all.
class QXSVG_API TReferenceScope {
 public:
  explicit TReferenceScope(std::int64_t Budget = Limits::DrawnReferences,
                           std::int64_t TilePixels = Limits::TilePixels);
  TReferenceScope(const TReferenceScope&) = delete;
  TReferenceScope& operator=(const TReferenceScope&) = delete;
  ~TReferenceScope();

  // A number of its own for each outermost scope of the process, 0 outside of all: what is found
  // in the course of one drawing may be used again in that drawing.
  static std::uint64_t Serial();
  // Pays for a tile of so many pixels; false, with nothing paid, where less is left. What is
  // outside of all scopes costs nothing.
  static bool TakePixels(std::int64_t Count);
};

// The budget of searches for what is shown through references, in elements looked at: the outermost
// scope of a thread fills it.
class TSearchScope {
 public:
  TSearchScope();
  TSearchScope(const TSearchScope&) = delete;
  TSearchScope& operator=(const TSearchScope&) = delete;
  ~TSearchScope();
  // Takes one element from the budget; false where nothing is left of it.
  bool Step() const;
};

// What a step costs: drawing and hit testing reach the elements of the target anew each time, while
// its bounds and shape are kept by the target.
enum class TReferenceCost { rcElements, rcNothing };

// One reference being followed, from User to Target, for as long as this object lives. It is false,
// and the target must be left alone, where references are nested too deeply or too much has been
// reached through them; the document hears of it.
class TReferenceStep {
 public:
  TReferenceStep(const TSVGElement& User, const TSVGElement& Target,
                 TReferenceCost Cost = TReferenceCost::rcElements);
  TReferenceStep(const TReferenceStep&) = delete;
  TReferenceStep& operator=(const TReferenceStep&) = delete;
  ~TReferenceStep();
  explicit operator bool() const { return FIsAllowed; }
  // What it cost.
  const TSVGRepeatedExtent& Extent() const { return FExtent; }
  // Pays for a step from User with all steps that were once taken within it, of that extent
  // together; false, with nothing paid, where one of them might not be allowed.
  static bool TakeAtOnce(const TSVGElement& User, const TSVGRepeatedExtent& Extent);

 private:
  TReferenceScope FScope;
  TSVGRepeatedExtent FExtent;
  std::int32_t FLevels = 0;
  bool FIsAllowed = false;
};

// Lends an element to another parent for as long as this object lives; the old parent comes back
// also when an exception passes. False, with nothing lent, where the step is not allowed or the
// child is an ancestor of the new parent already.
class TAdoption {
 public:
  // Raises EInvalidOperation where Child is the parent itself, unless a viewport around it is being
  // walked: then it is left out like any loop.
  TAdoption(TSVGElement& Child, TSVGElement& Parent);
  TAdoption(const TAdoption&) = delete;
  TAdoption& operator=(const TAdoption&) = delete;
  ~TAdoption();
  explicit operator bool() const { return FIsLent; }
  const TSVGRepeatedExtent& Extent() const { return FStep.Extent(); }

 private:
  TReferenceStep FStep;
  TSVGElement* FChild;
  TSVGElement* FParent;
  TSVGElement* FOldParent = nullptr;
  TSVGDocument* FDocument;
  String FID;
  bool FIsLent = false;
};

}  // namespace qxsvg
