// The contract with the XML library: documents, nodes, and the vendor that reads them.
//
// Names, values and texts are UTF-16. Every view that a node gives stays valid as long as the
// document lives and that very value is not changed. A document and its nodes belong to one thread
// at a time; different documents are independent of each other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "runtime/String.h"

namespace qxsvg {

class IXMLDocument;
class TStream;

enum class TXMLNodeType : std::uint8_t {
  ntElement,
  ntText,
  ntCData,
  ntEntityRef,
  ntProcessingInstr,
  ntComment
};

// The enumerator's own text, such as "ntElement".
QXSVG_API StringView XMLNodeTypeName(TXMLNodeType Type);

// A name as written, in its two halves. Equal names of one document are one object.
struct TXMLName {
  StringView LocalName;
  // Empty where the name has none.
  StringView Prefix;
};

// Namespace declarations are attributes too: `xmlns:p` has the prefix "xmlns", a plain `xmlns` is a
// local name without prefix. They come before the other attributes of their element.
struct TXMLAttribute {
  const TXMLName* Name;
  // References are expanded and blanks normalised as XML 1.0 chapter 3.3.3 has it.
  StringView Value;

  StringView LocalName() const { return Name->LocalName; }
  StringView Prefix() const { return Name->Prefix; }
};

// A node of the tree under a document's root. The document owns it; it is never destroyed before
// the document, not even when it is removed from its parent.
//
// Children are walked with a cursor:
//   for (IXMLNode* Child = Node.FirstChild(); Child; Child = Child->NextSibling()) ...
// The children of an entity reference are what the entity expands to.
class QXSVG_API IXMLNode {
 public:
  virtual ~IXMLNode();

  virtual TXMLNodeType NodeType() const = 0;
  // Of an element; empty for every other node, an entity reference too.
  virtual StringView LocalName() const = 0;
  virtual StringView Prefix() const = 0;
  // The element's namespace as its own and its ancestors' declarations give it; empty for none.
  StringView NamespaceURI() const { return FindNamespaceURI(Prefix()); }
  // The namespace that Prefix stands for at this node; empty when nothing declares it. The prefix
  // "xml" needs no declaration.
  virtual StringView FindNamespaceURI(StringView Prefix) const = 0;
  // Of a text, CDATA section or comment: its characters. Of an entity reference: the entity's name.
  // Of a processing instruction: target, blank and data. Empty for an element.
  virtual StringView Value() const = 0;
  // What a reader of the node sees: the characters of all text and CDATA in it, in order, entities
  // expanded; for a comment or processing instruction its value.
  virtual String Text() const = 0;
  // Puts a single text in the place of all children of an element, or sets another node's value.
  virtual void SetText(StringView Text) = 0;
  // True for an element whose only child is a text; CDATA is no text here.
  virtual bool IsTextElement() const = 0;
  // The line of the file, counted from 1, where the node's start ends; 0 for a node made by calls.
  virtual std::int32_t Line() const = 0;

  virtual IXMLDocument& OwnerDocument() const = 0;
  // Null for the root and for a removed node.
  virtual IXMLNode* Parent() const = 0;
  virtual IXMLNode* FirstChild() const = 0;
  virtual IXMLNode* NextSibling() const = 0;
  virtual std::size_t ChildCount() const = 0;
  // The first child element of that local name, or null.
  virtual IXMLNode* FindChild(StringView LocalName) const = 0;

  // The attributes in the order of the file; valid until an attribute of this node changes.
  virtual std::span<const TXMLAttribute> Attributes() const = 0;
  // Name is the whole name as written, with its prefix if it has one: "lang" does not find
  // "xml:lang". Null when the node has no such attribute.
  virtual const TXMLAttribute* FindAttribute(StringView Name) const = 0;
  virtual const TXMLAttribute* FindAttributeNS(StringView LocalName, StringView URI) const = 0;
  bool HasAttribute(StringView Name) const { return FindAttribute(Name) != nullptr; }
  bool HasAttribute(StringView LocalName, StringView URI) const {
    return FindAttributeNS(LocalName, URI) != nullptr;
  }
  // The same with the value in Value, which stays as it is when there is no such attribute.
  bool FindAttribute(StringView Name, StringView& Value) const {
    return Take(FindAttribute(Name), Value);
  }
  bool FindAttributeNS(StringView LocalName, StringView URI, StringView& Value) const {
    return Take(FindAttributeNS(LocalName, URI), Value);
  }
  // The value, or an empty text when there is no such attribute.
  StringView GetAttribute(StringView Name) const {
    const TXMLAttribute* Found = FindAttribute(Name);
    return Found ? Found->Value : StringView();
  }
  StringView GetAttributeNS(StringView LocalName, StringView URI) const {
    const TXMLAttribute* Found = FindAttributeNS(LocalName, URI);
    return Found ? Found->Value : StringView();
  }

