#include "document/KeptXML.h"

#include "document/XML.h"
#include "runtime/Services.h"

namespace qxsvg {

void PutKeptXML(IXMLNode& Node, StringView Text) {
  const auto Kept = Services().XML.Get()->LoadFromText(Text);
  const IXMLNode* const Root = Kept->DocumentElement();
  if (!Root) return;
  IXMLNode* const Parent = Node.Parent();
  if (!Parent) {
    Node.OwnerDocument().DocumentElement()->AddCopy(*Root);
    return;
  }
  Parent->AddCopy(*Root);
  Parent->RemoveChild(&Node);
}

}  // namespace qxsvg
