// An element's way in from XML and out to it.
#include "document/Element.h"

#include <array>

#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"

namespace qxsvg {

namespace {

constexpr StringView ListDelimiters = u", ";

// The attributes that every element reads, found in one walk: most elements have none of them.
enum TCommonAttribute { caID, caLang, caTitle, caClass, caFeatures, caExtensions, caLanguages };
constexpr std::array<StringView, 7> CommonAttributeNames{u"id",
                                                         u"lang",
                                                         u"title",
                                                         u"class",
                                                         u"requiredFeatures",
                                                         u"requiredExtensions",
                                                         u"systemLanguage"};

class TCommonAttributes {
 public:
  explicit TCommonAttributes(const IXMLNode& Node) {
    for (const TXMLAttribute& Attribute : Node.Attributes()) {
      const StringView Name = Attribute.LocalName();
      for (std::size_t I = 0; I < CommonAttributeNames.size(); ++I)
        if (Name == CommonAttributeNames[I] && Attribute.Prefix().empty()) FFound[I] = &Attribute;
    }
  }
  bool Has(TCommonAttribute Which) const { return FFound[Which] != nullptr; }
  StringView Value(TCommonAttribute Which) const {
    return FFound[Which] ? FFound[Which]->Value : StringView();
  }

 private:
  std::array<const TXMLAttribute*, CommonAttributeNames.size()> FFound{};
};

}  // namespace

// --- Reading

void TSVGElement::LoadFromXML(IXMLNode& Node) {
  const TElementLock Lock(*this);
  try {
    DoOnParsingNode(this, Node);
    DoLoadFromXML(Node);
    ReadChildren(Node);
    DoOnParsedNode(this);
  } catch (...) {
    // What was read up to here stays, and shall be drawn like anything else.
    FElementState.Exclude(TSVGElementStateFlag::esReading);
    throw;
  }
}

void TSVGElement::DoLoadFromXML(IXMLNode& Node) {
  const TCommonAttributes Attributes(Node);
  if (Attributes.Has(caID)) SetID(Attributes.Value(caID));
  SetLanguage(Attributes.Value(caLang));
  const String Title = ParseString(Node, u"title", StringView());
  SetTitle(Title.empty() ? Attributes.Value(caTitle) : StringView(Title));
  // An element without these texts, as most are, stays without the lists for them.
  const String Text = ParseString(Node, u"desc", StringView());
  if (!Text.empty() || Texts().Description.Count() > 0) Description().SetText(Text);
  if (Attributes.Has(caClass) || Texts().Classes.Count() > 0)
    ParseStringList(Classes(), Attributes.Value(caClass), ListDelimiters);
  const auto ReadRequired = [&](TCommonAttribute Which, const TStrings& Held, auto Target) {
    if (Attributes.Has(Which))
      ParseRequiredStringList(Target(), Attributes.Value(Which), ListDelimiters);
    else if (Held.Count() > 0)
      Target().Clear();
  };
  ReadRequired(caFeatures, Texts().RequiredFeatures,
               [this]() -> TStrings& { return RequiredFeatures(); });
  ReadRequired(caExtensions, Texts().RequiredExtensions,
               [this]() -> TStrings& { return RequiredExtensions(); });
  ReadRequired(caLanguages, Texts().SystemLanguages,
               [this]() -> TStrings& { return SystemLanguages(); });
}

void TSVGElement::DoOnParsingNode(TSVGElement* Element, IXMLNode& Node) {
  if (FOwner) FOwner->DoOnParsingNode(Element, Node);
  FElementState.Include(TSVGElementStateFlag::esReading);
}

void TSVGElement::DoOnParsedNode(TSVGElement* Element) {
  if (FOwner) FOwner->DoOnParsedNode(Element);
  FElementState.Exclude(TSVGElementStateFlag::esReading);
}

// --- Writing

void TSVGElement::SaveToXML(IXMLNode& Node) {
  const TTreeWalk Walk(*this);
  if (!DoOnSavingElement(this, Node)) return;
  DoSaveToXML(Node);
  WriteChildren(Node);
  DoOnSavedElement(this, Node);
}

void TSVGElement::DoSaveToXML(IXMLNode& Node) {
  constexpr char16_t Blank = u' ';
  SaveAttrString(Node, u"id", FID, FID.empty() || HasMadeUpID(), true);
  const TextBlock& T = Texts();
  SaveAttrString(Node, u"lang", T.Language, T.Language.empty(), true);
  SaveNodeString(Node, u"title", T.Title, T.Title.empty(), true);
  SaveNodeString(Node, u"desc", T.Description.Text(), T.Description.Count() == 0, true);
  const auto Save = [&Node](StringView Name, const TStrings& List) {
    SaveAttrString(Node, Name, List, List.Count() == 0, true, Blank);
  };
  Save(u"class", T.Classes);
  Save(u"requiredFeatures", T.RequiredFeatures);
  Save(u"requiredExtensions", T.RequiredExtensions);
  Save(u"systemLanguage", T.SystemLanguages);
}

bool TSVGElement::DoOnSavingElement(TSVGElement* Element, IXMLNode& Node) {
  const bool IsWanted =
      Element->IsEnabled() || (FOwner && GetOptions().Has(TSVGOption::soExportDisabled));
  const bool DoSave = IsWanted && (!FOwner || FOwner->DoOnSavingElement(Element, Node));
  if (DoSave) FElementState.Include(TSVGElementStateFlag::esWriting);
  return DoSave;
}

void TSVGElement::DoOnSavedElement(TSVGElement* Element, IXMLNode& Node) {
  if (FOwner) FOwner->DoOnSavedElement(Element, Node);
  FElementState.Exclude(TSVGElementStateFlag::esWriting);
}

String TSVGElement::ToString() {
  const auto XML = CreateXMLDocument();
  XML->SetNodeAutoIndent(true);
  SaveToXML(*XML->CreateRoot(SVGTypeName(), SVGNamespace));
  return XML->ToText();
}

}  // namespace qxsvg
