#include "document/XMLWriter.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "document/XMLNames.h"

namespace qxsvg {

namespace {

constexpr std::size_t IndentWidth = 2;

bool IsBlank(StringView Text) {
  return std::ranges::all_of(Text, IsXMLBlank);
}

// Where a text element is the parent, blanks between its children are drawn.
bool IsTextElementName(StringView LocalName) {
  constexpr std::array<StringView, 4> Names = {u"text", u"tspan", u"tref", u"textPath"};
  return std::ranges::find(Names, LocalName) != Names.end();
}

class TWriter {
 public:
  explicit TWriter(bool Indent) : FIndent(Indent) {}

  void WriteTree(const IXMLNode& Top);
  void Declaration(StringView Encoding) {
    FText.append(u"<?xml version=\"1.0\"");
    if (!Encoding.empty()) FText.append(u" encoding=\"").append(Encoding).append(u"\"");
    FText.append(u"?>\n");
  }
  // A declaration that the next element gets besides its own.
  void AddDeclaration(StringView Prefix, StringView URI) { FExtra.emplace_back(Prefix, URI); }
  void Newline() { FText.push_back(u'\n'); }
  String Take() { return std::move(FText); }

 private:
  struct Level {
    const IXMLNode* Node;
    std::size_t Bindings;  // of FBindings, when the element began
    bool Indent;           // whether children go on lines of their own
    bool HasContent = false;
  };

  bool Open(const IXMLNode& Node);
  void Close();
  void Leaf(const IXMLNode& Node);
  bool StartElement(const IXMLNode& Node);
  void StartLine(std::size_t Depth) {
    FText.push_back(u'\n');
    FText.append(Depth * IndentWidth, u' ');
  }
  void Name(StringView Prefix, StringView LocalName) {
    if (!Prefix.empty()) FText.append(Prefix).push_back(u':');
    FText.append(LocalName);
  }
  void Attribute(StringView Prefix, StringView LocalName, StringView Value);
  void Escaped(StringView Text, bool InAttribute);
  void Guarded(StringView Open, StringView Text, StringView Forbidden, StringView Between,
               StringView Close);
  bool Bind(StringView Prefix, StringView URI);
  bool MayIndent(const IXMLNode& Node) const;

