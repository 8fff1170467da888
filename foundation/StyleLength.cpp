// The lengths of style properties, which know what it is to be inherited.
#include "foundation/Length.h"
#include "foundation/Lookups.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

template <class T>
std::unique_ptr<TSVGStylePropertyLength> CreateStyleLength(TSVGStyleProperty Property) {
  return std::make_unique<T>(Property);
}

// The wiring gives parents of the same kind; another one is an error of the program.
template <class T>
const T& CheckedCast(const TSVGStylePropertyLength& Length) {
  if (!Length.ClassType().InheritsFrom(T::Class))
    throw EInvalidCast(u"A length of class %s is no %s", {Length.ClassName(), T::Class.Name});
  return static_cast<const T&>(Length);
}

constexpr TProperty StyleProperties[] = {
    Property<&TSVGStylePropertyLength::IsParentValue, &TSVGStylePropertyLength::SetParentValue>(
        u"ParentValue", NeverStored),
};

constexpr TProperty AutoProperties[] = {
    Property<&TSVGStylePropertyAutoLength::IsAutomatic, &TSVGStylePropertyAutoLength::SetAutomatic>(
        u"Automatic", StoredUnless<&TSVGStylePropertyAutoLength::IsAutomatic, true>),
};

constexpr TProperty ShiftProperties[] = {
    Property<&TSVGBaselineShiftLength::GetShift, &TSVGBaselineShiftLength::SetShift>(
        u"Shift", StoredUnless<&TSVGBaselineShiftLength::GetShift, TSVGBaselineShift::bsBaseline>),
};

}  // namespace

constinit const TSVGStylePropertyLengthClass TSVGStylePropertyLength::Class{
    {u"TSVGStylePropertyLength", &TSVGLength::Class, StyleProperties, nullptr},
    &CreateStyleLength<TSVGStylePropertyLength>};

constinit const TSVGStylePropertyLengthClass TSVGStylePropertyAutoLength::Class{
    {u"TSVGStylePropertyAutoLength", &TSVGStylePropertyLength::Class, AutoProperties, nullptr},
    &CreateStyleLength<TSVGStylePropertyAutoLength>};

constinit const TSVGStylePropertyLengthClass TSVGBaselineShiftLength::Class{
    {u"TSVGBaselineShiftLength", &TSVGStylePropertyLength::Class, ShiftProperties, nullptr},
    &CreateStyleLength<TSVGBaselineShiftLength>};

// --- TSVGStylePropertyLength

void TSVGStylePropertyLength::Assign(const TPersistent* Source) {
  if (const auto* Length = dynamic_cast<const TSVGStylePropertyLength*>(Source))
    SetParentValue(Length->IsParentValue());
  TSVGLength::Assign(Source);
}

bool TSVGStylePropertyLength::IsParentValue() const {
  if (Events().OnGetInherited && Events().OnGetParent)
    Events().OnGetInherited(EventOwner(), const_cast<TSVGStylePropertyLength*>(this), FInherited);
  return FInherited;
}

void TSVGStylePropertyLength::SetParentValue(bool Value) {
  if (Value == IsParentValue()) return;
  FInherited = Value;
  if (Events().OnSetInherited) Events().OnSetInherited(EventOwner(), this, Value);
  Change();
}

TSVGStylePropertyLength* TSVGStylePropertyLength::GetParentValue() const {
  TSVGStylePropertyLength* Parent = nullptr;
  if (Events().OnGetParent)
    Events().OnGetParent(EventOwner(), const_cast<TSVGStylePropertyLength*>(this), Parent);
  return Parent;
}

float TSVGStylePropertyLength::GetValue() const {
  const TSVGStylePropertyLength* Parent = IsParentValue() ? GetParentValue() : nullptr;
  return Parent ? Parent->GetValue() : TSVGLength::GetValue();
}

void TSVGStylePropertyLength::SetValue(float Value) {
  if (Value == Raw() && (!IsParentValue() || Value == GetValue())) return;
  SetParentValue(false);
  TSVGLength::SetValue(Value);
}

void TSVGStylePropertyLength::Clear() {
  TSVGLength::Clear();
  SetParentValue(false);
}

std::unique_ptr<TSVGLength> TSVGStylePropertyLength::Clone() const {
  auto Result = ClassType().Create(FStyleProperty);
  Result->Assign(this);
  return Result;
}

// --- TSVGStylePropertyAutoLength

void TSVGStylePropertyAutoLength::Assign(const TPersistent* Source) {
  if (const auto* Length = dynamic_cast<const TSVGStylePropertyAutoLength*>(Source))
    FAutomatic = Length->FAutomatic;
  TSVGStylePropertyLength::Assign(Source);
}

void TSVGStylePropertyAutoLength::Clear() {
  TSVGStylePropertyLength::Clear();
  FAutomatic = true;
}

bool TSVGStylePropertyAutoLength::IsAutomatic() const {
  const TSVGStylePropertyLength* Parent = IsParentValue() ? GetParentValue() : nullptr;
  return Parent ? CheckedCast<TSVGStylePropertyAutoLength>(*Parent).IsAutomatic() : FAutomatic;
}

void TSVGStylePropertyAutoLength::SetAutomatic(bool Value) {
  if (Value == FAutomatic && (!IsParentValue() || Value == IsAutomatic())) return;
  FAutomatic = Value;
  SetParentValue(false);
  Change();
}

// --- TSVGBaselineShiftLength

void TSVGBaselineShiftLength::Assign(const TPersistent* Source) {
  if (const auto* Length = dynamic_cast<const TSVGBaselineShiftLength*>(Source))
    FShift = Length->FShift;
  TSVGStylePropertyLength::Assign(Source);
}

void TSVGBaselineShiftLength::Clear() {
  TSVGStylePropertyLength::Clear();
  FShift = TSVGBaselineShift::bsBaseline;
}

TSVGBaselineShift TSVGBaselineShiftLength::GetShift() const {
  const TSVGStylePropertyLength* Parent = IsParentValue() ? GetParentValue() : nullptr;
  return Parent ? CheckedCast<TSVGBaselineShiftLength>(*Parent).GetShift() : FShift;
}

void TSVGBaselineShiftLength::SetShift(TSVGBaselineShift Value) {
  Value = KnownSVGValue(Value);
  if (Value == FShift && (!IsParentValue() || Value == GetShift())) return;
  FShift = Value;
  SetParentValue(false);
  Change();
}

}  // namespace qxsvg
