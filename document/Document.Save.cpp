// The document as XML.
#include "document/Document.h"
#include "document/NodeWriters.h"
#include "document/XML.h"
#include "foundation/Writers.h"

namespace qxsvg {

void TSVGDocument::SaveToXML(IXMLDocument& XMLDocument) {
  SaveToXML(*XMLDocument.CreateRoot(u"svg", SVGNamespace));
}

bool TSVGDocument::DoOnSavingElement(TSVGElement* Element, IXMLNode& Node) {
  bool DoSave = true;
  if (OnSavingElement) OnSavingElement(this, Element, Node, DoSave);
  return DoSave;
}

void TSVGDocument::DoOnSavedElement(TSVGElement* Element, IXMLNode& Node) {
  if (OnSavedElement) OnSavedElement(this, Element, Node);
}

}  // namespace qxsvg
