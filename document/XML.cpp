#include "document/XML.h"

#include <algorithm>
#include <array>

#include "document/XMLTree.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"
#include "runtime/Streams.h"

namespace qxsvg {

IXMLNode::~IXMLNode() = default;
IXMLDocument::~IXMLDocument() = default;
IXMLVendor::~IXMLVendor() = default;

StringView XMLNodeTypeName(TXMLNodeType Type) {
  constexpr std::array<StringView, 6> Names = {
      u"ntElement", u"ntText", u"ntCData", u"ntEntityRef", u"ntProcessingInstr", u"ntComment"};
  return Names[static_cast<std::size_t>(Type)];
}

void IXMLDocument::SaveToStream(TStream& Stream) const {
  Stream.WriteBytes(BytesOf(ToUtf8()));
}

std::unique_ptr<IXMLDocument> IXMLVendor::LoadFromStream(TStream& Stream) {
  if (const TBytesView Rest = Stream.Rest(); !Rest.empty()) {
    auto Document = LoadFromBytes(CharsOf(Rest));
    Stream.Seek(0, TSeekOrigin::soEnd);
    return Document;
  }
  // Read in steps, as the size that a stream tells is not to be trusted with memory; in small ones
  // first, as most drawings are.
  constexpr std::size_t FirstStep = std::size_t{1} << 13, LargestStep = std::size_t{1} << 18;
  std::string Bytes;
  for (std::size_t Step = FirstStep; true; Step = std::min(Step * 2, LargestStep)) {
    const std::size_t Old = Bytes.size();
    Bytes.resize(Old + Step);
    const std::size_t Count = Stream.Read(Bytes.data() + Old, Step);
    Bytes.resize(Old + Count);
    if (Count == 0) break;
    if (Bytes.size() > Limits::DocumentBytes) throw ESVGException(SDocumentSizeLimit);
  }
  return LoadFromBytes(Bytes);
}

std::unique_ptr<IXMLDocument> CreateXMLDocument() {
  return std::make_unique<TXMLDocument>();
}

}  // namespace qxsvg
