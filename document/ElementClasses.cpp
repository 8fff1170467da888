// Which class stands for which element type.
#include "document/Document.h"
#include "document/Metadata.h"
#include "document/Placeholder.h"
#include "paint/ClipPath.h"
#include "paint/Gradients.h"
#include "paint/Pattern.h"
#include "runtime/Exceptions.h"
#include "shapes/Circle.h"
#include "shapes/Containers.h"
#include "shapes/Image.h"
#include "shapes/Line.h"
#include "shapes/Marker.h"
#include "shapes/PathElement.h"
#include "shapes/Polyline.h"
#include "shapes/Rectangle.h"
#include "shapes/Symbol.h"
#include "shapes/Use.h"
#include "text/TextElements.h"

namespace qxsvg {

namespace {

using enum TSVGElementType;

constexpr TSVGElementTypeClasses DefaultClasses() {
  TSVGElementTypeClasses Result{};
  const auto Set = [&Result](TSVGElementType Type, const TSVGElementClass& Class) {
    Result[static_cast<std::size_t>(Type)] = &Class;
  };
  Set(etDoc, TSVGDocument::Class);
  Set(etGroup, TSVGGroup::Class);
  Set(etImage, TSVGImage::Class);
  Set(etDefs, TSVGDefs::Class);
  Set(etUse, TSVGUse::Class);
  Set(etCircle, TSVGCircle::Class);
  Set(etEllipse, TSVGEllipse::Class);
  Set(etRectangle, TSVGRectangle::Class);
  Set(etLine, TSVGLine::Class);
  Set(etPolyline, TSVGPolyline::Class);
  Set(etPolygon, TSVGPolygon::Class);
  Set(etPath, TSVGPath::Class);
  Set(etText, TSVGText::Class);
  Set(etSwitch, TSVGSwitch::Class);
  Set(etTSpan, TSVGTextSpan::Class);
  Set(etTextPath, TSVGTextPath::Class);
  Set(etTRef, TSVGTextRef::Class);
  Set(etClipPath, TSVGClipPath::Class);
  Set(etLinearGradient, TSVGLinearGradient::Class);
  Set(etRadialGradient, TSVGRadialGradient::Class);
  Set(etGradientStop, TSVGGradientStop::Class);
  Set(etMarker, TSVGMarker::Class);
  Set(etMetadata, TSVGMetadata::Class);
  Set(etScript, TSVGScript::Class);
  Set(etSymbol, TSVGSymbol::Class);
  Set(etPattern, TSVGPattern::Class);
  Set(etALink, TSVGALinkElement::Class);
  Set(etView, TSVGPlaceholder::Class);
  for (const TSVGElementType Type : TSVGElementTypes::Range(etFont, etForeignObject))
    Set(Type, TSVGPlaceholder::Class);
  return Result;
}

}  // namespace

constinit TSVGElementTypeClasses SVGClasses = DefaultClasses();

const TSVGElementClass* GetSVGClass(StringView Name) {
  for (const TSVGElementClass* Class : SVGClasses)
    if (Class && Class->Name == Name) return Class;
  return nullptr;
}

const TSVGElementClass& FindSVGClass(StringView Name) {
  const TSVGElementClass* const Class = GetSVGClass(Name);
  if (!Class) throw EClassNotFound(u"Class %s not found", {Name});
  return *Class;
}

TSVGElementType GetElementType(const TSVGElementClass& Class) {
  for (std::size_t I = 0; I < SVGClasses.size(); ++I)
    if (SVGClasses[I] == &Class) return static_cast<TSVGElementType>(I);
  return etNone;
}

}  // namespace qxsvg
