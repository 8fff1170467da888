#include "runtime/StringList.h"

#include <algorithm>

#include "runtime/Exceptions.h"
#include "runtime/Filer.h"
#include "runtime/Numbers.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

namespace {

constexpr char16_t Quote = u'"';

constexpr bool IsBlank(char16_t C) {
  return C <= u' ';
}

void AppendQuoted(String& Target, StringView Item) {
  Target.push_back(Quote);
  for (const char16_t C : Item) {
    if (C == Quote) Target.push_back(Quote);
    Target.push_back(C);
  }
  Target.push_back(Quote);
}

// Takes items off the front of a delimited text.
class TDelimitedReader {
 public:
  TDelimitedReader(StringView Text, char16_t Delimiter, bool IsStrict)
      : FText(Text), FDelimiter(Delimiter), FIsStrict(IsStrict) {}

  bool Next(String& Item) {
    if (!FIsStrict) SkipBlanks();
    // A delimiter at the very end has an empty item behind it.
    if (FAt == FText.size() && !FIsBehindDelimiter) return false;
    FIsBehindDelimiter = false;
    Item.clear();
    ReadQuoted(Item);
    const std::size_t First = FAt;
    while (FAt < FText.size() && !EndsItem(FText[FAt])) ++FAt;
    Item += FText.substr(First, FAt - First);
    if (!FIsStrict) SkipBlanks();
    if (FAt < FText.size() && FText[FAt] == FDelimiter) {
      ++FAt;
      FIsBehindDelimiter = true;
    }
    return true;
  }

 private:
  bool EndsItem(char16_t C) const { return C == FDelimiter || (!FIsStrict && IsBlank(C)); }
  void SkipBlanks() {
    while (FAt < FText.size() && IsBlank(FText[FAt]) && FText[FAt] != FDelimiter) ++FAt;
  }
  void ReadQuoted(String& Item) {
    // Blanks before a quote are no part of the name that it guards, even where blanks count.
    std::size_t At = FAt;
    while (At < FText.size() && IsBlank(FText[At]) && FText[At] != FDelimiter) ++At;
    if (At == FText.size() || FText[At] != Quote || FDelimiter == Quote) return;
    for (++At; At < FText.size(); ++At) {
      if (FText[At] == Quote) {
        if (At + 1 == FText.size() || FText[At + 1] != Quote) break;
        ++At;
      }
      Item.push_back(FText[At]);
    }
    FAt = std::min(At + 1, FText.size());
  }

  StringView FText;
  std::size_t FAt = 0;
  char16_t FDelimiter;
  bool FIsStrict;
  bool FIsBehindDelimiter = false;
};

}  // namespace

const TClass TStrings::Class{u"TStrings", &TPersistent::Class, {}, [] {
                               return std::unique_ptr<TPersistent>(std::make_unique<TStrings>());
                             }};

TStrings::TStrings() = default;
TStrings::~TStrings() = default;

std::vector<String>& TStrings::Items() {
  if (!FItems) FItems = std::make_unique<std::vector<String>>();
  return *FItems;
}

void TStrings::CheckIndex(int Index, int Limit) const {
  if (Index < 0 || Index >= Limit)
    throw EListError(u"List index out of bounds (%s)", {IntToStr(Index)});
}

void TStrings::Changed() {
  FHasChanged = FUpdateCount > 0;
  if (!FHasChanged && FOnChange) FOnChange(this);
}

void TStrings::EndUpdate() {
  if (FUpdateCount == 0) throw EInvalidOperation(u"EndUpdate without BeginUpdate");
  if (--FUpdateCount == 0 && FHasChanged) Changed();
}

const String& TStrings::Get(int Index) const {
  CheckIndex(Index, Count());
  return (*FItems)[static_cast<std::size_t>(Index)];
}

void TStrings::Set(int Index, StringView Text) {
  CheckIndex(Index, Count());
  (*FItems)[static_cast<std::size_t>(Index)] = String(Text);
  Changed();
}

int TStrings::Add(StringView Text) {
  const int Index = Count();
  Insert(Index, Text);
  return Index;
}

void TStrings::Insert(int Index, StringView Text) {
  CheckIndex(Index, Count() + 1);
  String Item(Text);
  std::vector<String>& List = Items();
  List.insert(List.begin() + Index, std::move(Item));
  Changed();
}

void TStrings::Delete(int Index) {
  CheckIndex(Index, Count());
  FItems->erase(FItems->begin() + Index);
  if (FItems->empty()) FItems.reset();
  Changed();
}

void TStrings::Clear() {
  if (!FItems) return;
  FItems.reset();
  Changed();
}

void TStrings::AddStrings(const TStrings& Source) {
  if (Source.IsEmpty()) return;
  const std::vector<String> Added = *Source.FItems;
  std::vector<String>& List = Items();
  List.insert(List.end(), Added.begin(), Added.end());
  Changed();
}

