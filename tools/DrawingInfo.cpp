#include "tools/DrawingInfo.h"

#include <chrono>

#include "document/Document.h"
#include "document/Placeholder.h"
#include "document/XML.h"
#include "tools/Input.h"

namespace qxsvg::tools {

namespace {

void Gather(const TSVGElement& Element, DrawingInfo& Info) {
  const std::string Name = ElementName(Element);
  ++Info.Elements[Name];
  if (Element.IsPlaceholder() || Element.GetSVGType() == TSVGElementType::etScript)
    ++Info.NotDrawn[Name];
  if (const std::string ID = GivenID(Element); !ID.empty()) Info.Identifiers.push_back(ID);
  for (const TSVGElement* Child : Element.Items()) Gather(*Child, Info);
}

// What a property is on an element that says nothing about it, for each class of elements.
const String& InitialText(const TSVGElementClass& Class, TSVGStyleProperty Property) {
  using Texts = std::array<String, SVGStylePropertyCount>;
  static std::map<const TSVGElementClass*, Texts> Known;
  const auto [Found, IsNew] = Known.try_emplace(&Class);
  if (IsNew) {
    const auto Fresh = Class.Create ? Class.Create(nullptr) : nullptr;
    TSVGGraphicElement* Graphic = Fresh ? Fresh->AsGraphicElement() : nullptr;
    for (const TSVGStylePropertyRow& Row : SVGStylePropertyRows)
      if (Graphic) Found->second[Ordinal(Row.Property)] = Graphic->PropertyText(Row.Property);
  }
  return Found->second[Ordinal(Property)];
}

}  // namespace

std::size_t DrawingInfo::ElementCount() const {
  std::size_t Sum = 0;
  for (const auto& [Name, Count] : Elements) Sum += Count;
  return Sum;
}

std::string ElementName(const TSVGElement& Element) {
  if (Element.IsPlaceholder()) {
    // The type's own name would do, except where one type stands for several words.
    const auto& Placeholder = static_cast<const TSVGPlaceholder&>(Element);
    if (!Placeholder.Name().empty()) return ToUtf8(Placeholder.Name());
  }
  return ToUtf8(Element.SVGTypeName());
}

std::string GivenID(const TSVGElement& Element) {
  return Element.HasMadeUpID() ? std::string() : ToUtf8(Element.ID());
}

DrawingInfo LoadWithInfo(TSVGDocument& Drawing, const std::string& Name) {
  DrawingInfo Info;
  // The numbers of the tree are in pixels: what the file says is in its XML alone.
  Drawing.OnParsingNode = [&](TPersistent* Sender, IXMLNode& Node) {
    if (Sender != &Drawing) return;
    Info.Width = ToUtf8(Node.GetAttribute(u"width"));
    Info.Height = ToUtf8(Node.GetAttribute(u"height"));
    Info.ViewBox = ToUtf8(Node.GetAttribute(u"viewBox"));
    Drawing.OnParsingNode = nullptr;
  };
  const auto Begin = std::chrono::steady_clock::now();
  LoadDrawing(Drawing, Name);
  const std::chrono::duration<double, std::milli> Time = std::chrono::steady_clock::now() - Begin;
  Info.LoadMilliseconds = Time.count();
  Gather(Drawing, Info);
  return Info;
}

std::vector<std::pair<std::string, std::string>> ComputedProperties(TSVGElement& Element) {
  std::vector<std::pair<std::string, std::string>> Result;
  TSVGGraphicElement* Graphic = Element.AsGraphicElement();
  if (!Graphic) return Result;
  for (const TSVGStylePropertyRow& Row : SVGStylePropertyRows) {
    if (Row.Property == TSVGStyleProperty::ipNone) continue;
    const String Text = Graphic->EffectivePropertyText(Row.Property);
    // What inherits begins at the root, whatever the class would begin with by itself.
    const TSVGElementClass& Origin = Row.IsInherited ? TSVGDocument::Class : Element.ClassType();
    if (Text != InitialText(Origin, Row.Property))
      Result.emplace_back(ToUtf8(Row.Name), ToUtf8(Text));
  }
  return Result;
}

}  // namespace qxsvg::tools
