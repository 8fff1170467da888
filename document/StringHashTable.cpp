#include "document/StringHashTable.h"

#include <algorithm>

#include "foundation/Limits.h"

namespace qxsvg {

namespace {

String Decimal(std::int32_t Value) {
  const std::string Digits = std::to_string(Value);
  return String(Digits.begin(), Digits.end());
}

}  // namespace

StringView UniqueNameRows::Stem(StringView Name, StringView Word) {
  const StringView Before = Name.substr(0, Name.find(Word));
  return Before.substr(0, Before.find_last_not_of(u' ') + 1);
}

std::int32_t& UniqueNameRows::RoundOf(StringView Name, StringView Word) {
  if (std::find(FWords.begin(), FWords.end(), Word) == FWords.end()) FWords.emplace_back(Word);
  auto& Rows = FRounds[String(Stem(Name, Word))];
  return Rows[String(Name).append(1, u'\0').append(Word)];
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
  for (const String& Word : FWords) FRounds.erase(String(Stem(Key, Word)));
}

}  // namespace qxsvg
