#include "document/PlainXML.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "document/XMLNames.h"
#include "foundation/Limits.h"

namespace qxsvg {

namespace {

// Of an element. An element with more is one for the processor, which has a limit of its own.
constexpr std::size_t MostAttributes = 64;
// Of a document: half of the slots stay empty, so that a search ends soon.
constexpr std::size_t NameSlots = 256, MostNames = NameSlots / 2;

enum TByteKind : std::uint8_t { bkNameStart = 1, bkNamePart = 2, bkBlank = 4, bkLiteral = 8 };

// Where the text of a node stands decides what its bytes mean.
enum class TTextPlace : std::uint8_t { Attribute, Content, Verbatim };

constexpr std::array<std::uint8_t, 256> ByteKinds = [] {
  std::array<std::uint8_t, 256> Result{};
  const auto Mark = [&Result](std::string_view Bytes, int Kind) {
    for (const char C : Bytes) Result[static_cast<unsigned char>(C)] |= Kind;
  };
  for (int C = 'A'; C <= 'Z'; ++C) Result[C] = Result[C + 32] = bkNameStart | bkNamePart;
  Mark("_", bkNameStart | bkNamePart);
  Mark("0123456789-.", bkNamePart);
  Mark(" \t\r\n", bkBlank);
  for (int C = 0; C < 256; ++C)
    if (Result[C] & bkNamePart) Result[C] |= bkLiteral;
  // What may stand in the identifiers of a document type, as far as it has no second meaning.
  Mark(" /:+()?=,;!*@$%", bkLiteral);
  return Result;
}();

constexpr bool Is(char C, int Kinds) {
  return (ByteKinds[static_cast<unsigned char>(C)] & Kinds) != 0;
}

// Of eight bytes: whether one has to be looked at by itself in an attribute.
constexpr bool HasSpecial(std::uint64_t Bytes) {
  constexpr std::uint64_t Ones = 0x0101010101010101u, Tops = Ones * 0x80;
  const auto Zero = [](std::uint64_t V) { return (V - Ones) & ~V; };
  return ((Zero(Bytes ^ (Ones * '<')) | Zero(Bytes ^ (Ones * '&')) |
           ((Bytes - Ones * 0x20) & ~Bytes) | Bytes) &
          Tops) != 0;
}

constexpr bool IsSpecial(unsigned char C) {
  return C < 0x20 || C >= 0x80 || C == '<' || C == '&';
}

constexpr bool IsXMLCharacter(std::uint32_t Code) {
  if (Code < 0x20) return Code == '\t' || Code == '\n' || Code == '\r';
  return Code < 0xD800 || (Code >= 0xE000 && Code < 0xFFFE) ||
         (Code >= 0x10000 && Code <= 0x10FFFF);
}

// Every function that gives a bool gives false where the document is not plain.
class TPlainXMLReader {
 public:
  explicit TPlainXMLReader(std::string_view Bytes)
      : FAt(Bytes.data()), FEnd(Bytes.data() + Bytes.size()), FCounted(FAt) {}

  std::unique_ptr<TXMLDocument> Run() {
    FDocument = std::make_unique<TXMLDocument>();
    if (!Declaration() || !Misc() || !DocumentType() || !Misc()) return nullptr;
    if (!Skip("<") || !StartTag()) return nullptr;
    while (FParent)
      if (!Content()) return nullptr;
    if (!Misc() || FAt != FEnd) return nullptr;
    return std::move(FDocument);
  }

 private:
  struct TNameSlot {
    std::string_view Bytes;
    const TXMLName* Name = nullptr;
  };

  // --- Bytes

