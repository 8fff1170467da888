// What a stream, a clone and the class table know of the document.
#include "document/Document.h"
#include "shapes/Containers.h"

namespace qxsvg {

namespace {

constexpr TProperty Properties[] = {
    Property<&TSVGDocument::DPI, &TSVGDocument::SetDPI>(u"DPI",
                                                        StoredUnless<&TSVGDocument::DPI, 96>),
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
    ObjectProperty<TSVGDocument, TSVGPreserveAspectRatio, &TSVGDocument::DefaultAspectRatio>(
        u"DefaultAspectRatio"),
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
    ObjectProperty<TSVGGraphicElement, TSVGLength, &TSVGGraphicElement::Xu>(u"Xu"),
    ObjectProperty<TSVGGraphicElement, TSVGLength, &TSVGGraphicElement::Yu>(u"Yu"),
    ObjectProperty<TSVGGraphicElement, TSVGLength, &TSVGGraphicElement::WidthU>(u"WidthU"),
    ObjectProperty<TSVGGraphicElement, TSVGLength, &TSVGGraphicElement::HeightU>(u"HeightU"),
};

}  // namespace

constinit const TSVGElementClass TSVGDocument::Class{
    {u"TSVGDocument", &TSVGCustomViewBox::Class, Properties, nullptr},
    TSVGElementType::etDoc,
    &CreateElement<TSVGDocument>};

TSVGElementTypes TSVGDocument::ChildSVGTypes() const {
  return SVGStructureChildren;
}

}  // namespace qxsvg
