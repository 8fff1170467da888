// Entries of a style: storing, finding and ordering them, and their texts.
#include "document/Style.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <new>

#include "document/Selectors.h"
#include "document/StringHashTable.h"
#include "document/XML.h"
#include "foundation/Lookups.h"
#include "foundation/ParseText.h"
#include "runtime/StringList.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

namespace {

constexpr StringView MarkerName = u"marker";
constexpr StringView LineEnd = u"\r\n";

// More other names than this are searched through an index: attributes that are no properties are
// few on honest elements, and a hostile declaration list must not cost the square of its length.
constexpr std::size_t SearchedNames = 16;

// Texts that were replaced stay where they are as long as they are no more than that.
constexpr std::size_t LeastLostTexts = 256;

constexpr TProperty Properties[] = {
    Property<&TSVGStyle::Enabled, &TSVGStyle::SetEnabled>(u"Enabled",
                                                          StoredUnless<&TSVGStyle::Enabled, true>),
    Property<&TSVGStyle::Name, &TSVGStyle::SetName>(u"Name"),
};

}  // namespace

constinit const TClass TSVGStyle::Class{
    u"TSVGStyle", &TPersistent::Class, Properties,
    [] { return std::unique_ptr<TPersistent>(std::make_unique<TSVGStyle>()); }};

TSVGStyle::TSVGStyle() = default;

TSVGStyle::TSVGStyle(StringView Name, StringView Style) : FName(Name) {
  SetStyle(Style);
}

TSVGStyle::~TSVGStyle() = default;

// --- Entries

std::size_t TSVGStyle::RankOf(TSVGStyleProperty Property) const {
  const std::uint64_t Below = (std::uint64_t{1} << Ordinal(Property)) - 1;
  return static_cast<std::size_t>(std::popcount(FPresent.Mask() & Below));
}

std::int64_t TSVGStyle::FindOther(StringView Name) const {
  if (FIndex) {
    const auto Found = FIndex->find(String(Name));
    return Found == FIndex->end() ? -1 : std::int64_t{Found->second};
  }
  for (std::size_t I = 0; I < FOthers.size(); ++I)
    if (At(FOthers[I].Name) == Name) return static_cast<std::int64_t>(I);
  return -1;
}

StringView TSVGStyle::GetText(StringView Name) const {
  if (const TSVGStyleProperty Known = GetSVGStyleProperty(Name); Known != TSVGStyleProperty::ipNone)
    return GetStyleProp(Known);
  const std::int64_t Found = FindOther(Name);
  return Found < 0 ? StringView() : At(FOthers[static_cast<std::size_t>(Found)].Value);
}

TSVGStyle::TextPlace TSVGStyle::Put(StringView Text) {
  if (Text.size() >= InLongTexts - FTexts.size()) throw std::bad_alloc();
  const TextPlace Place{static_cast<std::uint32_t>(FTexts.size()),
                        static_cast<std::uint32_t>(Text.size())};
  FTexts.append(Text.data(), Text.size());
  return Place;
}

TSVGStyle::TextPlace TSVGStyle::PutOther(StringView Text) {
  auto Long = Text.size() < TLongText::LeastSize ? nullptr : TLongText::From(Text);
  if (!Long) return Put(Text);
  FLongTexts.push_back(std::move(Long));
  return {static_cast<std::uint32_t>(FLongTexts.size() - 1), InLongTexts};
}

bool TSVGStyle::IsHeld(StringView Text) const {
  const std::less<const char16_t*> Before;
  return !Before(Text.data(), FTexts.data()) && Before(Text.data(), FTexts.data() + FTexts.size());
}

void TSVGStyle::Replace(TextPlace& Held, StringView Text) {
  const TextPlace Lost = Held;
  Held = Put(Text);
  if (Lost.Size == InLongTexts) {
    FLongTexts[Lost.Begin].reset();
    return;
  }
  FLostTexts += Lost.Size;
  // A property that is set again and again shall not let the texts grow without end.
  if (FLostTexts > LeastLostTexts && FLostTexts > FTexts.size() / 2) DropLostTexts();
}