  char Peek(std::ptrdiff_t Ahead = 0) const { return FEnd - FAt > Ahead ? FAt[Ahead] : '\0'; }
  std::string_view Rest() const { return {FAt, static_cast<std::size_t>(FEnd - FAt)}; }
  bool Skip(std::string_view Expected) {
    if (!Rest().starts_with(Expected)) return false;
    FAt += Expected.size();
    return true;
  }
  // Whether there were any.
  bool SkipBlanks() {
    const char* const Begin = FAt;
    while (FAt != FEnd && Is(*FAt, bkBlank)) ++FAt;
    return FAt != Begin;
  }
  // What stands before Closing, which is skipped.
  bool TakeUntil(std::string_view Closing, std::string_view& Taken) {
    const std::size_t Size = Rest().find(Closing);
    if (Size == std::string_view::npos) return false;
    Taken = {FAt, Size};
    FAt += Size + Closing.size();
    return true;
  }
  bool TakeQuoted(std::string_view& Taken) {
    const char Quote = Peek();
    if (Quote != '"' && Quote != '\'') return false;
    ++FAt;
    const void* Close =
        FAt == FEnd ? nullptr : std::memchr(FAt, Quote, static_cast<std::size_t>(FEnd - FAt));
    if (!Close) return false;
    Taken = {FAt, static_cast<std::size_t>(static_cast<const char*>(Close) - FAt)};
    FAt = static_cast<const char*>(Close) + 1;
    return true;
  }
  // The line that FAt is in, from 1.
  std::int32_t Line() {
    while (FCounted != FAt) {
      const void* End = std::memchr(FCounted, '\n', static_cast<std::size_t>(FAt - FCounted));
      if (End) ++FLine;
      FCounted = End ? static_cast<const char*>(End) + 1 : FAt;
    }
    return FLine;
  }

  // --- Around the root

  bool Declaration() {
    if (!Rest().starts_with("<?xml")) return true;
    FAt += 5;
    static constexpr std::string_view Parts[] = {"version", "encoding", "standalone"};
    for (std::size_t I = 0; I < std::size(Parts); ++I) {
      const bool HasBlank = SkipBlanks();
      if (!Skip(Parts[I])) {
        if (I == 0) return false;
        continue;
      }
      std::string_view Value;
      SkipBlanks();
      if (!HasBlank || !Skip("=")) return false;
      SkipBlanks();
      if (!TakeQuoted(Value)) return false;
      if (I == 0 && Value != "1.0") return false;
      if (I == 1 &&
          (Value.empty() || !std::ranges::all_of(Value, [](char C) { return Is(C, bkNamePart); }) ||
           !Is(Value[0], bkNameStart)))
        return false;
      if (I == 2 && Value != "yes" && Value != "no") return false;
    }
    SkipBlanks();
    return Skip("?>");
  }

  bool Misc() {
    while (true) {
      SkipBlanks();
      if (!Rest().starts_with("<!--")) return true;
      if (!Comment()) return false;
    }
  }

  bool DocumentType() {
    if (!Skip("<!DOCTYPE")) return true;
    if (!SkipBlanks() || !TakeName()) return false;
    bool HasBlank = SkipBlanks();
    const bool IsPublic = HasBlank && Skip("PUBLIC");
    if (IsPublic && (!SkipBlanks() || !Identifier())) return false;
    if (IsPublic || (HasBlank && Skip("SYSTEM"))) {
      if (!SkipBlanks() || !Identifier()) return false;
      SkipBlanks();
    }
    return Skip(">");
  }
  bool Identifier() {
    std::string_view Value;
    return TakeQuoted(Value) && std::ranges::all_of(Value, [](char C) { return Is(C, bkLiteral); });
  }

  // --- Names

