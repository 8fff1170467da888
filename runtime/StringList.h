// A list of texts that tells its owner of changes.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

// Every element owns several of these and nearly all of them stay empty: an empty list is a few
// words and has no memory of its own.
//
// Indices count from 0; one that is out of range raises EListError. Names and lookups compare
// without regard to the case of ASCII letters.
class QXSVG_API TStrings : public TPersistent {
 public:
  TStrings();
  ~TStrings() override;

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  int Count() const { return FItems ? static_cast<int>(FItems->size()) : 0; }
  bool IsEmpty() const { return Count() == 0; }
  const String& Get(int Index) const;
  const String& operator[](int Index) const { return Get(Index); }
  void Set(int Index, StringView Text);
  const String* begin() const { return FItems ? FItems->data() : nullptr; }
  const String* end() const { return begin() + Count(); }

  // Gives the index of the new item.
  int Add(StringView Text);
  // Index may be Count, which adds.
  void Insert(int Index, StringView Text);
  void Delete(int Index);
  void Clear();
  void AddStrings(const TStrings& Source);
  // The first item that equals Text, or -1.
  int IndexOf(StringView Text) const;

  // Takes the items and the delimiter of another list; one change, even of many items.
  void Assign(const TPersistent* Source) override;
  // True when both hold the same items, case included.
  bool Equals(const TStrings& Other) const;

  // The items joined with CR LF. The setter makes one item of each line; lines end in CR, LF or
  // CR LF, and an end behind the last line makes no empty item.
  String Text() const;
  void SetText(StringView Text);

  // What stands between the items of a delimited text; a comma at first.
  char16_t Delimiter() const { return FDelimiter; }
  void SetDelimiter(char16_t Delimiter) { FDelimiter = Delimiter; }
  // Strict: the delimiter alone separates. Otherwise blanks (U+0020 and below) separate as well.
  bool StrictDelimiter() const { return FIsStrict; }
  void SetStrictDelimiter(bool IsStrict) { FIsStrict = IsStrict; }
  // The items joined with the delimiter. An item that would not read back as it is stands in
  // double quotes, with its own quotes doubled. In reading, a quote without its end goes to the end
  // of the text; what stands between an end quote and the next delimiter belongs to the item.
  String DelimitedText() const;
  void SetDelimitedText(StringView Text);
  // The delimited text with a comma, not strict, whatever this list's delimiter is.
  String CommaText() const;
  void SetCommaText(StringView Text);

  // Items of the form "name=value". Names gives an empty text for another item; Values that of the
  // first item of that name, or an empty text. SetValue with an empty text deletes the item.
  StringView Names(int Index) const;
  StringView ValueFromIndex(int Index) const;
  int IndexOfName(StringView Name) const;
  StringView Values(StringView Name) const;
  void SetValue(StringView Name, StringView Value);

  // Between these calls, which nest, changes are counted and not told; the last EndUpdate tells of
  // them once, if there were any. TUpdateLock pairs them.
  void BeginUpdate() { ++FUpdateCount; }
  void EndUpdate();
  int UpdateCount() const { return FUpdateCount; }

  // Called after each change with this list as the sender.
  TNotifyMethod OnChange() const { return FOnChange; }
  void SetOnChange(TNotifyMethod Handler) { FOnChange = Handler; }

 protected:
  void DefineProperties(TFiler& Filer) override;

 private:
  std::vector<String>& Items();
  void CheckIndex(int Index, int Limit) const;
  void Changed();
  String Delimit(char16_t Delimiter, bool IsStrict) const;
  void SetDelimited(StringView Text, char16_t Delimiter, bool IsStrict);

  // Null while the list is empty.
  std::unique_ptr<std::vector<String>> FItems;
  TNotifyMethod FOnChange;
  std::int32_t FUpdateCount = 0;
  char16_t FDelimiter = u',';
  bool FIsStrict = false;
  bool FHasChanged = false;
};

static_assert(sizeof(TStrings) <= 48);

using TStringList = TStrings;

// A row of the published-property table for a list that an owner holds, from its readers for
// looking and for changing: StringListProperty<T, &T::Classes, &T::Classes>(u"Classes"). What the
// row reads is to be looked at only, since owners may share one empty list; writing assigns into
// the owner's list, and nothing (null) clears it. Stored unless empty.
template <class Owner, const TStrings& (Owner::*Reader)() const, TStrings& (Owner::*Writer)()>
constexpr TProperty StringListProperty(StringView Name) {
  return {Name, TPropertyKind::Object,
          [](const TPersistent& Self) -> TPropertyValue {
            return const_cast<TStrings*>(&(static_cast<const Owner&>(Self).*Reader)());
          },
          [](TPersistent& Self, const TPropertyValue& Value) {
            TStrings& List = (static_cast<Owner&>(Self).*Writer)();
            if (const auto* Source = detail::FromPropertyValue<TPersistent*>(Value))
              List.Assign(Source);
            else
              List.Clear();
          },
          [](const TPersistent& Self) {
            return !(static_cast<const Owner&>(Self).*Reader)().IsEmpty();
          }};
}

}  // namespace qxsvg
