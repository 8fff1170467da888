#include "document/StringHashTable.h"

#include "foundation/Limits.h"

namespace qxsvg {

namespace {

String Decimal(std::int32_t Value) {
  const std::string Digits = std::to_string(Value);
  return String(Digits.begin(), Digits.end());
}

}  // namespace

String UniqueNameRows::RowKey(StringView Name, StringView Word) {
  return String(Name).append(1, u'\0').append(Word);
}

String UniqueNameRows::NameOfRound(StringView Name, StringView Word, std::int32_t Round) {
  const std::size_t At = Name.find(Word);
  const bool HasWord = At != StringView::npos;
  // The first round of a name without the word only appends it; all others put the counter behind.
  if (!HasWord && Round == 0) return String(Name).append(u" ").append(Word);
  const std::int32_t Counter = HasWord ? Round + 1 : Round;
  const std::int32_t Blanks = std::min(Counter, Limits::UniqueNameBlanks) + (HasWord ? 0 : 1);
  String Result(Name.substr(0, At));
  Result.append(static_cast<std::size_t>(Blanks), u' ').append(Word);
  return Result.append(u" (").append(Decimal(Counter)).append(u")");
}

void UniqueNameRows::NoteRemoved(StringView Key) {
  std::erase_if(FRounds, [Key](const auto& Row) {
    const StringView RowKey = Row.first;
    const std::size_t End = RowKey.find(u'\0');
    return Key == RowKey.substr(0, End) || Key.find(RowKey.substr(End + 1)) != StringView::npos;
  });
}

}  // namespace qxsvg