  // Null where there is none, or one that is not plain.
  const TXMLName* TakeName() {
    const char* const Begin = FAt;
    if (!Is(Peek(), bkNameStart)) return nullptr;
    std::size_t Hash = 0, Colon = std::string_view::npos;
    for (; FAt != FEnd; ++FAt) {
      if (*FAt == ':') {
        if (Colon != std::string_view::npos || !Is(Peek(1), bkNameStart)) return nullptr;
        Colon = static_cast<std::size_t>(FAt - Begin);
      } else if (!Is(*FAt, bkNamePart)) {
        break;
      }
      Hash = Hash * 31 + static_cast<unsigned char>(*FAt);
    }
    const std::string_view Bytes(Begin, static_cast<std::size_t>(FAt - Begin));
    std::size_t Slot = (Hash ^ (Hash >> 8)) % NameSlots;
    for (; FNames[Slot].Name; Slot = (Slot + 1) % NameSlots)
      if (FNames[Slot].Bytes == Bytes) return FNames[Slot].Name;
    if (++FNameCount > MostNames) return nullptr;
    const bool IsWhole = Colon == std::string_view::npos;
    const TXMLName* Name = FDocument->AddName(
        FDocument->KeepUtf8(IsWhole ? Bytes : Bytes.substr(Colon + 1)),
        FDocument->KeepUtf8(IsWhole ? std::string_view() : Bytes.substr(0, Colon)));
    FNames[Slot] = {Bytes, Name};
    return Name;
  }

  // --- Texts

  // Widens Bytes into the document's memory, references and ends of line resolved.
  bool Widen(std::string_view Bytes, TTextPlace Place, StringView& Result) {
    if (Bytes.empty()) return Result = {}, true;
    if (Bytes.size() > Limits::AttributeBytes) return false;
    // No text has more units than bytes, and none of its references takes more than it names.
    auto* const Begin = FDocument->Arena().Allocate<char16_t>(Bytes.size());
    char16_t* End = Begin;
    const char* At = Bytes.data();
    const char* const Last = At + Bytes.size();
    while (true) {
      WidenPlain(At, Last, End);
      if (At == Last) break;
      if (!WidenSpecial(At, Last, Place, End)) return false;
    }
    Result = {Begin, static_cast<std::size_t>(End - Begin)};
    if (Result.size() < Bytes.size()) FDocument->Arena().Shrink(Begin, Result.size());
    return true;
  }

  static void WidenPlain(const char*& At, const char* Last, char16_t*& End) {
    constexpr std::ptrdiff_t Step = 16;
    for (; Last - At >= Step; At += Step, End += Step) {
      std::uint64_t Halves[2];
      std::memcpy(Halves, At, Step);
      if (HasSpecial(Halves[0]) || HasSpecial(Halves[1])) break;
      for (std::ptrdiff_t I = 0; I < Step; ++I) End[I] = static_cast<unsigned char>(At[I]);
    }
    while (At != Last && !IsSpecial(static_cast<unsigned char>(*At)))
      *End++ = static_cast<unsigned char>(*At++);
  }

  static bool WidenSpecial(const char*& At, const char* Last, TTextPlace Place, char16_t*& End) {
    const auto First = static_cast<unsigned char>(*At);
    if (First >= 0x80) return WidenCharacter(At, Last, End);
    if (First == '<' || First == '&') {
      if (Place != TTextPlace::Verbatim) return First == '&' && WidenReference(At, Last, End);
    } else if (First == '\r') {
      if (Last - At > 1 && At[1] == '\n') ++At;
    } else if (First != '\n' && First != '\t') {
      return false;
    }
    ++At;
    if (First == '<' || First == '&')
      *End++ = First;
    else if (Place == TTextPlace::Attribute)
      *End++ = u' ';
    else
      *End++ = First == '\t' ? u'\t' : u'\n';
    return true;
  }

  static bool PutCharacter(std::uint32_t Code, char16_t*& End) {
    if (!IsXMLCharacter(Code)) return false;
    if (Code < 0x10000) {
      *End++ = static_cast<char16_t>(Code);
    } else {
      *End++ = static_cast<char16_t>(0xD7C0 + (Code >> 10));
      *End++ = static_cast<char16_t>(0xDC00 + (Code & 0x3FF));
    }
    return true;
  }