void TSVGStyle::DropLostTexts() {
  String Kept;
  Kept.reserve(FTexts.size() - FLostTexts);
  const auto Move = [&](TextPlace& Place) {
    if (Place.Size == InLongTexts) return;
    const StringView Text = At(Place);
    Place.Begin = static_cast<std::uint32_t>(Kept.size());
    Kept.append(Text);
  };
  for (KnownEntry& Entry : FProperties) Move(Entry.Value);
  for (OtherEntry& Entry : FOthers) Move(Entry.Name), Move(Entry.Value);
  FTexts = std::move(Kept);
  FLostTexts = 0;
}

// A table grows before it looks whether the name is new.
void TSVGStyle::NoteStore() {
  if (FProperties.size() + FOthers.size() >= FSlots / 4 * 3) FSlots *= 2;
}

void TSVGStyle::StoreKnown(TSVGStyleProperty Property, StringView Value) {
  const std::size_t Rank = RankOf(Property);
  if (FPresent.Has(Property)) {
    Replace(FProperties[Rank].Value, Value);
    return;
  }
  const auto Order = static_cast<std::uint32_t>(Count());
  FProperties.insert(FProperties.begin() + static_cast<std::ptrdiff_t>(Rank),
                     KnownEntry{Order, Put(Value)});
  FPresent.Include(Property);
}

void TSVGStyle::StoreOther(StringView Name, StringView Value) {
  if (const std::int64_t Found = FindOther(Name); Found >= 0)
    return Replace(FOthers[static_cast<std::size_t>(Found)].Value, Value);
  // The texts move when they grow.
  if (IsHeld(Name) || IsHeld(Value)) return StoreOther(String(Name), String(Value));
  const auto Order = static_cast<std::uint32_t>(Count());
  const TextPlace NamePlace = Put(Name);
  FOthers.push_back({Order, NamePlace, PutOther(Value)});
  if (FIndex) {
    FIndex->emplace(Name, static_cast<std::uint32_t>(FOthers.size() - 1));
  } else if (FOthers.size() > SearchedNames) {
    FIndex = std::make_unique<NameIndex>();
    for (std::size_t I = 0; I < FOthers.size(); ++I)
      FIndex->emplace(At(FOthers[I].Name), static_cast<std::uint32_t>(I));
  }
}

TSVGStyleProperty TSVGStyle::Store(StringView Name, StringView Value) {
  const TSVGStyleProperty Property = GetSVGStyleProperty(Name);
  NoteStore();
  if (Property == TSVGStyleProperty::ipNone)
    StoreOther(Name, Value);
  else
    StoreKnown(Property, Value);
  TellChange();
  return Property;
}

void TSVGStyle::SetStyleProp(TSVGStyleProperty Property, StringView Value) {
  // ipNone has no name; its text is the one under the empty name.
  Store(SVGStylePropertyRowOf(Property).Name, Value);
}

void TSVGStyle::SetText(StringView Name, StringView Value) {
  Store(Name, Value);
}

void TSVGStyle::RemoveAll() {
  FPresent = {};
  FProperties.clear();
  FOthers.clear();
  FIndex.reset();
  FTexts.clear();
  FLostTexts = 0;
  FLongTexts.clear();
  FFirstSlots = FSlots;
}

void TSVGStyle::Clear() {
  RemoveAll();
  TellChange();
}

std::vector<TSVGStyle::EntryView> TSVGStyle::InOrder() const {
  std::vector<EntryView> Added(static_cast<std::size_t>(Count()));
  std::size_t Rank = 0;
  for (const TSVGStyleProperty Property : FPresent) {
    const KnownEntry& Entry = FProperties[Rank++];
    Added[Entry.Order] = {SVGStylePropertyRowOf(Property).Name, At(Entry.Value)};
  }
  for (const OtherEntry& Entry : FOthers) Added[Entry.Order] = {At(Entry.Name), At(Entry.Value)};

  TQXDictionary<StringView, StringView, TStringComparer> Table(
      static_cast<std::int32_t>(FFirstSlots));
  for (const EntryView& Entry : Added) Table.Add(Entry.Name, Entry.Value);
  if (Table.Slots() < FSlots) Table.SetCapacity(static_cast<std::int32_t>(FSlots));
  std::vector<EntryView> Result;
  Result.reserve(Added.size());
  Table.ForEach([&Result](const auto& Entry) { Result.push_back({Entry.FKey, Entry.FValue}); });
  return Result;
}

// --- Reading

bool TSVGStyle::IsShorthandProperty(StringView Name) const {
  return Name == MarkerName;
}

