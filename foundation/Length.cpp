#include "foundation/Length.h"

#include "foundation/Lookups.h"

namespace qxsvg {

namespace {

constexpr TProperty Properties[] = {
    Property<&TSVGLength::Unit, &TSVGLength::SetUnit>(u"aUnit",
                                                      StoredIf<&TSVGLength::IsUnitStored>),
    Property<&TSVGLength::Raw, &TSVGLength::SetRaw>(u"Raw", StoredIf<&TSVGLength::IsRawStored>),
    Property<&TSVGLength::GetPixels, &TSVGLength::SetPixels>(u"Pixels", NeverStored),
    Property<&TSVGLength::IsPercent, &TSVGLength::SetIsPercent>(
        u"IsPercent", StoredIf<&TSVGLength::IsPercentStored>),
};

// (Max - Min) * Share + Min without a rounding in between.
float ScaleToRange(double Share, float Min, float Max) {
  return static_cast<float>((static_cast<double>(Max) - Min) * Share + Min);
}

}  // namespace

constinit const TClass TSVGLength::Class{
    u"TSVGLength", &TPersistent::Class, Properties,
    []() -> std::unique_ptr<TPersistent> { return std::make_unique<TSVGLength>(); }};

constinit const TSVGLengthEvents TSVGLength::NoEvents{};

TSVGLength::TSVGLength(float Value, bool IsPercent, TSVGUnit Unit)
    : FRaw(Value),
      FUnit(KnownSVGValue(Unit)),
      FIsPercent(IsPercent),
      FDefaultIsPercent(IsPercent) {}

TSVGLength::~TSVGLength() = default;

void TSVGLength::Assign(const TPersistent* Source) {
  const auto* Length = dynamic_cast<const TSVGLength*>(Source);
  if (!Length) return TPersistent::Assign(Source);
  FRaw = Length->FRaw;
  FIsPercent = Length->FIsPercent;
  FDefaultIsPercent = Length->FDefaultIsPercent;
  FUnit = Length->FUnit;
  Change();
}

void TSVGLength::Initialize(float Value, bool IsPercent, TSVGUnit Unit) {
  FRaw = Value;
  FIsPercent = FDefaultIsPercent = IsPercent;
  FUnit = KnownSVGValue(Unit);
  Change();
}

void TSVGLength::Clear() {
  FRaw = 0;
  FIsPercent = FDefaultIsPercent;
  FUnit = TSVGUnit::suNone;
  Change();
}

std::unique_ptr<TSVGLength> TSVGLength::Clone() const {
  auto Result = std::make_unique<TSVGLength>();
  Result->Assign(this);
  return Result;
}

void TSVGLength::Unwire() {
  FOwner = nullptr;
  FEvents = &NoEvents;
}

void TSVGLength::Change() {
  if (FEvents->OnChange) FEvents->OnChange(FOwner, this);
}

TSVGUnitFactors TSVGLength::GetUnitFactors() const {
  TSVGUnitFactors Factors = SVGUnitFactors;
  if (FEvents->OnUnitFactors)
    FEvents->OnUnitFactors(FOwner, const_cast<TSVGLength*>(this), Factors);
  return Factors;
}

float TSVGLength::UnitFactor(TSVGUnit Unit) const {
  return FEvents->OnUnitFactor ? FEvents->OnUnitFactor(FOwner, Unit)
                               : GetUnitFactors()[Ordinal(Unit)];
}

float TSVGLength::GetValue() const {
  const float Pixels = GetPixels();
  if (!FIsPercent) return Pixels;
  float Min = 0, Max = 1;
  bool DoRange = true;
  if (FEvents->OnRange) FEvents->OnRange(FOwner, const_cast<TSVGLength*>(this), Min, Max, DoRange);
  return DoRange ? ScaleToRange(Pixels, Min, Max) : Pixels;
}

void TSVGLength::SetValue(float Value) {
  SetPixels(Value);
}

float TSVGLength::GetPixels() const {
  return static_cast<float>(static_cast<double>(FRaw) * UnitFactor(FUnit));
}

void TSVGLength::SetPixels(float Value) {
  const auto NewRaw = static_cast<float>(static_cast<double>(Value) / UnitFactor(FUnit));
  if (GetPixels() == NewRaw) return;
  FRaw = NewRaw;
  Change();
}

float TSVGLength::GetAsUnit(TSVGUnit Unit) const {
  return static_cast<float>(static_cast<double>(FRaw) * UnitFactor(FUnit) /
                            UnitFactor(KnownSVGValue(Unit)));
}

void TSVGLength::SetAsUnit(TSVGUnit Unit, float Value) {
  FUnit = KnownSVGValue(Unit);
  FRaw = Value;
  FIsPercent = Unit == TSVGUnit::suPercent;
  Change();
}

void TSVGLength::SetUnit(TSVGUnit Value) {
  if (Value != FUnit) SetAsUnit(Value, GetAsUnit(Value));
}

void TSVGLength::SetRaw(float Value) {
  if (Value == FRaw) return;
  FRaw = Value;
  Change();
}

void TSVGLength::SetIsPercent(bool Value) {
  if (Value == FIsPercent) return;
  FIsPercent = Value;
  Change();
}

float TSVGLength::GetPercentValue(float Min, float Max) const {
  return FIsPercent ? ScaleToRange(FRaw, Min, Max) : FRaw;
}

String TSVGLength::ToString(const TSVGNumberFormat& Format, float Min, float Max) const {
  return SVGNumberToString(GetPercentValue(Min, Max), FUnit, Format);
}

TSVGLength& TSVGLengths::Add(std::unique_ptr<TSVGLength> Length) {
  return *FItems.emplace_back(std::move(Length));
}

void TSVGLengths::Delete(std::size_t Index) {
  FItems.erase(FItems.begin() + static_cast<std::ptrdiff_t>(Index));
}

std::unique_ptr<TSVGLengths> TSVGLengths::Clone() const {
  auto Result = std::make_unique<TSVGLengths>();
  Clone(*Result);
  return Result;
}

TSVGLengths& TSVGLengths::Clone(TSVGLengths& Dest) const {
  if (&Dest == this) return Dest;
  Dest.Clear();
  Dest.FItems.reserve(FItems.size());
  for (const auto& Length : FItems) Dest.Add(Length->Clone());
  return Dest;
}

}  // namespace qxsvg