  String FText;
  std::vector<Level> FLevels;
  // Prefixes in scope with what they stand for, the innermost last.
  std::vector<std::pair<StringView, StringView>> FBindings, FExtra;
  bool FIndent;
};

// References of entities count as what they hold: their children are written in their place.
bool TWriter::MayIndent(const IXMLNode& Node) const {
  if (IsTextElementName(Node.LocalName()) || Node.GetAttribute(u"xml:space") == u"preserve")
    return false;
  for (const IXMLNode* Child = Node.FirstChild(); Child; Child = Child->NextSibling()) {
    const TXMLNodeType Type = Child->NodeType();
    if (Type == TXMLNodeType::ntCData || Type == TXMLNodeType::ntEntityRef) return false;
    if (Type == TXMLNodeType::ntText && !IsBlank(Child->Value())) return false;
  }
  return true;
}

// False when the prefix stands for that already.
bool TWriter::Bind(StringView Prefix, StringView URI) {
  for (auto It = FBindings.rbegin(); It != FBindings.rend(); ++It)
    if (It->first == Prefix) {
      if (It->second == URI) return false;
      break;
    }
  FBindings.emplace_back(Prefix, URI);
  return true;
}

void TWriter::Escaped(StringView Text, bool InAttribute) {
  const StringView Special = InAttribute ? StringView(u"<>&\"\t\n\r") : StringView(u"<>&\r");
  while (true) {
    const std::size_t Next = Text.find_first_of(Special);
    FText.append(Text.substr(0, Next));
    if (Next == StringView::npos) return;
    switch (Text[Next]) {
      case u'<': FText.append(u"&lt;"); break;
      case u'>': FText.append(u"&gt;"); break;
      case u'&': FText.append(u"&amp;"); break;
      case u'"': FText.append(u"&quot;"); break;
      // A reader would make blanks or line feeds of these.
      case u'\t': FText.append(u"&#9;"); break;
      case u'\n': FText.append(u"&#10;"); break;
      default: FText.append(u"&#13;"); break;
    }
    Text.remove_prefix(Next + 1);
  }
}

// Between goes before the last character of each Forbidden, which may not stand in the text.
void TWriter::Guarded(StringView Open, StringView Text, StringView Forbidden, StringView Between,
                      StringView Close) {
  FText.append(Open);
  for (std::size_t Next; (Next = Text.find(Forbidden)) != StringView::npos;) {
    const std::size_t Split = Next + Forbidden.size() - 1;
    FText.append(Text.substr(0, Split)).append(Between);
    Text.remove_prefix(Split);
  }
  FText.append(Text).append(Close);
}

void TWriter::Attribute(StringView Prefix, StringView LocalName, StringView Value) {
  FText.push_back(u' ');
  Name(Prefix, LocalName);
  FText.append(u"=\"");
  Escaped(Value, true);
  FText.push_back(u'"');
}

bool TWriter::StartElement(const IXMLNode& Node) {
  const std::size_t Bindings = FBindings.size();
  FText.push_back(u'<');
  Name(Node.Prefix(), Node.LocalName());
  for (const auto& [Prefix, URI] : std::exchange(FExtra, {})) {
    const TXMLName Declared = NamespaceAttribute(Prefix);
    if (Bind(Prefix, URI)) Attribute(Declared.Prefix, Declared.LocalName, URI);
  }
  for (const TXMLAttribute& A : Node.Attributes()) {
    const bool IsDefault = A.Prefix().empty() && A.LocalName() == XMLNamespacePrefix;
    const bool Declares = IsDefault || A.Prefix() == XMLNamespacePrefix;
    if (Declares && !Bind(IsDefault ? StringView() : A.LocalName(), A.Value)) continue;
    Attribute(A.Prefix(), A.LocalName(), A.Value);
  }
  if (!Node.FirstChild()) {
    FText.append(u"/>");
    FBindings.resize(Bindings);
    return false;
  }
  FText.push_back(u'>');
  const bool Indent = (FLevels.empty() ? FIndent : FLevels.back().Indent) && MayIndent(Node);
  FLevels.push_back({&Node, Bindings, Indent});
  return true;
}

void TWriter::Leaf(const IXMLNode& Node) {
  switch (Node.NodeType()) {
    case TXMLNodeType::ntText: Escaped(Node.Value(), false); break;
    case TXMLNodeType::ntCData:
      Guarded(u"<![CDATA[", Node.Value(), u"]]>", u"]]><![CDATA[", u"]]>");
      break;
    case TXMLNodeType::ntComment: {
      const StringView Text = Node.Value();
      Guarded(u"<!--", Text, u"--", u" ", Text.ends_with(u'-') ? u" -->" : u"-->");
      break;
    }
    case TXMLNodeType::ntProcessingInstr: Guarded(u"<?", Node.Value(), u"?>", u" ", u"?>"); break;
    default: break;
  }
}

// True when the node's children are to be written next.
bool TWriter::Open(const IXMLNode& Node) {
  if (Node.NodeType() == TXMLNodeType::ntEntityRef) {
    if (!Node.FirstChild()) return false;
    FLevels.push_back({&Node, FBindings.size(), false});
    return true;
  }
  if (!FLevels.empty() && FLevels.back().Indent) {
    if (Node.NodeType() == TXMLNodeType::ntText) return false;
    StartLine(FLevels.size());
    FLevels.back().HasContent = true;
  }
  if (Node.NodeType() == TXMLNodeType::ntElement) return StartElement(Node);
  Leaf(Node);
  return false;
}

void TWriter::Close() {
  const Level Done = FLevels.back();
  FLevels.pop_back();
  if (Done.HasContent) StartLine(FLevels.size());
  if (Done.Node->NodeType() == TXMLNodeType::ntElement) {
    FText.append(u"</");
    Name(Done.Node->Prefix(), Done.Node->LocalName());
    FText.push_back(u'>');
  }
  FBindings.resize(Done.Bindings);
}

// Without recursion: what was built by calls may be deeper than any stack.
void TWriter::WriteTree(const IXMLNode& Top) {
  const IXMLNode* Node = &Top;
  while (true) {
    if (Open(*Node)) {
      Node = Node->FirstChild();
      continue;
    }
    while (Node != &Top && !Node->NextSibling()) {
      Node = Node->Parent();
      Close();
    }
    if (Node == &Top) return;
    Node = Node->NextSibling();
  }
}

// The next node of the tree under Top in document order, null behind the last.
const IXMLNode* NextInTree(const IXMLNode& Top, const IXMLNode* Node) {
  if (const IXMLNode* Child = Node->FirstChild()) return Child;
  while (Node != &Top && !Node->NextSibling()) Node = Node->Parent();
  return Node == &Top ? nullptr : Node->NextSibling();
}

}  // namespace

String WriteXMLDocument(const IXMLNode* Root, bool Indent, StringView Encoding) {
  TWriter Writer(Indent);
  Writer.Declaration(Encoding);
  if (Root) {
    Writer.WriteTree(*Root);
    Writer.Newline();
  }
  return Writer.Take();
}

String WriteXMLNode(const IXMLNode& Node) {
  TWriter Writer(false);
  if (Node.NodeType() == TXMLNodeType::ntElement && Node.Parent()) {
    std::vector<StringView> Seen;
    const auto Need = [&](StringView Prefix) {
      if (Prefix == u"xml" || Prefix == XMLNamespacePrefix) return;
      if (std::ranges::find(Seen, Prefix) != Seen.end()) return;
      Seen.push_back(Prefix);
      const TXMLName Declared = NamespaceAttribute(Prefix);
      for (const TXMLAttribute& A : Node.Attributes())
        if (A.LocalName() == Declared.LocalName && A.Prefix() == Declared.Prefix) return;
      // What only a descendant declares is no business of this node.
      const StringView URI = Node.FindNamespaceURI(Prefix);
      if (!URI.empty()) Writer.AddDeclaration(Prefix, URI);
    };
    for (const IXMLNode* At = &Node; At; At = NextInTree(Node, At)) {
      if (At->NodeType() != TXMLNodeType::ntElement) continue;
      Need(At->Prefix());
      for (const TXMLAttribute& A : At->Attributes())
        if (!A.Prefix().empty()) Need(A.Prefix());
    }
  }
  Writer.WriteTree(Node);
  return Writer.Take();
}

}  // namespace qxsvg