TSVGStyleProperties TSVGStyle::AddStyle(const IXMLNode& Node) {
  const TUpdateLock Lock(*this);
  TSVGStyleProperties Named;
  const auto Attributes = Node.Attributes();
  // A load does this for every element: room at once spares it moving the entries about.
  const auto Known = static_cast<std::size_t>(
      std::count_if(Attributes.begin(), Attributes.end(), [](const TXMLAttribute& Attribute) {
        return GetSVGStyleProperty(Attribute.LocalName()) != TSVGStyleProperty::ipNone;
      }));
  std::size_t Texts = FTexts.size();
  for (const TXMLAttribute& Attribute : Attributes)
    Texts += Attribute.LocalName().size() +
             (Attribute.Value.size() < TLongText::LeastSize ? Attribute.Value.size() : 0);
  FTexts.reserve(Texts);
  FProperties.reserve(FProperties.size() + Known);
  FOthers.reserve(FOthers.size() + Attributes.size() - Known);
  for (const TXMLAttribute& Attribute : Attributes)
    if (!IsShorthandProperty(Attribute.LocalName()))
      Named.Include(Store(Attribute.LocalName(), Attribute.Value));
  return Named;
}

TSVGStyleProperties TSVGStyle::AddStyle(StringView Text) {
  Text = Trim(Text);
  if (Text.empty()) return {};
  String WithoutComments;
  if (Text.find(u"/*") != StringView::npos) {
    WithoutComments = RemoveComments(Text);
    Text = WithoutComments;
  }
  const TUpdateLock Lock(*this);
  TSVGStyleProperties Named;
  TSVGDeclarations Declarations(Text);
  TSVGDeclaration Declaration;
  while (Declarations.Next(Declaration)) Named.Include(Store(Declaration.Name, Declaration.Value));
  return Named;
}

void TSVGStyle::SetStyle(StringView Text) {
  // The text may be a view of one of the entries that go.
  const String Kept(Text);
  const TUpdateLock Lock(*this);
  RemoveAll();
  AddStyle(Kept);
}

void TSVGStyle::LoadFromXML(const IXMLNode& Node) {
  const TUpdateLock Lock(*this);
  RemoveAll();
  AddStyle(Node);
}

// --- Copies and texts

void TSVGStyle::Assign(const TPersistent* Source) {
  if (Source == this) return;
  if (const auto* Style = dynamic_cast<const TSVGStyle*>(Source)) {
    const TUpdateLock Lock(*this);
    FName = Style->FName;
    FSelector.reset();
    RemoveAll();
    Style->ForEach([this](StringView Name, StringView Value) { Store(Name, Value); });
  } else if (const auto* List = dynamic_cast<const TStrings*>(Source)) {
    const TUpdateLock Lock(*this);
    for (int I = 0; I < List->Count(); ++I) Store(List->Names(I), List->ValueFromIndex(I));
  } else {
    TPersistent::Assign(Source);
  }
}

void TSVGStyle::AssignTo(TPersistent* Dest) const {
  if (auto* List = dynamic_cast<TStrings*>(Dest))
    List->SetText(StylesToString());
  else
    TPersistent::AssignTo(Dest);
}

String TSVGStyle::StylesToString() const {
  String Result;
  ForEach([&Result](StringView Name, StringView Value) {
    Result.append(Name).append(u"=").append(Value).append(LineEnd);
  });
  while (!Result.empty() && Result.back() <= u' ') Result.pop_back();
  return Result;
}

String TSVGStyle::ToString() const {
  return FName + u" { " + StylesToString() + u" }";
}

// --- Changes

void TSVGStyle::SetName(StringView Value) {
  if (Value == FName) return;
  FName = Value;
  FSelector.reset();
  Change();
}

void TSVGStyle::ReadSelector() const {
  FSelector = std::make_unique<TSVGSelectorTokens>(TokenizeSelector(FName));
}

void TSVGStyle::SetEnabled(bool Value) {
  if (Value == FEnabled) return;
  FEnabled = Value;
  Change();
}

void TSVGStyle::EndUpdate() {
  if (--FUpdateCount == 0) Change();
}

void TSVGStyle::TellChange() {
  if (FUpdateCount == 0) Change();
}

void TSVGStyle::Change() {
  if (FOnChange) FOnChange(this);
}

}  // namespace qxsvg