int TStrings::IndexOf(StringView Text) const {
  const auto At = std::find_if(begin(), end(), [&](const String& S) { return SameText(S, Text); });
  return At == end() ? -1 : static_cast<int>(At - begin());
}

void TStrings::Assign(const TPersistent* Source) {
  const auto* Other = dynamic_cast<const TStrings*>(Source);
  if (!Other) return TPersistent::Assign(Source);
  if (Other == this) return;
  const TUpdateLock Lock(*this);
  FDelimiter = Other->FDelimiter;
  FIsStrict = Other->FIsStrict;
  Clear();
  AddStrings(*Other);
}

bool TStrings::Equals(const TStrings& Other) const {
  return std::equal(begin(), end(), Other.begin(), Other.end());
}

String TStrings::Text() const {
  return FItems ? Join(*FItems, u"\r\n") : String();
}

void TStrings::SetText(StringView Text) {
  const String Kept(Text);  // the text may be one of the items
  StringView Rest = Kept;
  const TUpdateLock Lock(*this);
  Clear();
  while (!Rest.empty()) {
    const std::size_t End = std::min(Rest.find_first_of(u"\r\n"), Rest.size());
    Add(Rest.substr(0, End));
    const bool IsPair = Rest.substr(End, 2) == u"\r\n";
    Rest.remove_prefix(std::min(End + (IsPair ? 2 : 1), Rest.size()));
  }
}

String TStrings::Delimit(char16_t Delimiter, bool IsStrict) const {
  if (Count() == 1 && Get(0).empty()) return u"\"\"";
  const auto NeedsQuotes = [=](const String& Item) {
    return std::any_of(Item.begin(), Item.end(), [=](char16_t C) {
      return C == Delimiter || C == Quote || (!IsStrict && IsBlank(C));
    });
  };
  String Result;
  for (const String& Item : *this) {
    if (&Item != begin()) Result.push_back(Delimiter);
    // Where blanks separate too, one that is the delimiter cannot show an empty item.
    if (NeedsQuotes(Item) || (Item.empty() && !IsStrict && IsBlank(Delimiter)))
      AppendQuoted(Result, Item);
    else
      Result += Item;
  }
  return Result;
}

void TStrings::SetDelimited(StringView Text, char16_t Delimiter, bool IsStrict) {
  const String Kept(Text);  // the text may be one of the items
  const TUpdateLock Lock(*this);
  Clear();
  TDelimitedReader Reader(Kept, Delimiter, IsStrict);
  for (String Item; Reader.Next(Item);) Add(Item);
}

String TStrings::DelimitedText() const {
  return Delimit(FDelimiter, FIsStrict);
}
void TStrings::SetDelimitedText(StringView Text) {
  SetDelimited(Text, FDelimiter, FIsStrict);
}
String TStrings::CommaText() const {
  return Delimit(u',', false);
}
void TStrings::SetCommaText(StringView Text) {
  SetDelimited(Text, u',', false);
}

StringView TStrings::Names(int Index) const {
  const StringView Item = Get(Index);
  const std::size_t At = Item.find(u'=');
  return At == StringView::npos ? StringView() : Item.substr(0, At);
}

StringView TStrings::ValueFromIndex(int Index) const {
  const StringView Item = Get(Index);
  const std::size_t At = Item.find(u'=');
  return At == StringView::npos ? StringView() : Item.substr(At + 1);
}

int TStrings::IndexOfName(StringView Name) const {
  for (int I = 0; I < Count(); ++I) {
    const StringView Item = Get(I);
    const std::size_t At = Item.find(u'=');
    if (At != StringView::npos && SameText(Item.substr(0, At), Name)) return I;
  }
  return -1;
}

StringView TStrings::Values(StringView Name) const {
  const int Index = IndexOfName(Name);
  return Index < 0 ? StringView() : ValueFromIndex(Index);
}

void TStrings::SetValue(StringView Name, StringView Value) {
  const int Index = IndexOfName(Name);
  if (Value.empty()) {
    if (Index >= 0) Delete(Index);
    return;
  }
  const String Item = String(Name).append(u"=").append(Value);
  if (Index >= 0)
    Set(Index, Item);
  else
    Add(Item);
}

void TStrings::DefineProperties(TFiler& Filer) {
  const auto Read = [this](TReader& Reader) {
    const TUpdateLock Lock(*this);
    Clear();
    Reader.ReadListBegin();
    while (!Reader.EndOfList()) Add(Reader.ReadString());
    Reader.ReadListEnd();
  };
  const auto Write = [this](TWriter& Writer) {
    Writer.WriteListBegin();
    for (const String& Item : *this) Writer.WriteString(Item);
    Writer.WriteListEnd();
  };
  Filer.DefineProperty(u"Strings", Read, Write, !IsEmpty());
}

}  // namespace qxsvg