  // Name is the whole name. An attribute that is there keeps its place. Raises EXMLError for a text
  // that is no XML name. Characters that XML cannot hold are left out of Value.
  virtual void SetAttribute(StringView Name, StringView Value) = 0;
  virtual void RemoveAttribute(StringView Name) = 0;
  // The default namespace for an empty Prefix.
  virtual void DeclareNamespace(StringView Prefix, StringView URI) = 0;
  // Each adds a last child and gives it, never null. Raise EXMLError on a node that holds no
  // children, AddChild also for a text that is no XML name. With a URI, AddChild declares that
  // namespace on the child unless the child's prefix stands for it already.
  virtual IXMLNode* AddChild(StringView Name, StringView URI = {}) = 0;
  virtual IXMLNode* AddText(StringView Text) = 0;
  virtual IXMLNode* AddCData(StringView Text) = 0;
  virtual IXMLNode* AddComment(StringView Text) = 0;
  // Adds a copy of a node, which may be of another document, with all that is in it, as the last
  // child.
  virtual IXMLNode* AddCopy(const IXMLNode& Source) = 0;
  // Makes this node a copy of a node of the same kind, which may be of another document, with all
  // that is in it. Its place stays.
  virtual void BecomeCopy(const IXMLNode& Source) = 0;
  // Does nothing when Child is no child of this node.
  virtual void RemoveChild(IXMLNode* Child) = 0;

  // The node as it was read, without indentation: entities expanded, and with those namespace
  // declarations added that it uses from its ancestors, so that the text can stand by itself.
  virtual String XML() const = 0;

 private:
  static bool Take(const TXMLAttribute* Found, StringView& Value) {
    if (Found) Value = Found->Value;
    return Found != nullptr;
  }
};

// What stands around the root element (declaration, document type, comments) is not kept.
class QXSVG_API IXMLDocument {
 public:
  virtual ~IXMLDocument();

  // The root element; null in an empty document.
  virtual IXMLNode* DocumentElement() const = 0;
  // Makes the root element, in place of one that was there, and declares the namespace, if any.
  virtual IXMLNode* CreateRoot(StringView Name, StringView URI = {}) = 0;

  // On, the three below put each element on a line of its own, two blanks deeper than its parent.
  // Where characters count (mixed content, text elements, xml:space) nothing is added. Off at
  // first.
  virtual bool NodeAutoIndent() const = 0;
  virtual void SetNodeAutoIndent(bool Value) = 0;

  // The whole document in UTF-8 with its declaration.
  virtual std::string ToUtf8() const = 0;
  // The same in UTF-16; the declaration then names no encoding.
  virtual String ToText() const = 0;
  // Writes ToUtf8 at the stream's position. Raises EStreamError.
  void SaveToStream(TStream& Stream) const;
};

// Reads XML. The implementer must be usable from several threads at once.
//
// What every implementer holds to: nothing that the document names is opened, neither file nor
// network; general entities of the document type declaration become entity reference nodes in
// content and their text in attributes; elements, nesting, attributes and expansion are bounded
// (foundation/Limits.h); local names and prefixes are apart; CDATA stays CDATA. Malformed XML
// raises EXMLError with line and column; what is over a limit raises ESVGException with a message
// that names the limit.
class QXSVG_API IXMLVendor {
 public:
  virtual ~IXMLVendor();
  // Detects gzip compression and the encoding.
  virtual std::unique_ptr<IXMLDocument> LoadFromBytes(std::string_view Bytes) = 0;
  // An encoding that the text declares is ignored.
  virtual std::unique_ptr<IXMLDocument> LoadFromText(StringView Text) = 0;
  // From the stream's position to its end. Raises EStreamError as the stream does.
  std::unique_ptr<IXMLDocument> LoadFromStream(TStream& Stream);
};

// An empty document to write on. Needs no vendor.
QXSVG_API std::unique_ptr<IXMLDocument> CreateXMLDocument();

}  // namespace qxsvg
