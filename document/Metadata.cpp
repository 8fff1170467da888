#include "document/Metadata.h"

#include "document/KeptXML.h"
#include "document/TreeWalk.h"
#include "document/XML.h"

namespace qxsvg {

namespace {

constexpr TProperty Properties[] = {
    Property<&TSVGMetadata::XML, &TSVGMetadata::SetXML>(u"XML",
                                                        StoredUnlessEmpty<&TSVGMetadata::XML>),
};

}  // namespace

constinit const TSVGElementClass TSVGMetadata::Class{
    {u"TSVGMetadata", &TSVGElement::Class, Properties, nullptr},
    TSVGElementType::etMetadata,
    &CreateElement<TSVGMetadata>};

constinit const TSVGElementClass TSVGScript::Class{
    {u"TSVGScript", &TSVGMetadata::Class, {}, nullptr},
    TSVGElementType::etScript,
    &CreateElement<TSVGScript>};

TSVGMetadata::~TSVGMetadata() = default;
TSVGScript::~TSVGScript() = default;

void TSVGMetadata::SetXML(StringView Value) {
  if (Value == FXML) return;
  FXML = Value;
  Change(this);
}

void TSVGMetadata::AssignProperties(const TSVGElement* Source) {
  TSVGElement::AssignProperties(Source);
  if (const auto* const Other = dynamic_cast<const TSVGMetadata*>(Source)) FXML = Other->FXML;
}

void TSVGMetadata::Clear() {
  const TTreeWalk Walk(*this);
  TSVGElement::Clear();
  FXML.clear();
}

void TSVGMetadata::DoLoadFromXML(IXMLNode& Node) {
  TSVGElement::DoLoadFromXML(Node);
  FXML = Node.XML();
}

void TSVGMetadata::DoSaveToXML(IXMLNode& Node) {
  PutKeptXML(Node, FXML);
}

}  // namespace qxsvg
