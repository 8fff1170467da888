#include "adapters/libxml2/Prescan.h"

#include <cstddef>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

// The shortest attribute: blank, one letter, equals sign, two quotes.
constexpr std::size_t ShortestAttribute = 5;

// The number of attributes in Tag, which begins at a "<" and may go on behind its own end.
std::size_t CountAttributes(std::string_view Tag) {
  std::size_t Count = 0;
  while (true) {
    const std::size_t Next = Tag.find_first_of("\"'>");
    if (Next == std::string_view::npos || Tag[Next] == '>') return Count;
    const std::size_t Close = Tag.find(Tag[Next], Next + 1);
    if (Close == std::string_view::npos) return Count;
    ++Count;
    Tag.remove_prefix(Close + 1);
  }
}

}  // namespace

void CheckMarkup(std::string_view Bytes) {
  std::size_t Declared = 0;
  std::size_t At = Bytes.find('<');
  while (At != std::string_view::npos) {
    const std::size_t Next = Bytes.find('<', At + 1);
    const std::string_view Part = Bytes.substr(At, Next - At);
    // No attribute holds a raw "<", so that a tag ends before the next one.
    const bool IsTag = Part.size() > 1 && Part[1] != '!' && Part[1] != '?';
    if (IsTag && Part.size() > Limits::ElementAttributes * ShortestAttribute &&
        CountAttributes(Part) > Limits::ElementAttributes)
      throw ESVGException(SElementAttributesLimit);
    if (Part.starts_with("<!") && !Part.starts_with("<!-") && !Part.starts_with("<![") &&
        !Part.starts_with("<!DOCTYPE") && !Part.starts_with("<!ENTITY")) {
      Declared += Part.size();
      if (Declared > Limits::DeclarationBytes) throw ESVGException(SDeclarationLimit);
    }
    At = Next;
  }
}

}  // namespace qxsvg
