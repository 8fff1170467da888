// Reading XML, and writing what was read.
#include "FuzzInput.h"
#include "document/XML.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* Data, std::size_t Size) {
  using namespace qxsvg;
  const auto Vendor = Services().XML.Get();
  std::unique_ptr<IXMLDocument> Document;
  try {
    Document = Vendor->LoadFromBytes({reinterpret_cast<const char*>(Data), Size});
  } catch (const EXMLError&) {
    return 0;
  } catch (const ESVGException&) {
    return 0;
  }
  IXMLNode* Root = Document->DocumentElement();
  if (!Root) return 0;
  // What was read once can be written and read again; the second time around nothing changes.
  const bool Indent = Size % 2 == 0;
  Document->SetNodeAutoIndent(Indent);
  try {
    const auto Again = Vendor->LoadFromBytes(Document->ToUtf8());
    fuzz::Check(Indent || Again->DocumentElement()->Text() == Root->Text(), "text is kept");
    Again->SetNodeAutoIndent(Indent);
    const std::string Written = Again->ToUtf8();
    const auto Third = Vendor->LoadFromBytes(Written);
    Third->SetNodeAutoIndent(Indent);
    fuzz::Check(Third->ToUtf8() == Written, "writing comes to rest");
  } catch (const ESVGException&) {
    // Expanded entities may nest deeper than the limit.
  }
  return 0;
}
