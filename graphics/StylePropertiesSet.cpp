// The members of a set of style properties, their published form and their text.
#include "graphics/StylePropertiesSet.h"

#include <utility>

namespace qxsvg {

namespace {

// One published boolean a property, from its row: the enumerator without "ip".
template <std::size_t Index>
constexpr TProperty MemberProperty() {
  constexpr std::size_t PrefixLength = 2;
  return {SVGStylePropertyIdentifiers[Index].substr(PrefixLength), TPropertyKind::Boolean,
          [](const TPersistent& Self) -> TPropertyValue {
            return std::int64_t{static_cast<const TSVGStylePropertiesSet&>(Self).GetSet(Index)};
          },
          [](TPersistent& Self, const TPropertyValue& Value) {
            static_cast<TSVGStylePropertiesSet&>(Self).SetSet(
                Index, detail::FromPropertyValue<bool>(Value));
          },
          nullptr};
}

// The first row is ipNone, which is no property.
constexpr auto Properties = []<std::size_t... I>(std::index_sequence<I...>) {
  return std::array<TProperty, sizeof...(I)>{MemberProperty<I + 1>()...};
}
(std::make_index_sequence<SVGStylePropertyCount - 1>());

}  // namespace

constinit const TClass TSVGStylePropertiesSet::Class{
    u"TSVGStylePropertiesSet", &TPersistent::Class, Properties,
    [] { return std::unique_ptr<TPersistent>(std::make_unique<TSVGStylePropertiesSet>()); }};

void TSVGStylePropertiesSet::Assign(const TPersistent* Source) {
  if (const auto* Other = dynamic_cast<const TSVGStylePropertiesSet*>(Source))
    SetValue(Other->FValue);
  else
    TPersistent::Assign(Source);
}

void TSVGStylePropertiesSet::SetValue(const TSVGStyleProperties& Value) {
  if (Value == FValue) return;
  FValue = Value;
  Change();
}

void TSVGStylePropertiesSet::SetSet(std::uint32_t Index, bool IsMember) {
  if (Index >= IndexLimit || GetSet(Index) == IsMember) return;
  FValue.Set(static_cast<TSVGStyleProperty>(Index), IsMember);
  Change();
}

void TSVGStylePropertiesSet::Change() {
  if (FOnChange) FOnChange(this);
}

String TSVGStylePropertiesSet::ToString() const {
  String Result;
  for (const TSVGStyleProperty Member : FValue) {
    if (Ordinal(Member) >= SVGStylePropertyCount) break;
    if (!Result.empty()) Result += u", ";
    Result += SVGStylePropertyRowOf(Member).Identifier;
  }
  return Result;
}

void TSVGStylePropertiesSet::FromString(StringView Text) {
  TSVGStyleProperties Members;
  for (const StringView Part : SplitString(Text, u",")) {
    const std::size_t Index = IndexOf(SVGStylePropertyIdentifiers, Trim(Part));
    if (Index > 0) Members.Include(static_cast<TSVGStyleProperty>(Index));
  }
  SetValue(Members);
}

}  // namespace qxsvg