  static bool WidenCharacter(const char*& At, const char* Last, char16_t*& End) {
    const auto First = static_cast<unsigned char>(*At);
    if (First < 0xC2 || First > 0xF4) return false;
    const int More = First >= 0xF0 ? 3 : First >= 0xE0 ? 2 : 1;
    if (Last - At <= More) return false;
    std::uint32_t Code = First & (0x3Fu >> More);
    for (int I = 1; I <= More; ++I) {
      const auto Next = static_cast<unsigned char>(At[I]);
      if ((Next & 0xC0) != 0x80) return false;
      Code = Code << 6 | (Next & 0x3F);
    }
    // The shortest form only.
    if ((More == 2 && Code < 0x800) || (More == 3 && Code < 0x10000)) return false;
    At += More + 1;
    return PutCharacter(Code, End);
  }

  static bool WidenReference(const char*& At, const char* Last, char16_t*& End) {
    // The longest of a character has seven digits.
    constexpr std::size_t Longest = 11;
    const std::string_view Text(At, std::min(Longest, static_cast<std::size_t>(Last - At)));
    const std::size_t Size = Text.find(';');
    if (Size == std::string_view::npos) return false;
    const std::string_view Name = Text.substr(1, Size - 1);
    At += Size + 1;
    static constexpr std::pair<std::string_view, char16_t> Known[] = {
        {"lt", u'<'}, {"gt", u'>'}, {"amp", u'&'}, {"quot", u'"'}, {"apos", u'\''}};
    for (const auto& [Word, Character] : Known)
      if (Word == Name) return *End++ = Character, true;
    if (!Name.starts_with('#')) return false;
    const bool IsHex = Name.starts_with("#x");
    const std::string_view Digits = Name.substr(IsHex ? 2 : 1);
    std::uint32_t Code = 0;
    for (const char C : Digits) {
      const bool IsLetter = (C | 32) >= 'a' && (C | 32) <= 'f';
      if (!(C >= '0' && C <= '9') && !(IsHex && IsLetter)) return false;
      Code =
          Code * (IsHex ? 16 : 10) + static_cast<std::uint32_t>(IsLetter ? (C | 32) - 87 : C - 48);
    }
    return !Digits.empty() && PutCharacter(Code, End);
  }

  // --- Nodes

  TXMLNode* NewNode(TXMLNodeType Type, const TXMLName* Name) {
    if (++FNodes > Limits::XMLNodes) return nullptr;
    TXMLNode* Node = FDocument->NewNode(Type, Name, Line());
    if (FParent)
      FParent->Append(Node);
    else
      FDocument->SetRoot(Node);
    return Node;
  }
  bool Leaf(TXMLNodeType Type, std::string_view Bytes, TTextPlace Place) {
    StringView Value;
    if (!Widen(Bytes, Place, Value)) return false;
    // Outside the root nothing is kept.
    if (!FParent) return true;
    TXMLNode* Node = NewNode(Type, nullptr);
    if (Node) Node->SetValue(Value);
    return Node != nullptr;
  }

  bool Content() {
    if (Peek() != '<') return Text();
    switch (Peek(1)) {
      case '/': return EndTag();
      case '!': return Peek(2) == '-' ? Comment() : CData();
      default: ++FAt; return StartTag();
    }
  }
  bool Text() {
    const std::size_t Size = Rest().find('<');
    if (Size == std::string_view::npos) return false;
    const std::string_view Bytes(FAt, Size);
    if (Bytes.find("]]>") != std::string_view::npos) return false;
    FAt += Size;
    return Leaf(TXMLNodeType::ntText, Bytes, TTextPlace::Content);
  }
  bool Comment() {
    std::string_view Bytes;
    return Skip("<!--") && TakeUntil("--", Bytes) && Skip(">") &&
           Leaf(TXMLNodeType::ntComment, Bytes, TTextPlace::Verbatim);
  }
  bool CData() {
    std::string_view Bytes;
    return Skip("<![CDATA[") && TakeUntil("]]>", Bytes) &&
           Leaf(TXMLNodeType::ntCData, Bytes, TTextPlace::Verbatim);
  }

