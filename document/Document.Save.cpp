// The document as XML.
#include "document/Document.h"
#include "document/NodeWriters.h"
#include "document/XML.h"
#include "foundation/SplitLines.h"
#include "runtime/Streams.h"
#include "runtime/StringList.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

// Narrower lines than this are not made.
constexpr std::int32_t LeastWidth = 32;

String BreakLines(StringView Text, std::int32_t Width) {
  TStringList Lines;
  Lines.SetText(Text);
  SVGSplitLines(Lines, Width);
  return Lines.Text() + u"\r\n";
}

}  // namespace

void TSVGDocument::SaveToFile(StringView FileName, std::int32_t Width) {
  TAtomicFile File(FileName);
  SaveToStream(File, Width);
  File.Finish();
}

void TSVGDocument::SaveToFile(std::string_view FileNameUtf8, std::int32_t Width) {
  SaveToFile(FromUtf8(FileNameUtf8), Width);
}

void TSVGDocument::SaveToStream(TStream& Stream, std::int32_t Width) {
  const auto XML = CreateXMLDocument();
  XML->SetNodeAutoIndent(true);
  SaveToXML(*XML);
  std::string Bytes = XML->ToUtf8();
  if (Width > LeastWidth) Bytes = ToUtf8(BreakLines(FromUtf8(Bytes), Width));
  Stream.WriteBytes(BytesOf(Bytes));
}

void TSVGDocument::SaveToXML(IXMLDocument& XMLDocument) {
  SaveToXML(*XMLDocument.CreateRoot(u"svg"));
}

void TSVGDocument::DoSaveToXML(IXMLNode& Node) {
  Node.DeclareNamespace(StringView(), SVGNamespace);
  Node.DeclareNamespace(u"xlink", XLinkNamespace);
  TSVGCustomViewBox::DoSaveToXML(Node);
  SaveBox(Node, *this);
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
