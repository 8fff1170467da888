#include "shapes/NodeLengths.h"

#include "document/AttributeParsers.h"
#include "document/NodeWriters.h"
#include "foundation/Writers.h"

namespace qxsvg {

void SaveLength(IXMLNode& Node, StringView Name, const TSVGLength& Length,
                const TSVGNumberFormat& Format, float Maximum, bool OmitZero) {
  const bool Omit = OmitZero && Length.Raw() == 0;
  SaveAttrString(Node, Name, Omit ? String() : SVGLengthToString(Length, Format, 0, Maximum), Omit,
                 true);
}

namespace {

constexpr std::array<StringView, 4> BoxNames{u"x", u"y", u"width", u"height"};

void SaveFour(IXMLNode& Node, TSVGGraphicElement& Element, const std::array<StringView, 4>& Names,
              float Maximum, bool OmitZero) {
  const TFloatFormat Format(Element.GetFormatStr());
  const auto Save = [&](StringView Name, float Raw, TSVGLength& (TSVGGraphicElement::*Length)()) {
    if (Name.empty()) return;
    // A length that is 0 need not even be made for being left out.
    if (OmitZero && Raw == 0)
      SaveAttrString(Node, Name, StringView(), true, true);
    else
      SaveLength(Node, Name, (Element.*Length)(), Format, Maximum, OmitZero);
  };
  Save(Names[0], Element.GetXRaw(), &TSVGGraphicElement::Xu);
  Save(Names[1], Element.GetYRaw(), &TSVGGraphicElement::Yu);
  Save(Names[2], Element.GetWidthRaw(), &TSVGGraphicElement::WidthU);
  Save(Names[3], Element.GetHeightRaw(), &TSVGGraphicElement::HeightU);
}

}  // namespace

void SaveBox(IXMLNode& Node, TSVGGraphicElement& Element) {
  SaveFour(Node, Element, BoxNames, 100, Element.IsCompactXML());
}

void SaveLengths(IXMLNode& Node, TSVGGraphicElement& Element,
                 const std::array<StringView, 4>& Names, bool OmitZero) {
  SaveFour(Node, Element, Names, 1, OmitZero);
}

void LoadLength(const IXMLNode& Node, StringView Name, TSVGLength& Length) {
  Length.Clear();
  ParsePercent(Node, Name, Length, 0, 1);
}

void SaveReference(IXMLNode& Node, StringView Reference) {
  if (!Reference.empty())
    SaveAttrString(Node, u"xlink:href", String(u"#").append(Reference), false, false);
}

}  // namespace qxsvg
