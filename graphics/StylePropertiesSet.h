// A set of style properties that tells its owner of changes.
#pragma once

#include "foundation/StyleProperties.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

// Its published properties are one boolean a style property, named as the enumerator without "ip".
class QXSVG_API TSVGStylePropertiesSet : public TPersistent {
 public:
  static constexpr std::uint32_t IndexLimit = 64;

  TSVGStylePropertiesSet() = default;
  explicit TSVGStylePropertiesSet(const TSVGStyleProperties& Value) : FValue(Value) {}

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // Takes the members of another set.
  void Assign(const TPersistent* Source) override;

  const TSVGStyleProperties& Value() const { return FValue; }
  // Tells of a change when the members differ.
  void SetValue(const TSVGStyleProperties& Value);
  bool Has(TSVGStyleProperty Property) const { return FValue.Has(Property); }
  // Membership by ordinal; 64 and above are never members, and setting them does nothing.
  bool GetSet(std::uint32_t Index) const {
    return Index < IndexLimit && FValue.Has(static_cast<TSVGStyleProperty>(Index));
  }
  void SetSet(std::uint32_t Index, bool IsMember);
  void Set(TSVGStyleProperty Property, bool IsMember) {
    SetSet(static_cast<std::uint32_t>(Property), IsMember);
  }

  // The enumerators of the members in rising order, with ", " between.
  String ToString() const;
  // Replaces the members by the enumerators listed; unknown ones and ipNone are passed over.
  void FromString(StringView Text);

  TNotifyMethod OnChange() const { return FOnChange; }
  void SetOnChange(TNotifyMethod Handler) { FOnChange = Handler; }

 private:
  void Change();

  TSVGStyleProperties FValue;
  TNotifyMethod FOnChange;
};

}  // namespace qxsvg
