#include "document/XMLTree.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "document/XMLNames.h"
#include "document/XMLWriter.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

// --- Arena

namespace {

constexpr std::size_t FirstPiece = 4096;
// Pieces double up to here, so that what stays unused at the end is bounded.
constexpr std::size_t LargestPiece = std::size_t{1} << 20;

}  // namespace

void TXMLArena::AddPiece(std::size_t Bytes) {
  FPieceBytes = FPieceBytes == 0 ? FirstPiece : std::min(FPieceBytes * 2, LargestPiece);
  const std::size_t Size = std::max(FPieceBytes, Bytes);
  FPieces.push_back(std::make_unique_for_overwrite<std::byte[]>(Size));
  FNext = FPieces.back().get();
  FEnd = FNext + Size;
}

void* TXMLArena::Take(std::size_t Bytes, std::size_t Alignment) {
  const auto Gap = [&] {
    return (Alignment - reinterpret_cast<std::uintptr_t>(FNext) % Alignment) % Alignment;
  };
  if (!FNext || static_cast<std::size_t>(FEnd - FNext) < Bytes + Gap()) AddPiece(Bytes);
  std::byte* Result = FNext + Gap();
  FNext = Result + Bytes;
  return Result;
}

char16_t* TXMLArena::Grow(char16_t* Text, std::size_t Used, std::size_t More) {
  if (Used == 0) return Allocate<char16_t>(More);
  const std::byte* Behind = reinterpret_cast<std::byte*>(Text + Used);
  const std::size_t Bytes = More * sizeof(char16_t);
  if (Behind == FNext && static_cast<std::size_t>(FEnd - FNext) >= Bytes) {
    FNext += Bytes;
    return Text;
  }
  // A text that moves gets as much room again behind it, so that a text that comes in many parts is
  // copied a few times only.
  auto* Moved = Allocate<char16_t>(2 * (Used + More));
  std::copy_n(Text, Used, Moved);
  Shrink(Moved, Used + More);
  return Moved;
}

void TXMLArena::Shrink(const char16_t* Text, std::size_t Used) {
  const std::byte* Begin = reinterpret_cast<const std::byte*>(Text);
  FNext -= (FNext - Begin) - static_cast<std::ptrdiff_t>(Used * sizeof(char16_t));
}

// --- Document

TXMLDocument::TXMLDocument() = default;
TXMLDocument::~TXMLDocument() = default;

std::size_t TXMLDocument::NameHash::operator()(const TXMLName& Name) const noexcept {
  const std::hash<StringView> Hash;
  return Hash(Name.LocalName) * 31 + Hash(Name.Prefix);
}

IXMLNode* TXMLDocument::DocumentElement() const {
  return FRoot;
}

IXMLNode* TXMLDocument::CreateRoot(StringView Name, StringView URI) {
  TXMLNode* Root = NewNode(TXMLNodeType::ntElement, InternWhole(Name), 0);
  if (!URI.empty()) Root->DeclareNamespace(Root->Prefix(), URI);
  FRoot = Root;
  return Root;
}

std::string TXMLDocument::ToUtf8() const {
  return qxsvg::ToUtf8(WriteXMLDocument(FRoot, FAutoIndent, u"UTF-8"));
}

String TXMLDocument::ToText() const {
  return WriteXMLDocument(FRoot, FAutoIndent, {});
}

TXMLNode* TXMLDocument::NewNode(TXMLNodeType Type, const TXMLName* Name, std::int32_t Line) {
  return std::construct_at(FArena.Allocate<TXMLNode>(1), *this, Type, Name, Line);
}

const TXMLName* TXMLDocument::Intern(StringView LocalName, StringView Prefix) {
  if (const auto Found = FNames.find({LocalName, Prefix}); Found != FNames.end())
    return Found->second;
  const TXMLName Name{Keep(LocalName), Keep(Prefix)};
  const TXMLName* Kept = std::construct_at(FArena.Allocate<TXMLName>(1), Name);
  FNames.emplace(Name, Kept);
  return Kept;
}

