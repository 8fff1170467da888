#include "document/Placeholder.h"

#include "document/KeptXML.h"
#include "document/TreeWalk.h"
#include "document/XML.h"
#include "foundation/Lookups.h"

namespace qxsvg {

namespace {

constexpr TProperty Properties[] = {
    Property<&TSVGPlaceholder::XML, &TSVGPlaceholder::SetXML>(
        u"XML", StoredUnlessEmpty<&TSVGPlaceholder::XML>),
    Property<&TSVGPlaceholder::Name, &TSVGPlaceholder::SetName>(
        u"Name", StoredUnlessEmpty<&TSVGPlaceholder::Name>),
};

}  // namespace

constinit const TSVGElementClass TSVGPlaceholder::Class{
    {u"TSVGPlaceholder", &TSVGElement::Class, Properties, nullptr},
    TSVGElementType::etNone,
    &CreateElement<TSVGPlaceholder>};

TSVGPlaceholder::~TSVGPlaceholder() = default;

TSVGElementType TSVGPlaceholder::GetSVGType() const {
  return GetSVGElementType(FName);
}

void TSVGPlaceholder::SetName(StringView Value) {
  if (Value == FName) return;
  FName = Value;
  Change(this);
}

void TSVGPlaceholder::SetXML(StringView Value) {
  if (Value == FXML) return;
  FXML = Value;
  Change(this);
}

void TSVGPlaceholder::AssignProperties(const TSVGElement* Source) {
  TSVGElement::AssignProperties(Source);
  const auto* const Other = dynamic_cast<const TSVGPlaceholder*>(Source);
  if (!Other) return;
  FXML = Other->FXML;
  FName = Other->FName;
}

void TSVGPlaceholder::Clear() {
  const TTreeWalk Walk(*this);
  TSVGElement::Clear();
  FXML.clear();
  FName.clear();
}

void TSVGPlaceholder::DoLoadFromXML(IXMLNode& Node) {
  FName = Node.LocalName();
  TSVGElement::DoLoadFromXML(Node);
  FXML = Node.XML();
}

void TSVGPlaceholder::DoSaveToXML(IXMLNode& Node) {
  PutKeptXML(Node, FXML);
}

}  // namespace qxsvg
