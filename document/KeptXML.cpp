#include "document/KeptXML.h"

#include "document/XML.h"
#include "runtime/Services.h"

namespace qxsvg {

void PutKeptXML(IXMLNode& Node, StringView Text) {
  if (Text.empty()) return;
  const auto Kept = Services().XML.Get()->LoadFromText(Text);
  const IXMLNode* const Root = Kept->DocumentElement();
  if (Node.Parent())
    Node.BecomeCopy(*Root);
  else
    Node.OwnerDocument().DocumentElement()->AddCopy(*Root);
}

}  // namespace qxsvg