const TXMLName* TXMLDocument::InternWhole(StringView Name) {
  const TXMLName Halves = SplitXMLName(Name);
  if (!IsXMLName(Halves) || Name.starts_with(u':'))
    throw EXMLError(Format(u"<%s> is no XML name", {Name}), 0, 0);
  return Intern(Halves.LocalName, Halves.Prefix);
}

StringView TXMLDocument::Keep(StringView Text) {
  if (Text.empty()) return {};
  auto* Kept = FArena.Allocate<char16_t>(Text.size());
  std::copy(Text.begin(), Text.end(), Kept);
  return {Kept, Text.size()};
}

StringView TXMLDocument::KeepUtf8(std::string_view Text) {
  return AppendUtf8({}, Text);
}

namespace {

// Writes the leading ASCII of Bytes to Target, sixteen at a time as far as that goes; gives its
// length.
std::size_t WidenAscii(const unsigned char* Bytes, std::size_t Count, char16_t* Target) {
  constexpr std::size_t Step = 16;
  std::size_t Done = 0;
  // Over copies of fixed size, which compilers turn into a few instructions.
  for (; Done + Step <= Count; Done += Step) {
    std::array<unsigned char, Step> Read;
    std::array<char16_t, Step> Wide;
    std::uint64_t Halves[2];
    std::memcpy(Halves, Bytes + Done, Step);
    if ((Halves[0] | Halves[1]) & 0x8080808080808080u) break;
    std::memcpy(Read.data(), Bytes + Done, Step);
    for (std::size_t I = 0; I < Step; ++I) Wide[I] = Read[I];
    std::memcpy(Target + Done, Wide.data(), sizeof Wide);
  }
  for (; Done < Count && Bytes[Done] < 0x80; ++Done) Target[Done] = Bytes[Done];
  return Done;
}

}  // namespace

StringView TXMLDocument::AppendUtf8(StringView Text, std::string_view More) {
  if (More.empty()) return Text;
  // No text has more units in UTF-16 than bytes in UTF-8. The arena's own characters are written by
  // the arena's owner alone.
  auto* Held = FArena.Grow(const_cast<char16_t*>(Text.data()), Text.size(), More.size());
  char16_t* End = Held + Text.size();
  const std::size_t Ascii =
      WidenAscii(reinterpret_cast<const unsigned char*>(More.data()), More.size(), End);
  End += Ascii;
  if (Ascii < More.size()) {
    const String Wide = FromUtf8(More.substr(Ascii));
    End = std::copy(Wide.begin(), Wide.end(), End);
    FArena.Shrink(Held, static_cast<std::size_t>(End - Held));
  }
  return {Held, static_cast<std::size_t>(End - Held)};
}

// --- Node: reading

StringView TXMLNode::FindNamespaceURI(StringView Prefix) const {
  if (Prefix == u"xml") return XMLNamespace;
  const TXMLName Declared = NamespaceAttribute(Prefix);
  for (const TXMLNode* Node = this; Node; Node = Node->FParent)
    if (const TXMLAttribute* Found = Node->Find(Declared)) return Found->Value;
  return {};
}

namespace {

// Entity references nest as deep as the limits allow, elements too: the walk keeps its own way
// back.
void AppendText(const IXMLNode& Top, String& Result) {
  const IXMLNode* Node = Top.FirstChild();
  while (Node) {
    if (Node->NodeType() == TXMLNodeType::ntText || Node->NodeType() == TXMLNodeType::ntCData)
      Result.append(Node->Value());
    const IXMLNode* Next = Node->FirstChild();
    while (!Next && Node != &Top) {
      Next = Node->NextSibling();
      if (!Next) Node = Node->Parent();
    }
    Node = Next;
  }
}

}  // namespace

String TXMLNode::Text() const {
  if (FType != TXMLNodeType::ntElement && FType != TXMLNodeType::ntEntityRef) return String(FValue);
  String Result;
  AppendText(*this, Result);
  return Result;
}

bool TXMLNode::IsTextElement() const {
  return FType == TXMLNodeType::ntElement && FFirst && FFirst == FLast &&
         FFirst->FType == TXMLNodeType::ntText;
}

std::size_t TXMLNode::ChildCount() const {
  std::size_t Count = 0;
  for (const TXMLNode* Child = FFirst; Child; Child = Child->FNext) ++Count;
  return Count;
}

