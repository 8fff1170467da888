// What elements that name another element by its identifier share.
#pragma once

#include "graphics/GraphicElement.h"

namespace qxsvg {

// Moves the listener Self from the graphic element of the identifier From to that of To; identifiers
// that lead to no graphic element are passed over.
void MoveListener(TSVGElement& Self, StringView From, StringView To);

// The graphic element of that identifier in the document of Self, or null.
TSVGGraphicElement* FindGraphicElement(const TSVGElement& Self, StringView ID);

// Lends an element to another parent for as long as this object lives; the old parent comes back also
// when an exception passes. An element that is destroyed in between is left alone.
class TAdoption {
 public:
  // Raises EInvalidOperation where Child is the parent itself.
  TAdoption(TSVGElement& Child, TSVGElement& Parent);
  TAdoption(const TAdoption&) = delete;
  TAdoption& operator=(const TAdoption&) = delete;
  ~TAdoption();

 private:
  TSVGElement& FChild;
  TSVGElement* FOldParent;
};

}  // namespace qxsvg