  // FAt is behind the bracket.
  bool StartTag() {
    const char* const Begin = FAt;
    const TXMLName* const Name = TakeName();
    if (!Name || Name->Prefix == XMLNamespacePrefix) return false;
    const std::string_view Bytes(Begin, static_cast<std::size_t>(FAt - Begin));
    if (FDepth >= Limits::NestingDepth || ++FElements > Limits::Elements) return false;
    std::size_t Count = 0;
    std::size_t Spaces = 0;
    while (true) {
      const bool HasBlank = SkipBlanks();
      if (Peek() == '>' || Peek() == '/') break;
      if (!HasBlank || Count == MostAttributes || !Attribute(FAttributes[Count])) return false;
      for (std::size_t I = 0; I < Count; ++I)
        if (FAttributes[I].Name == FAttributes[Count].Name) return false;
      Spaces += IsNamespace(*FAttributes[Count].Name);
      ++Count;
    }
    TXMLNode* Node = NewNode(TXMLNodeType::ntElement, Name);
    if (!Node) return false;
    if (Count > 0) SetAttributes(*Node, Count, Spaces);
    if (Skip(">")) {
      FOpen[static_cast<std::size_t>(FDepth++)] = Bytes;
      FParent = Node;
      return true;
    }
    return Skip("/>");
  }

  static bool IsNamespace(const TXMLName& Name) {
    return Name.Prefix == XMLNamespacePrefix ||
           (Name.Prefix.empty() && Name.LocalName == XMLNamespacePrefix);
  }

  bool Attribute(TXMLAttribute& Result) {
    Result.Name = TakeName();
    std::string_view Bytes;
    if (!Result.Name) return false;
    SkipBlanks();
    if (!Skip("=")) return false;
    SkipBlanks();
    if (!TakeQuoted(Bytes) || !Widen(Bytes, TTextPlace::Attribute, Result.Value)) return false;
    return !IsNamespace(*Result.Name) || IsPlainNamespace(*Result.Name, Result.Value);
  }
  // The prefixes and namespaces of XML itself have rules of their own.
  static bool IsPlainNamespace(const TXMLName& Name, StringView URI) {
    constexpr StringView Declarations = u"http://www.w3.org/2000/xmlns/";
    if (URI == XMLNamespace || URI == Declarations) return false;
    return Name.Prefix.empty() || !(URI.empty() || Name.LocalName.starts_with(u"xml"));
  }

  // Declarations of namespaces come first.
  void SetAttributes(TXMLNode& Node, std::size_t Count, std::size_t Spaces) {
    auto* const Kept = FDocument->Arena().Allocate<TXMLAttribute>(Count);
    if (Spaces == 0) {
      std::uninitialized_copy_n(FAttributes.begin(), Count, Kept);
    } else {
      auto *Space = Kept, *Other = Kept + Spaces;
      for (std::size_t I = 0; I < Count; ++I)
        std::construct_at(IsNamespace(*FAttributes[I].Name) ? Space++ : Other++, FAttributes[I]);
    }
    Node.SetAttributes(Kept, Count);
  }

  bool EndTag() {
    FAt += 2;
    if (!Skip(FOpen[static_cast<std::size_t>(FDepth - 1)])) return false;
    SkipBlanks();
    if (!Skip(">")) return false;
    --FDepth;
    FParent = static_cast<TXMLNode*>(FParent->Parent());
    return true;
  }

  const char* FAt;
  const char* const FEnd;
  // FLine is the line of this place.
  const char* FCounted;
  std::int32_t FLine = 1;
  std::unique_ptr<TXMLDocument> FDocument;
  TXMLNode* FParent = nullptr;
  int FDepth = 0;
  std::int32_t FElements = 0;
  std::size_t FNodes = 0, FNameCount = 0;
  std::array<TNameSlot, NameSlots> FNames;
  std::array<std::string_view, Limits::NestingDepth> FOpen;
  std::array<TXMLAttribute, MostAttributes> FAttributes;
};

}  // namespace

std::unique_ptr<TXMLDocument> ReadPlainXML(std::string_view Utf8) {
  return TPlainXMLReader(Utf8).Run();
}

}  // namespace qxsvg
