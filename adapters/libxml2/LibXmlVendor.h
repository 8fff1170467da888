// The XML contract on libxml2.
#pragma once

#include "document/XML.h"

namespace qxsvg {

// libxml2 parses, as a stream of events; the tree is the system's own (document/XMLTree.h).
class TLibXmlVendor final : public IXMLVendor {
 public:
  TLibXmlVendor();
  std::unique_ptr<IXMLDocument> LoadFromBytes(std::string_view Bytes) override;
  std::unique_ptr<IXMLDocument> LoadFromText(StringView Text) override;
};

}  // namespace qxsvg
