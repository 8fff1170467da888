// What a stream, a clone and the class table know of the document.
#include <array>

#include "document/Document.h"
#include "shapes/Containers.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

constexpr auto OwnProperties = std::to_array<TProperty>({
    Property<&TSVGDocument::DPI, &TSVGDocument::SetDPI>(u"DPI",
                                                        StoredUnless<&TSVGDocument::DPI, 96>),
    ObjectProperty<TSVGDocument, TSVGPreserveAspectRatio, &TSVGDocument::DefaultAspectRatio>(
        u"DefaultAspectRatio"),
    Property<&TSVGDocument::DefaultColorInterpolation, &TSVGDocument::SetDefaultColorInterpolation>(
        u"DefaultColorInterpolation",
        StoredUnless<&TSVGDocument::DefaultColorInterpolation, TSVGColorInterpolation::sciSRGB>),
    Property<&TSVGDocument::DefaultColorRendering, &TSVGDocument::SetDefaultColorRendering>(
        u"DefaultColorRendering",
        StoredUnless<&TSVGDocument::DefaultColorRendering, TSVGColorRendering::clrnAuto>),
    Property<&TSVGDocument::DefaultShapeRendering, &TSVGDocument::SetDefaultShapeRendering>(
        u"DefaultShapeRendering", StoredUnless<&TSVGDocument::DefaultShapeRendering,
                                               TSVGShapeRendering::srnGeometricPrecision>),
    Property<&TSVGDocument::DefaultTextRendering, &TSVGDocument::SetDefaultTextRendering>(
        u"DefaultTextRendering",
        StoredUnless<&TSVGDocument::DefaultTextRendering, TSVGTextRendering::txrnAuto>),
    Property<&TSVGDocument::FormatStr, &TSVGDocument::SetFormatStr>(
        u"FormatStr",
        [](const TPersistent& Self) {
          return static_cast<const TSVGDocument&>(Self).FormatStr() != DefaultSVGFormatStr;
        }),
    Property<&TSVGDocument::GetOptions, &TSVGDocument::SetOptions>(
        u"Options",
        [](const TPersistent& Self) {
          return static_cast<const TSVGDocument&>(Self).GetOptions() != DefaultSVGOptions;
        }),
    Property<&TSVGDocument::PreferredLanguage, &TSVGDocument::SetPreferredLanguage>(
        u"PreferredLanguage"),
    Property<&TSVGDocument::TransformMatrix, &TSVGDocument::SetIgnoreTransformMatrix>(
        u"TransformMatrix"),
});

constexpr auto Properties = JoinRows(OwnProperties, SVGBoxProperties);

}  // namespace

constinit const TSVGElementClass TSVGDocument::Class{
    {u"TSVGDocument", &TSVGCustomViewBox::Class, Properties, nullptr},
    TSVGElementType::etDoc,
    &CreateElement<TSVGDocument>};

TSVGElementTypes TSVGDocument::ChildSVGTypes() const {
  return SVGStructureChildren;
}

}  // namespace qxsvg
