#include "adapters/libxml2/LibXmlVendor.h"

#include <libxml/parser.h>

#include <mutex>

#include "adapters/libxml2/Encoding.h"
#include "adapters/libxml2/Entities.h"
#include "adapters/libxml2/Gzip.h"
#include "adapters/libxml2/Prescan.h"
#include "adapters/libxml2/SaxReader.h"
#include "document/XMLTree.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

std::unique_ptr<IXMLDocument> ReadUtf8(std::string_view Bytes) {
  if (Bytes.size() > Limits::DocumentBytes) throw ESVGException(SDocumentSizeLimit);
  CheckMarkup(Bytes);
  auto Document = std::make_unique<TXMLDocument>();
  TEntities Entities;
  TSaxReader(*Document, Entities).Read(Bytes);
  return Document;
}

std::unique_ptr<IXMLDocument> Decode(std::string_view Bytes) {
  std::string Buffer;
  return ReadUtf8(DecodeDocument(Bytes, Buffer));
}

}  // namespace

TLibXmlVendor::TLibXmlVendor() {
  static std::once_flag Once;
  std::call_once(Once, xmlInitParser);
}

std::unique_ptr<IXMLDocument> TLibXmlVendor::LoadFromBytes(std::string_view Bytes) {
  return IsGzip(Bytes) ? Decode(Decompress(Bytes)) : Decode(Bytes);
}

std::unique_ptr<IXMLDocument> TLibXmlVendor::LoadFromText(StringView Text) {
  if (Text.starts_with(u'\uFEFF')) Text.remove_prefix(1);
  return ReadUtf8(ToUtf8(Text));
}

}  // namespace qxsvg
