// What a graphic element makes only when it is needed, for its own sources.
#pragma once

#include <array>
#include <memory>

#include "graphics/GraphicElement.h"
#include "graphics/SVGBrush.h"
#include "graphics/SVGFont.h"
#include "graphics/SVGPen.h"
#include "graphics/surface/CoverageCache.h"
#include "graphics/surface/CoverageStamps.h"

namespace qxsvg {

// The properties that most elements have none of.
struct TSVGGraphicElement::References {
  std::array<String, SVGReferenceCount> URIs;
  TRectF ClipRect;
  TRectF BackgroundRect;

  const String& URI(TSVGReference Which) const { return URIs[static_cast<std::size_t>(Which)]; }
  String& URI(TSVGReference Which) { return URIs[static_cast<std::size_t>(Which)]; }
};

struct TSVGGraphicElement::Box {
  TSVGLength X, Y, Width, Height;
};

struct TSVGGraphicElement::Spacings {
  TSVGStylePropertyAutoLength Letter{TSVGStyleProperty::ipLetterSpacing};
  TSVGStylePropertyAutoLength Kerning{TSVGStyleProperty::ipKerning};
  TSVGStylePropertyAutoLength Word{TSVGStyleProperty::ipWordSpacing};
  TSVGBaselineShiftLength BaselineShift{TSVGStyleProperty::ipBaselineShift};
};

struct TSVGGraphicElement::Coverage {
  // Made at the second drawing.
  TQXCoverageCache Fill{QXSharedCoverageBudget(), true};
  TQXCoverageCache Stroke{QXSharedCoverageBudget(), true};
  // Made for what is shown through references.
  std::unique_ptr<TQXCoverageStamps> Stamps;

  TQXCoverageStamps& StampsForWriting() {
    if (!Stamps) Stamps = std::make_unique<TQXCoverageStamps>(QXSharedCoverageBudget());
    return *Stamps;
  }
};

// Holds back the notices of the objects that an element holds. Who has the outermost lock tells of
// them when the work is done, or leaves that out where the children are styled in the same pass.
class TSVGGraphicElement::StylingLock {
 public:
  explicit StylingLock(TSVGGraphicElement& Element) : FElement(Element), FWas(Element.FIsStyling) {
    FElement.FIsStyling = true;
  }
  StylingLock(const StylingLock&) = delete;
  StylingLock& operator=(const StylingLock&) = delete;
  ~StylingLock() { FElement.FIsStyling = FWas; }
  bool IsOutermost() const { return !FWas; }

 private:
  TSVGGraphicElement& FElement;
  bool FWas;
};

}  // namespace qxsvg
