// The tree of nodes that every XML document of the system is, wherever it came from.
//
// Nodes, names and texts live in one arena, which goes with the document: a load allocates a few
// large pieces and frees as many. A reader of XML (an IXMLVendor) fills the tree through the
// operations of TXMLDocument and TXMLNode that are not in the contract.
#pragma once

#include <unordered_map>
#include <vector>

#include "document/XML.h"

namespace qxsvg {

class TXMLNode;

// Memory that is given out in rising addresses and taken back all at once.
class TXMLArena {
 public:
  TXMLArena() = default;
  TXMLArena(const TXMLArena&) = delete;
  TXMLArena& operator=(const TXMLArena&) = delete;

  template <class T>
  T* Allocate(std::size_t Count) {
    return static_cast<T*>(Take(Count * sizeof(T), alignof(T)));
  }
  // Text is what the last Allocate or Grow of characters gave, Used of them in use: gives a place
  // with room for More behind them, the same one if possible.
  char16_t* Grow(char16_t* Text, std::size_t Used, std::size_t More);
  // Gives back the end of what was allocated last, so that [Text, Text + Used) stays.
  void Shrink(const char16_t* Text, std::size_t Used);

 private:
  void* Take(std::size_t Bytes, std::size_t Alignment);
  void AddPiece(std::size_t Bytes);

  std::vector<std::unique_ptr<std::byte[]>> FPieces;
  std::byte* FNext = nullptr;
  std::byte* FEnd = nullptr;
  std::size_t FPieceBytes = 0;
};

class QXSVG_API TXMLDocument final : public IXMLDocument {
 public:
  TXMLDocument();
  ~TXMLDocument() override;

  IXMLNode* DocumentElement() const override;
  IXMLNode* CreateRoot(StringView Name, StringView URI = {}) override;
  bool NodeAutoIndent() const override { return FAutoIndent; }
  void SetNodeAutoIndent(bool Value) override { FAutoIndent = Value; }
  std::string ToUtf8() const override;
  String ToText() const override;

  // --- For readers of XML
  TXMLNode* NewNode(TXMLNodeType Type, const TXMLName* Name, std::int32_t Line);
  void SetRoot(TXMLNode* Root) { FRoot = Root; }
  // The one object for that name.
  const TXMLName* Intern(StringView LocalName, StringView Prefix);
  // As Intern, for a whole name; raises EXMLError where it is none.
  const TXMLName* InternWhole(StringView Name);
  StringView Keep(StringView Text);
  // The UTF-8 widened; what is no UTF-8 becomes U+FFFD.
  StringView KeepUtf8(std::string_view Text);
  // Text followed by More; Text is what the last Keep, KeepUtf8 or AppendUtf8 gave.
  StringView AppendUtf8(StringView Text, std::string_view More);
  TXMLArena& Arena() { return FArena; }

 private:
  struct NameHash {
    std::size_t operator()(const TXMLName& Name) const noexcept;
  };
  struct NameEqual {
    bool operator()(const TXMLName& A, const TXMLName& B) const noexcept {
      return A.LocalName == B.LocalName && A.Prefix == B.Prefix;
    }
  };

  TXMLArena FArena;
  std::unordered_map<TXMLName, const TXMLName*, NameHash, NameEqual> FNames;
  TXMLNode* FRoot = nullptr;
  bool FAutoIndent = false;
};

class QXSVG_API TXMLNode final : public IXMLNode {
 public:
  TXMLNode(TXMLDocument& Document, TXMLNodeType Type, const TXMLName* Name, std::int32_t Line)
      : FDocument(&Document), FName(Name), FLine(Line), FType(Type) {}

  TXMLNodeType NodeType() const override { return FType; }
  StringView LocalName() const override { return FName ? FName->LocalName : StringView(); }
  StringView Prefix() const override { return FName ? FName->Prefix : StringView(); }
  StringView FindNamespaceURI(StringView Prefix) const override;
  StringView Value() const override { return FValue; }
  String Text() const override;
  void SetText(StringView Text) override;
  bool IsTextElement() const override;
  std::int32_t Line() const override { return FLine; }

  IXMLDocument& OwnerDocument() const override { return *FDocument; }
  IXMLNode* Parent() const override { return FParent; }
  IXMLNode* FirstChild() const override { return FFirst; }
  IXMLNode* NextSibling() const override { return FNext; }
  std::size_t ChildCount() const override;
  IXMLNode* FindChild(StringView LocalName) const override;

  std::span<const TXMLAttribute> Attributes() const override {
    return {FAttributes, FAttributeCount};
  }
  const TXMLAttribute* FindAttribute(StringView Name) const override;
  const TXMLAttribute* FindAttributeNS(StringView LocalName, StringView URI) const override;
  void SetAttribute(StringView Name, StringView Value) override;
  void RemoveAttribute(StringView Name) override;
  void DeclareNamespace(StringView Prefix, StringView URI) override;

  IXMLNode* AddChild(StringView Name, StringView URI = {}) override;
  IXMLNode* AddText(StringView Text) override;
  IXMLNode* AddCData(StringView Text) override;
  IXMLNode* AddComment(StringView Text) override;
  IXMLNode* AddCopy(const IXMLNode& Source) override;
  void BecomeCopy(const IXMLNode& Source) override;
  void RemoveChild(IXMLNode* Child) override;
  String XML() const override;

  // --- For readers of XML
  const TXMLName* Name() const { return FName; }
  // Value must live as long as the document.
  void SetValue(StringView Value) { FValue = Value; }
  void Append(TXMLNode* Child);
  // Takes the place of all attributes; the array must be of the document's arena.
  void SetAttributes(TXMLAttribute* Attributes, std::size_t Count);

 private:
  TXMLAttribute* Find(const TXMLName& Name) const;
  void Set(const TXMLName* Name, StringView Value);
  IXMLNode* AddCharacters(TXMLNodeType Type, StringView Text);
  // A copy in this node's document that is in no tree.
  TXMLNode* CopyOf(const IXMLNode& Source) const;
  void CheckHoldsChildren() const;

  TXMLDocument* FDocument;
  TXMLNode* FParent = nullptr;
  TXMLNode* FFirst = nullptr;
  TXMLNode* FLast = nullptr;
  TXMLNode* FNext = nullptr;
  const TXMLName* FName;
  StringView FValue;
  TXMLAttribute* FAttributes = nullptr;
  std::uint32_t FAttributeCount = 0, FAttributeRoom = 0;
  std::int32_t FLine;
  TXMLNodeType FType;
};

}  // namespace qxsvg