IXMLNode* TXMLNode::FindChild(StringView LocalName) const {
  for (TXMLNode* Child = FFirst; Child; Child = Child->FNext)
    if (Child->FName && Child->FName->LocalName == LocalName) return Child;
  return nullptr;
}

TXMLAttribute* TXMLNode::Find(const TXMLName& Name) const {
  for (std::uint32_t I = 0; I < FAttributeCount; ++I)
    if (FAttributes[I].LocalName() == Name.LocalName && FAttributes[I].Prefix() == Name.Prefix)
      return &FAttributes[I];
  return nullptr;
}

const TXMLAttribute* TXMLNode::FindAttribute(StringView Name) const {
  return FAttributeCount == 0 ? nullptr : Find(SplitXMLName(Name));
}

const TXMLAttribute* TXMLNode::FindAttributeNS(StringView LocalName, StringView URI) const {
  for (const TXMLAttribute& Attribute : Attributes()) {
    if (Attribute.LocalName() != LocalName) continue;
    // An attribute without prefix is in no namespace, the default one included.
    const StringView Own =
        Attribute.Prefix().empty() ? StringView() : FindNamespaceURI(Attribute.Prefix());
    if (Own == URI) return &Attribute;
  }
  return nullptr;
}

String TXMLNode::XML() const {
  return WriteXMLNode(*this);
}

// --- Node: changing

void TXMLNode::CheckHoldsChildren() const {
  if (FType != TXMLNodeType::ntElement && FType != TXMLNodeType::ntEntityRef)
    throw EXMLError(u"This kind of XML node holds no children", 0, 0);
}

void TXMLNode::SetText(StringView Text) {
  if (FType != TXMLNodeType::ntElement && FType != TXMLNodeType::ntEntityRef) {
    FValue = FDocument->Keep(XMLCharacters(Text));
    return;
  }
  for (TXMLNode* Child = FFirst; Child; Child = Child->FNext) Child->FParent = nullptr;
  FFirst = FLast = nullptr;
  if (!Text.empty()) AddText(Text);
}

void TXMLNode::Append(TXMLNode* Child) {
  Child->FParent = this;
  (FLast ? FLast->FNext : FFirst) = Child;
  FLast = Child;
}

void TXMLNode::SetAttributes(TXMLAttribute* Attributes, std::size_t Count) {
  FAttributes = Attributes;
  FAttributeCount = FAttributeRoom = static_cast<std::uint32_t>(Count);
}

void TXMLNode::Set(const TXMLName* Name, StringView Value) {
  const StringView Kept = FDocument->Keep(XMLCharacters(Value));
  if (TXMLAttribute* Found = Find(*Name)) {
    Found->Value = Kept;
    return;
  }
  if (FAttributeCount == FAttributeRoom) {
    const std::uint32_t Room = std::max<std::uint32_t>(4, FAttributeRoom * 2);
    auto* Wider = FDocument->Arena().Allocate<TXMLAttribute>(Room);
    std::uninitialized_copy_n(FAttributes, FAttributeCount, Wider);
    FAttributes = Wider;
    FAttributeRoom = Room;
  }
  std::construct_at(FAttributes + FAttributeCount++, TXMLAttribute{Name, Kept});
}

void TXMLNode::SetAttribute(StringView Name, StringView Value) {
  if (FType != TXMLNodeType::ntElement) throw EXMLError(u"Only elements have attributes", 0, 0);
  Set(FDocument->InternWhole(Name), Value);
}

void TXMLNode::RemoveAttribute(StringView Name) {
  TXMLAttribute* Found = Find(SplitXMLName(Name));
  if (!Found) return;
  std::copy(Found + 1, FAttributes + FAttributeCount, Found);
  --FAttributeCount;
}

void TXMLNode::DeclareNamespace(StringView Prefix, StringView URI) {
  if (FType != TXMLNodeType::ntElement) throw EXMLError(u"Only elements have attributes", 0, 0);
  const TXMLName Name = NamespaceAttribute(Prefix);
  if (!IsXMLName(Name)) throw EXMLError(Format(u"<%s> is no XML name", {Prefix}), 0, 0);
  Set(FDocument->Intern(Name.LocalName, Name.Prefix), URI);
}

