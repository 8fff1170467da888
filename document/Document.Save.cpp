// The document as XML.
#include "document/Document.h"
#include "document/NodeWriters.h"
#include "document/XML.h"
#include "foundation/Writers.h"

namespace qxsvg {

void TSVGDocument::SaveToXML(IXMLDocument& XMLDocument) {
  SaveToXML(*XMLDocument.CreateRoot(u"svg"));
}

void TSVGDocument::DoSaveToXML(IXMLNode& Node) {
  Node.DeclareNamespace(StringView(), SVGNamespace);
  Node.DeclareNamespace(u"xlink", XLinkNamespace);
  TSVGCustomViewBox::DoSaveToXML(Node);
  const bool IsCompact = IsCompactXML();
  const TFloatFormat Format(GetFormatStr());
  const auto Save = [&](StringView Name, const TSVGLength& Length) {
    SaveAttrString(Node, Name, SVGLengthToString(Length, GetFormatStr(), 0, 100),
                   IsCompact && Length.Raw() == 0, IsCompact);
  };
  Save(u"x", Xu());
  Save(u"y", Yu());
  Save(u"width", WidthU());
  Save(u"height", HeightU());
  SaveAttrString(Node, u"version", u"1.1", false, false);
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
