#include "adapters/libxml2/Encoding.h"

#include <libxml/encoding.h>

#include <algorithm>
#include <array>
#include <memory>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

constexpr std::string_view Utf8Mark = "\xEF\xBB\xBF";
// A declaration that is longer than this is none.
constexpr std::size_t LongestDeclaration = 1024;
// Bytes converted at a time.
constexpr std::size_t Step = std::size_t{1} << 16;

std::string Utf8FromUtf16(std::string_view Bytes, bool IsBigEndian) {
  const std::size_t High = IsBigEndian ? 0 : 1;
  String Text;
  Text.reserve(Bytes.size() / 2);
  for (std::size_t I = 0; I + 1 < Bytes.size(); I += 2)
    Text.push_back(static_cast<char16_t>(static_cast<unsigned char>(Bytes[I + High]) << 8 |
                                         static_cast<unsigned char>(Bytes[I + 1 - High])));
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

std::string Convert(std::string_view Bytes, xmlCharEncodingHandler& Handler) {
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

// UTF-32 and EBCDIC, by the first four bytes.
THandler WideHandler(std::string_view Bytes) {
  const auto Encoding =
      xmlDetectCharEncoding(reinterpret_cast<const unsigned char*>(Bytes.data()),
                            static_cast<int>(std::min<std::size_t>(4, Bytes.size())));
  constexpr std::array Wide = {XML_CHAR_ENCODING_UCS4LE, XML_CHAR_ENCODING_UCS4BE,
                               XML_CHAR_ENCODING_UCS4_2143, XML_CHAR_ENCODING_UCS4_3412,
                               XML_CHAR_ENCODING_EBCDIC};
  if (std::ranges::find(Wide, Encoding) == Wide.end()) return nullptr;
  return THandler(xmlGetCharEncodingHandler(Encoding));
}

}  // namespace

std::string_view DecodeDocument(std::string_view Bytes, std::string& Buffer) {
  if (Bytes.starts_with(Utf8Mark)) return Bytes.substr(Utf8Mark.size());
  if (const THandler Handler = WideHandler(Bytes)) return Buffer = Convert(Bytes, *Handler);
  const std::string_view Head = Bytes.substr(0, 2);
  if (Head == "\xFF\xFE" || Head == std::string_view("<\0", 2))
    return Buffer = Utf8FromUtf16(Bytes, false);
  if (Head == "\xFE\xFF" || Head == std::string_view("\0<", 2))
    return Buffer = Utf8FromUtf16(Bytes, true);
  const std::string Name = DeclaredEncoding(Bytes);
  if (IsUtf8Name(Name)) return Bytes;
  const THandler Handler(xmlFindCharEncodingHandler(Name.c_str()));
  if (!Handler) throw EXMLError(Format(u"Unknown encoding <%s>", {FromUtf8(Name)}), 1, 0);
  return Buffer = Convert(Bytes, *Handler);
}

}  // namespace qxsvg
