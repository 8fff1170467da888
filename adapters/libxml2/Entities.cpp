#include "adapters/libxml2/Entities.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

struct TPredefined {
  std::string_view Name;
  char Character;
};
constexpr TPredefined Predefined[] = {
    {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};

// Name begins with "#". Anything that is no code point gives U+FFFD.
void AppendCharacter(std::string_view Name, std::string& Result) {
  const bool IsHex = Name.starts_with("#x");
  Name.remove_prefix(IsHex ? 2 : 1);
  std::uint32_t Code = 0;
  const auto Parsed =
      std::from_chars(Name.data(), Name.data() + Name.size(), Code, IsHex ? 16 : 10);
  if (Parsed.ec != std::errc() || Code > 0x10FFFF) Code = 0xFFFD;
  String Wide;
  if (Code < 0x10000) {
    Wide.push_back(static_cast<char16_t>(Code));
  } else {
    Wide.push_back(static_cast<char16_t>(0xD7C0 + (Code >> 10)));
    Wide.push_back(static_cast<char16_t>(0xDC00 + (Code & 0x3FF)));
  }
  Result.append(ToUtf8(Wide));
}

}  // namespace

void TEntities::Declare(std::string_view Name, std::string_view Content, bool IsExternal) {
  for (const TPredefined& P : Predefined)
    if (P.Name == Name) return;
  if (FEntities.size() >= static_cast<std::size_t>(Limits::EntityCount))
    throw ESVGException(SEntityCountLimit);
  FEntities.try_emplace(std::string(Name), TEntity{std::string(Content), IsExternal, false, {}});
}

TEntity* TEntities::Find(std::string_view Name) {
  const auto Found = FEntities.find(Name);
  return Found == FEntities.end() ? nullptr : &Found->second;
}

void TEntities::Charge(std::size_t Bytes, StringView Refusal) {
  FSpent += Bytes;
  if (FSpent > Limits::EntityBytes) throw ESVGException(Refusal);
}

TEntities::TOpening::TOpening(TEntities& Entities, TEntity& Entity, std::string_view Name, int Line)
    : FEntities(Entities), FEntity(Entity) {
  if (Entity.IsOpen)
    throw EXMLError(Format(u"The entity <%s> contains itself", {FromUtf8(Name)}), Line, 0);
  if (Entities.FDepth >= Limits::EntityDepth) throw ESVGException(SEntityLimit);
  ++FEntities.FDepth;
  FEntity.IsOpen = true;
}

TEntities::TOpening::~TOpening() {
  --FEntities.FDepth;
  FEntity.IsOpen = false;
}

std::string TEntities::ExpandAttribute(std::string_view Raw, int Line) {
  std::string Result;
  Expand(Raw, Line, false, Result);
  return Result;
}

void TEntities::Expand(std::string_view Raw, int Line, bool InEntity, std::string& Result) {
  while (true) {
    const std::size_t Ampersand = Raw.find('&');
    const std::size_t Begin = Result.size();
    Result.append(Raw.substr(0, Ampersand));
    // libxml2 did this for the attribute's own text. Blanks named by character references stay
    // (XML 1.0 chapter 3.3.3).
    if (InEntity)
      std::replace_if(
          Result.begin() + static_cast<std::ptrdiff_t>(Begin), Result.end(),
          [](char C) { return C == '\t' || C == '\n' || C == '\r'; }, ' ');
    if (Ampersand == std::string_view::npos) return;
    const std::size_t End = Raw.find(';', Ampersand);
    if (End == std::string_view::npos) throw EXMLError(u"A reference has no end", Line, 0);
    const std::string_view Name = Raw.substr(Ampersand + 1, End - Ampersand - 1);
    if (Name.starts_with('#'))
      AppendCharacter(Name, Result);
    else
      ExpandReference(Name, Line, Result);
    Raw.remove_prefix(End + 1);
  }
}

void TEntities::ExpandReference(std::string_view Name, int Line, std::string& Result) {
  for (const TPredefined& P : Predefined)
    if (P.Name == Name) {
      Result.push_back(P.Character);
      return;
    }
  TEntity* Entity = Find(Name);
  // With an external subset, which is not read, an unknown name is no error; it holds nothing.
  if (!Entity) return;
  if (Entity->IsExternal || Entity->Content.find('<') != std::string::npos)
    throw EXMLError(Format(u"The entity <%s> cannot stand in an attribute", {FromUtf8(Name)}), Line,
                    0);
  const TOpening Opening(*this, *Entity, Name, Line);
  Charge(Entity->Content.size() + ReferenceCost);
  Expand(Entity->Content, Line, true, Result);
}

}  // namespace qxsvg
