// The class values of elements, through which the reader, a clone and the binary stream make them.
#pragma once

#include <array>
#include <memory>

#include "foundation/ElementTypes.h"
#include "runtime/Persistent.h"

namespace qxsvg {

class TSVGDocument;
class TSVGElement;

struct TSVGElementClass : TClass {
  TSVGElementType Type;
  // Makes an instance in Document (may be null); null for a class of which there are no instances.
  std::unique_ptr<TSVGElement> (*Create)(TSVGDocument* Document);
};

template <class T>
std::unique_ptr<TSVGElement> CreateElement(TSVGDocument* Document) {
  return std::make_unique<T>(Document);
}

// The class of each element type; null for types that make no element.
using TSVGElementTypeClasses = std::array<const TSVGElementClass*, SVGElementTypeCount>;
QXSVG_API extern TSVGElementTypeClasses SVGClasses;

// The class of that class name among SVGClasses, or null.
QXSVG_API const TSVGElementClass* GetSVGClass(StringView Name);
// The same; raises EClassNotFound with the name.
QXSVG_API const TSVGElementClass& FindSVGClass(StringView Name);
// The first type whose entry of SVGClasses is Class, or etNone.
QXSVG_API TSVGElementType GetElementType(const TSVGElementClass& Class);

}  // namespace qxsvg
