#include "adapters/libxml2/Encoding.h"

#include <libxml/encoding.h>
#include <libxml/globals.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
// "<?xm" in EBCDIC.
constexpr std::string_view EbcdicHead = "\x4C\x6F\xA7\x94";
constexpr const char* EbcdicName = "EBCDIC-US";
// A declaration that is longer than this is none.
constexpr std::size_t LongestDeclaration = 1024;
// Bytes converted at a time.
constexpr std::size_t Step = std::size_t{1} << 16;

// The shapes of text in wider units: by a byte order mark, or by the zeros beside the first "<".
// The longer marks come first, because that of UTF-32 begins like one of UTF-16.
struct TWideShape {
  std::string_view Head;
  std::size_t UnitBytes;
  bool IsBigEndian;
};
using std::string_view_literals::operator""sv;
constexpr TWideShape WideShapes[] = {{"\xFF\xFE\0\0"sv, 4, false}, {"<\0\0\0"sv, 4, false},
                                     {"\0\0\xFE\xFF"sv, 4, true},  {"\0\0\0<"sv, 4, true},
                                     {"\xFF\xFE"sv, 2, false},     {"<\0"sv, 2, false},
                                     {"\xFE\xFF"sv, 2, true},      {"\0<"sv, 2, true}};

std::string DecodeWide(std::string_view Bytes, const TWideShape& Shape) {
  const std::size_t Size = Shape.UnitBytes;
  String Text;
  Text.reserve(Bytes.size() / Size);
  for (std::size_t I = 0; I + Size <= Bytes.size(); I += Size) {
    std::uint32_t Code = 0;
    for (std::size_t K = 0; K < Size; ++K)
      Code =
          Code << 8 | static_cast<unsigned char>(Bytes[I + (Shape.IsBigEndian ? K : Size - 1 - K)]);
    if (Code < 0x10000) {
      Text.push_back(static_cast<char16_t>(Code));
    } else if (Code <= 0x10FFFF) {
      Text.push_back(static_cast<char16_t>(0xD7C0 + (Code >> 10)));
      Text.push_back(static_cast<char16_t>(0xDC00 + (Code & 0x3FF)));
    } else {
      Text.push_back(u'\uFFFD');
    }
  }
  return ToUtf8(StringView(Text).substr(Text.starts_with(u'\uFEFF') ? 1 : 0));
}

// The word behind "encoding" in the declaration; empty without one.
std::string DeclaredEncoding(std::string_view Bytes) {
  if (!Bytes.starts_with("<?xml")) return {};
  const std::string_view Head = Bytes.substr(0, std::min(Bytes.find("?>"), LongestDeclaration));
  const std::size_t Word = Head.find("encoding");
  if (Word == std::string_view::npos) return {};
  const std::size_t Open = Head.find_first_of("\"'", Word);
  if (Open == std::string_view::npos) return {};
  const std::size_t Close = Head.find(Head[Open], Open + 1);
  if (Close == std::string_view::npos) return {};
  return std::string(Head.substr(Open + 1, Close - Open - 1));
}

// A declaration that can be read byte by byte is in no encoding of wider units, whatever it says.
bool IsUtf8Name(std::string_view Name) {
  constexpr std::array<StringView, 3> Wide = {u"utf-16", u"utf-32", u"ucs-"};
  const String Word = FromUtf8(Name);
  return Word.empty() || SameText(Word, u"utf-8") || SameText(Word, u"utf8") ||
         std::ranges::any_of(Wide, [&Word](StringView Start) { return StartsText(Start, Word); }) ||
         StartsText(u"iso-10646-ucs", Word);
}

struct TBufferFree {
  void operator()(xmlBuffer* Buffer) const { xmlBufferFree(Buffer); }
};
using TBuffer = std::unique_ptr<xmlBuffer, TBufferFree>;

struct THandlerClose {
  void operator()(xmlCharEncodingHandler* Handler) const { xmlCharEncCloseFunc(Handler); }
};
using THandler = std::unique_ptr<xmlCharEncodingHandler, THandlerClose>;

// Converters of libxml2 print what they cannot convert, unless somebody listens. The setting is the
// thread's, and the host may have its own.
class TSilence {
 public:
  TSilence() : FHandler(xmlStructuredError), FContext(xmlStructuredErrorContext) {
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlError*) {});
  }
  TSilence(const TSilence&) = delete;
  TSilence& operator=(const TSilence&) = delete;
  ~TSilence() { xmlSetStructuredErrorFunc(FContext, FHandler); }

 private:
  xmlStructuredErrorFunc FHandler;
  void* FContext;
};

std::string Convert(std::string_view Bytes, xmlCharEncodingHandler& Handler) {
  const TSilence Silence;
  const TBuffer Source(xmlBufferCreate()), Target(xmlBufferCreate());
  if (!Source || !Target) throw std::bad_alloc();
  std::string Result;
  while (!Bytes.empty()) {
    const std::string_view Part = Bytes.substr(0, Step);
    Bytes.remove_prefix(Part.size());
    if (xmlBufferAdd(Source.get(), reinterpret_cast<const xmlChar*>(Part.data()),
                     static_cast<int>(Part.size())) != 0)
      throw std::bad_alloc();
    // What is left of a character cut in two waits in Source for the next part.
    int Before;
    do {
      Before = xmlBufferLength(Source.get());
      if (xmlCharEncInFunc(&Handler, Target.get(), Source.get()) == -2)
        throw EXMLError(u"The document is not in the encoding that it declares", 0, 0);
      Result.append(reinterpret_cast<const char*>(xmlBufferContent(Target.get())),
                    static_cast<std::size_t>(xmlBufferLength(Target.get())));
      xmlBufferEmpty(Target.get());
      if (Result.size() > Limits::DocumentBytes) throw ESVGException(SDocumentSizeLimit);
    } while (xmlBufferLength(Source.get()) > 0 && xmlBufferLength(Source.get()) < Before);
  }
  return Result;
}

}  // namespace

std::string_view DecodeDocument(std::string_view Bytes, std::string& Buffer) {
  if (Bytes.starts_with(Utf8Mark)) return Bytes.substr(Utf8Mark.size());
  for (const TWideShape& Shape : WideShapes)
    if (Bytes.starts_with(Shape.Head)) return Buffer = DecodeWide(Bytes, Shape);
  const std::string Name = Bytes.starts_with(EbcdicHead) ? EbcdicName : DeclaredEncoding(Bytes);
  if (IsUtf8Name(Name)) return Bytes;
  const THandler Handler(xmlFindCharEncodingHandler(Name.c_str()));
  if (!Handler) throw EXMLError(Format(u"Unknown encoding <%s>", {FromUtf8(Name)}), 1, 0);
  return Buffer = Convert(Bytes, *Handler);
}

}  // namespace qxsvg