IXMLNode* TXMLNode::AddChild(StringView Name, StringView URI) {
  CheckHoldsChildren();
  TXMLNode* Child = FDocument->NewNode(TXMLNodeType::ntElement, FDocument->InternWhole(Name), 0);
  Append(Child);
  if (!URI.empty() && Child->NamespaceURI() != URI) Child->DeclareNamespace(Child->Prefix(), URI);
  return Child;
}

IXMLNode* TXMLNode::AddCharacters(TXMLNodeType Type, StringView Text) {
  CheckHoldsChildren();
  TXMLNode* Child = FDocument->NewNode(Type, nullptr, 0);
  Child->FValue = FDocument->Keep(XMLCharacters(Text));
  Append(Child);
  return Child;
}

IXMLNode* TXMLNode::AddText(StringView Text) {
  return AddCharacters(TXMLNodeType::ntText, Text);
}
IXMLNode* TXMLNode::AddCData(StringView Text) {
  return AddCharacters(TXMLNodeType::ntCData, Text);
}
IXMLNode* TXMLNode::AddComment(StringView Text) {
  return AddCharacters(TXMLNodeType::ntComment, Text);
}

TXMLNode* TXMLNode::CopyOf(const IXMLNode& Source) const {
  const auto CopyOne = [this](const IXMLNode& From) {
    const TXMLName* Name = From.NodeType() == TXMLNodeType::ntElement
                               ? FDocument->Intern(From.LocalName(), From.Prefix())
                               : nullptr;
    TXMLNode* Copy = FDocument->NewNode(From.NodeType(), Name, From.Line());
    Copy->FValue = FDocument->Keep(From.Value());
    const auto Attributes = From.Attributes();
    auto* Array = FDocument->Arena().Allocate<TXMLAttribute>(Attributes.size());
    for (std::size_t I = 0; I < Attributes.size(); ++I)
      std::construct_at(Array + I, TXMLAttribute{FDocument->Intern(Attributes[I].LocalName(),
                                                                   Attributes[I].Prefix()),
                                                 FDocument->Keep(Attributes[I].Value)});
    Copy->SetAttributes(Array, Attributes.size());
    return Copy;
  };
  TXMLNode* Top = CopyOne(Source);
  TXMLNode* Target = Top;
  const IXMLNode* From = &Source;
  // Depth first without recursion: Target is the copy of From all the way.
  while (true) {
    if (const IXMLNode* Child = From->FirstChild()) {
      From = Child;
    } else {
      while (From != &Source && !From->NextSibling()) {
        From = From->Parent();
        Target = Target->FParent;
      }
      if (From == &Source) break;
      From = From->NextSibling();
      Target = Target->FParent;
    }
    TXMLNode* Copy = CopyOne(*From);
    Target->Append(Copy);
    Target = Copy;
  }
  return Top;
}

IXMLNode* TXMLNode::AddCopy(const IXMLNode& Source) {
  CheckHoldsChildren();
  TXMLNode* Copy = CopyOf(Source);
  Append(Copy);
  return Copy;
}

void TXMLNode::BecomeCopy(const IXMLNode& Source) {
  if (Source.NodeType() != FType) throw EXMLError(u"The XML nodes are of different kinds", 0, 0);
  const TXMLNode* Copy = CopyOf(Source);
  SetText({});
  FName = Copy->FName;
  FValue = Copy->FValue;
  FAttributes = Copy->FAttributes;
  FAttributeCount = FAttributeRoom = Copy->FAttributeCount;
  FFirst = Copy->FFirst;
  FLast = Copy->FLast;
  for (TXMLNode* Child = FFirst; Child; Child = Child->FNext) Child->FParent = this;
}

void TXMLNode::RemoveChild(IXMLNode* Child) {
  TXMLNode* Before = nullptr;
  for (TXMLNode* Node = FFirst; Node; Before = Node, Node = Node->FNext) {
    if (Node != Child) continue;
    (Before ? Before->FNext : FFirst) = Node->FNext;
    if (FLast == Node) FLast = Before;
    Node->FParent = Node->FNext = nullptr;
    return;
  }
}

}  // namespace qxsvg
