// A list of declarations: the texts of an element's attributes and style, or of one rule.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <unordered_map>
#include <vector>

#include "document/LongText.h"
#include "foundation/SelectorTokens.h"
#include "foundation/StyleProperties.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

class IXMLNode;

// Maps names of properties and attributes to the texts given for them. Names are exact; a later
// text for a name replaces the earlier one. Nothing is parsed here: what a text means is decided
// where it is applied to an element.
//
// The visible order of the entries is that of the slots of a keyed table made for 64 names
// (document/HashTable.h). The entries themselves are kept so that asking for one of the known
// properties costs a bit test when it is missing, and no search when it is there.
class QXSVG_API TSVGStyle : public TPersistent {
 public:
  TSVGStyle();
  // Name is the selector of a rule, Style a declaration list.
  TSVGStyle(StringView Name, StringView Style);
  ~TSVGStyle() override;

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // From another style: its name and texts. From a string list: its "name=value" items, which are
  // added to what is there.
  void Assign(const TPersistent* Source) override;

  // Called after every change that is not held back by an update.
  virtual void Change();
  // Whether the name stands for several properties and is therefore no attribute: "marker" alone.
  virtual bool IsShorthandProperty(StringView Name) const;
  // Adds the attributes of a node under their local names, shorthands excepted. Gives the
  // properties that were named, with ipNone for each name that is none.
  virtual TSVGStyleProperties AddStyle(const IXMLNode& Node);
  // Adds a declaration list, "name: value; name: value"; comments are taken out. Gives the
  // properties that were named, with ipNone for each name that is none. "!important" stays in the
  // value.
  virtual TSVGStyleProperties AddStyle(StringView Text);
  // Lines of the form name=value, ended by CR LF except for the last, in the order of the entries.
  virtual String StylesToString() const;

  // Replaces all entries by those of a declaration list; one change.
  void SetStyle(StringView Text);
  // Replaces all entries by the attributes of a node; one change.
  void LoadFromXML(const IXMLNode& Node);
  void Clear();

  // The text of a property, or an empty one; valid until the style changes.
  StringView GetStyleProp(TSVGStyleProperty Property) const {
    return FPresent.Has(Property) ? At(FProperties[RankOf(Property)].Value) : StringView();
  }
  void SetStyleProp(TSVGStyleProperty Property, StringView Value);
  // The text under any name, or an empty one; valid until the style changes.
  StringView GetText(StringView Name) const;
  void SetText(StringView Name, StringView Value);

  // The known properties that have an entry, whose text may be empty; never ipNone.
  const TSVGStyleProperties& Present() const { return FPresent; }
  std::int32_t Count() const {
    return static_cast<std::int32_t>(FProperties.size() + FOthers.size());
  }
  // Walks the entries in their order: Visit(StringView Name, StringView Value).
  template <class Visitor>
  void ForEach(Visitor&& Visit) const {
    for (const EntryView& Entry : InOrder()) Visit(Entry.Name, Entry.Value);
  }

  // The selector, empty for an element's own style.
  const String& Name() const { return FName; }
  // The key of a rule in its document's table does not follow.
  void SetName(StringView Value);
  // The selector cut into tokens, kept until the name changes. Raises ESVGException for a bracket
  // that is malformed.
  const TSVGSelectorTokens& SelectorTokens() const {
    if (!FSelector) ReadSelector();
    return *FSelector;
  }
  // A rule that is not enabled is left out of the cascade.
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool Value);

  // Name { entries }
  String ToString() const;

  // Between these calls, which nest, changes are held back; the last EndUpdate tells of one.
  void BeginUpdate() { ++FUpdateCount; }
  void EndUpdate();

  TNotifyMethod OnChange() const { return FOnChange; }
  void SetOnChange(TNotifyMethod Handler) { FOnChange = Handler; }

 protected:
  void AssignTo(TPersistent* Dest) const override;

 private:
  static constexpr std::uint32_t FirstCapacity = 64;

  // Where a text lies in FTexts; with the size InLongTexts, which one of FLongTexts it is.
  struct TextPlace {
    std::uint32_t Begin = 0, Size = 0;
  };
  static constexpr std::uint32_t InLongTexts = std::numeric_limits<std::uint32_t>::max();
  // Order is the place in the sequence of additions, which the visible order depends on.
  struct KnownEntry {
    std::uint32_t Order;
    TextPlace Value;
  };
  struct OtherEntry {
    std::uint32_t Order;
    TextPlace Name, Value;
  };
  struct EntryView {
    StringView Name, Value;
  };
  using NameIndex = std::unordered_map<String, std::uint32_t>;

  void ReadSelector() const;
  std::size_t RankOf(TSVGStyleProperty Property) const;
  StringView At(TextPlace Place) const {
    if (Place.Size == InLongTexts) [[unlikely]]
      return FLongTexts[Place.Begin]->View();
    return {FTexts.data() + Place.Begin, Place.Size};
  }
  // Text may be a part of FTexts.
  TextPlace Put(StringView Text);
  // As Put, for the text of an attribute that is no property.
  TextPlace PutOther(StringView Text);
  bool IsHeld(StringView Text) const;
  void Replace(TextPlace& Held, StringView Text);
  void DropLostTexts();
  TSVGStyleProperty Store(StringView Name, StringView Value);
  void NoteStore();
  void StoreKnown(TSVGStyleProperty Property, StringView Value);
  void StoreOther(StringView Name, StringView Value);
  std::int64_t FindOther(StringView Name) const;
  void RemoveAll();
  void TellChange();
  std::vector<EntryView> InOrder() const;

  TSVGStyleProperties FPresent;
  // The entries of FPresent, in the order of the enumeration.
  std::vector<KnownEntry> FProperties;
  // All other names, in the order of addition.
  std::vector<OtherEntry> FOthers;
  // Where in FOthers a name is; made when there are too many to search.
  std::unique_ptr<NameIndex> FIndex;
  // The texts of all entries one behind the other, so that an element takes one piece of memory for
  // all its attributes; FLostTexts of its characters belong to none any more.
  String FTexts;
  std::size_t FLostTexts = 0;
  // Of FOthers, at most one of each. The place of one that was replaced stays empty.
  std::vector<std::unique_ptr<TLongText>> FLongTexts;
  // The slots that a table with these entries would have had when it was last emptied, and has now.
  std::uint32_t FFirstSlots = FirstCapacity;
  std::uint32_t FSlots = FirstCapacity;
  String FName;
  mutable std::unique_ptr<TSVGSelectorTokens> FSelector;
  TNotifyMethod FOnChange;
  std::int32_t FUpdateCount = 0;
  bool FEnabled = true;
};

}  // namespace qxsvg
