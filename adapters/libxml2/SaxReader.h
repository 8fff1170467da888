// From libxml2's events to the tree.
#pragma once

#include <libxml/parser.h>

#include <array>
#include <exception>
#include <string>
#include <string_view>

#include "adapters/libxml2/Entities.h"
#include "document/XMLTree.h"

namespace qxsvg {

// Fills a document from UTF-8. An entity reference is read by a reader of its own into the
// reference's node: libxml2 is told that entities exist, and never what they hold, so that it
// expands nothing and opens nothing by itself.
class TSaxReader {
 public:
  TSaxReader(TXMLDocument& Document, TEntities& Entities);
  TSaxReader(const TSaxReader&) = delete;
  TSaxReader& operator=(const TSaxReader&) = delete;

  // Raises EXMLError for malformed text and ESVGException over a limit.
  void Read(std::string_view Bytes);

 private:
  friend struct TSaxEvents;

  struct TNameEntry {
    const xmlChar* LocalName = nullptr;
    const xmlChar* Prefix = nullptr;
    const TXMLName* Name = nullptr;
  };
  static constexpr std::size_t NameEntries = 256;

  // Reads what an entity holds as children of Reference.
  TSaxReader(const TSaxReader& Outer, TXMLNode* Reference);

  void StartElement(const xmlChar* LocalName, const xmlChar* Prefix, int NamespaceCount,
                    const xmlChar** Namespaces, int AttributeCount, int DefaultedCount,
                    const xmlChar** Attributes);
  void EndElement();
  void Characters(std::string_view Text);
  void Leaf(TXMLNodeType Type, StringView Value);
  void Reference(std::string_view Name);
  void ExpandMarkup(const TEntity& Entity, TXMLNode* Node);
  xmlEntity* Answer(const xmlChar* Name);
  void NoteError(const xmlError& Error);

  TXMLNode* NewNode(TXMLNodeType Type, const TXMLName* Name);
  const TXMLName* Name(const xmlChar* LocalName, const xmlChar* Prefix);
  StringView Value(std::string_view Raw);
  int Line() const;
  bool IsInAttribute() const;

  TXMLDocument& FDocument;
  TEntities& FEntities;
  // What the nodes are counted in; a reader of an entity counts in its outer reader's.
  std::size_t FOwnNodes = 0, FOwnElements = 0;
  std::size_t& FNodes;
  std::size_t& FElements;
  xmlParserCtxt* FContext = nullptr;
  TXMLNode* FParent = nullptr;
  // The text that characters still go to.
  TXMLNode* FText = nullptr;
  int FDepth = 0;
  // For the reader of an entity: the line of the reference; 0 in the document itself.
  int FOuterLine = 0;
  // The element that is wrapped around an entity's text is none of the document.
  int FWrapped = 0;
  xmlEntity FAnswer{};
  std::array<TNameEntry, NameEntries> FNameCache{};
  std::exception_ptr FFailure;
  std::string FMessage;
  int FErrorLine = 0, FErrorColumn = 0;
};

}  // namespace qxsvg
