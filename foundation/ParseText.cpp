#include "foundation/ParseText.h"

#include "foundation/ParseInherit.h"
#include "foundation/ParseTokens.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

namespace {

// The white space of Unicode.
constexpr bool IsWhiteSpace(char16_t C) {
  return (C >= 0x09 && C <= 0x0D) || C == 0x20 || C == 0x85 || C == 0xA0 || C == 0x1680 ||
         (C >= 0x2000 && C <= 0x200A) || C == 0x2028 || C == 0x2029 || C == 0x202F || C == 0x205F ||
         C == 0x3000;
}

void AddAll(TStrings& List, StringView Text, StringView Delimiters) {
  for (const StringView Item : SplitClean(Text, Delimiters)) List.Add(Item);
}

}  // namespace

void ParseStringList(TStrings& List, StringView Text, StringView Delimiters) {
  Text = Trim(Text);
  TUpdateLock Lock(List);
  if (Text.empty())
    List.Clear();
  else
    AddAll(List, Text, Delimiters);
}

void ParseRequiredStringList(TStrings& List, StringView Text, StringView Delimiters) {
  Text = Trim(Text);
  TUpdateLock Lock(List);
  List.Clear();
  if (Text.empty())
    List.Add(StringView());
  else
    AddAll(List, Text, Delimiters);
}

void ParseFontFamily(StringView Text, TStrings& List, bool& Inherit) {
  Text = Trim(Text);
  if (!TakesValue(Text, Inherit)) return;
  TUpdateLock Lock(List);
  List.SetDelimiter(u',');
  List.SetStrictDelimiter(true);
  List.SetDelimitedText(Text);
  for (int I = 0; I < List.Count(); ++I) {
    const String Name(Trim(List[I]));
    List.Set(I, Name);
  }
}

String CleanText(StringView Text) {
  if (Text.empty()) return {};
  String Result;
  Result.reserve(Text.size() + 1);
  const std::size_t FirstPrinting = Text.find_first_not_of(u"\r\n");
  if (FirstPrinting == StringView::npos) return Result;
  if (IsWhiteSpace(Text[FirstPrinting])) Result.push_back(u' ');
  bool IsFirst = true;
  for (const StringView Word : SplitClean(Text, u" ")) {
    if (!IsFirst) Result.push_back(u' ');
    Result += Word;
    IsFirst = false;
  }
  if (IsWhiteSpace(Text[Text.find_last_not_of(u"\r\n")])) Result.push_back(u' ');
  return Result;
}

String RemoveComments(StringView Text) {
  constexpr StringView Opener = u"/*", Closer = u"*/";
  String Result;
  Result.reserve(Text.size());
  for (;;) {
    // What stood before a comment and what stood behind it can make an opener together.
    if (!Result.empty() && Result.back() == Opener[0] && Text.starts_with(Opener[1])) {
      Result.pop_back();
      Text.remove_prefix(1);
    } else {
      const std::size_t Open = Text.find(Opener);
      Result += Text.substr(0, Open);
      if (Open == StringView::npos) return Result;
      Text.remove_prefix(Open + Opener.size());
    }
    const std::size_t Close = Text.find(Closer);
    if (Close == StringView::npos) return Result.append(Opener).append(Text);
    Text.remove_prefix(Close + Closer.size());
  }
}

bool TSVGDeclarations::Next(TSVGDeclaration& Declaration) {
  while (!FRest.empty()) {
    const std::size_t End = FRest.find(u';');
    const StringView Piece = FRest.substr(0, End);
    FRest.remove_prefix(End == StringView::npos ? FRest.size() : End + 1);
    const std::size_t Colon = Piece.find(u':');
    const StringView Name = Trim(Piece.substr(0, Colon));
    if (Name.empty()) continue;
    const bool HasValue = Colon != StringView::npos;
    Declaration = {Name, HasValue ? Trim(Piece.substr(Colon + 1)) : StringView()};
    return true;
  }
  return false;
}

}  // namespace qxsvg
