// The pen's setters, copies, dash texts and stored tests.
#include "graphics/SVGPen.h"

#include "foundation/ParseColor.h"
#include "foundation/ParseLengths.h"
#include "foundation/Writers.h"

namespace qxsvg {

namespace {

constexpr TQXGPColor OpaqueBlack = 0xff000000;
constexpr float FirstThickness = 1;
constexpr float FirstMiterLimit = 4;
constexpr StringView NoneText = u"none";
constexpr StringView DashFormat = u"0.##";
constexpr StringView CustomDashFormat = u"0.###";

constexpr TProperty Properties[] = {
    Property<&TSVGPen::Color, &TSVGPen::SetColor>(u"Color", StoredIf<&TSVGPen::IsColorStored>),
    Property<&TSVGPen::Opacity, &TSVGPen::SetOpacity>(u"Opacity",
                                                      StoredIf<&TSVGPen::IsOpacityStored>),
    Property<&TSVGPen::Kind, &TSVGPen::SetKind>(u"Kind", StoredIf<&TSVGPen::IsKindStored>),
    // Behind Kind, whose setter may drop it.
    Property<&TSVGPen::URI, &TSVGPen::SetURI>(u"URI", StoredUnlessEmpty<&TSVGPen::URI>),
    Property<&TSVGPen::Thickness, &TSVGPen::SetThickness>(u"Thickness",
                                                          StoredIf<&TSVGPen::IsThicknessStored>),
    Property<&TSVGPen::ThicknessIsPercent, &TSVGPen::SetThicknessIsPercent>(
        u"ThicknessIsPercent", StoredUnless<&TSVGPen::ThicknessIsPercent, false>),
    Property<&TSVGPen::ThicknessPreferredUnit, &TSVGPen::SetThicknessPreferredUnit>(
        u"ThicknessPreferredUnit",
        StoredUnless<&TSVGPen::ThicknessPreferredUnit, TSVGUnit::suNone>),
    Property<&TSVGPen::StartCap, &TSVGPen::SetStartCap>(u"StartCap",
                                                        StoredIf<&TSVGPen::IsStartCapStored>),
    Property<&TSVGPen::EndCap, &TSVGPen::SetEndCap>(u"EndCap", StoredIf<&TSVGPen::IsEndCapStored>),
    Property<&TSVGPen::DashCap, &TSVGPen::SetDashCap>(u"DashCap",
                                                      StoredIf<&TSVGPen::IsDashCapStored>),
    Property<&TSVGPen::Join, &TSVGPen::SetJoin>(u"Join", StoredIf<&TSVGPen::IsJoinStored>),
    Property<&TSVGPen::MiterLimit, &TSVGPen::SetMiterLimit>(u"MiterLimit",
                                                            StoredIf<&TSVGPen::IsMiterLimitStored>),
    Property<&TSVGPen::Dash, &TSVGPen::SetDash>(u"Dash", StoredIf<&TSVGPen::IsDashStored>),
    ObjectProperty<TSVGPen, TSVGLength, &TSVGPen::SVGDashOffset>(
        u"SVGDashOffset", StoredIf<&TSVGPen::IsSVGDashOffsetStored>),
    // Behind the offset, which the setter takes along.
    Property<&TSVGPen::CustomDashArray, &TSVGPen::SetCustomDashArray>(
        u"CustomDashArray", StoredIf<&TSVGPen::IsCustomDashArrayStored>),
};

const TSVGLength& NoOffset() {
  static const TSVGLength Offset;
  return Offset;
}

}  // namespace

constinit const TClass TSVGPen::Class{
    u"TSVGPen", &TQXGPPen::Class, Properties,
    [] { return std::unique_ptr<TPersistent>(std::make_unique<TSVGPen>()); }};

TSVGPen::TSVGPen(TQXGPCanvas* Canvas, TQXGPBrushKind Kind, TQXGPColor Color)
    : TQXGPPen(Canvas, Kind, Color) {
  SetThickness(FirstThickness);
  SetMiterLimit(FirstMiterLimit);
}

TSVGPen::~TSVGPen() = default;

void TSVGPen::Assign(const TPersistent* Source) {
  FHasTakenDashes = false;
  if (const auto* Other = dynamic_cast<const TSVGPen*>(Source); Other && Other != this) {
    FOpacity = Other->FOpacity;
    FDefaultOpacity = Other->FDefaultOpacity;
    FURI = Other->FURI;
    InheritDashOffset(*Other);
    FThicknessIsPercent = Other->FThicknessIsPercent;
    FThicknessPreferredUnit = Other->FThicknessPreferredUnit;
    FDashArrayIsPercent = Other->FDashArrayIsPercent;
    FDashArrayPreferredUnits = Other->FDashArrayPreferredUnits;
  }
  TQXGPPen::Assign(Source);
}

std::unique_ptr<TQXGPGraphicsObject> TSVGPen::Clone() const {
  auto Result = std::make_unique<TSVGPen>(nullptr, DefaultKind(), DefaultColor());
  Result->Assign(this);
  return Result;
}

void TSVGPen::Clear() {
  SetKind(TQXGPBrushKind::bkNone);
  SetColor(OpaqueBlack);
  SetDash(TQXGPStrokeDash::sdSolid);
  FThicknessPreferredUnit = TSVGUnit::suNone;
  SetThicknessIsPercent(false);
  SetThickness(FirstThickness);
  SetDashOffset(0);
  SetStartCap(TQXGPLineCap::lcFlat);
  SetEndCap(TQXGPLineCap::lcFlat);
  SetDashCap(TQXGPDashCap::dcFlat);
  SetMiterLimit(FirstMiterLimit);
  if (FSVGDashOffset) FSVGDashOffset->Clear();
  FDashArrayIsPercent.clear();
  FDashArrayPreferredUnits.clear();
  SetJoin(TQXGPStrokeJoin::sjMiter);
  SetURI({});
  SetOpacity(FDefaultOpacity);
}

// --- Setters

void TSVGPen::SetKind(TQXGPBrushKind Value) {
  if (Value == Kind()) return;
  if (Value == TQXGPBrushKind::bkNone || Value == TQXGPBrushKind::bkSolid) FURI.clear();
  TQXGPPen::SetKind(Value);
}

void TSVGPen::SetOpacity(float Value) {
  if (Value == FOpacity) return;
  FOpacity = detail::ClampOpacity(Value);
  Update();
}

void TSVGPen::SetURI(StringView Value) {
  if (Value == FURI) return;
  FURI = Value;
  Update();
}

void TSVGPen::SetThicknessIsPercent(bool Value) {
  if (Value == FThicknessIsPercent) return;
  FThicknessIsPercent = Value;
  Update();
}

void TSVGPen::UpdateColorOpacity() {
  SetColor(SetColorOpacity(Color(), FOpacity));
}

constinit const TSVGLengthEventsOf<TSVGPen> TSVGPen::OffsetEvents =
    TSVGLengthEventsOf<TSVGPen>()
        .Change<&TSVGPen::OffsetChange>()
        .UnitFactors<&TSVGPen::OffsetUnitFactors>();

void TSVGPen::OffsetChange(TPersistent*) {
  Update();
}

void TSVGPen::OffsetUnitFactors(TPersistent*, TSVGUnitFactors& Factors) {
  Factors = GetUnitFactors();
}

TSVGLength& TSVGPen::SVGDashOffset() {
  if (!FSVGDashOffset) {
    FSVGDashOffset = std::make_unique<TSVGLength>();
    FSVGDashOffset->Wire(this, OffsetEvents);
  }
  return *FSVGDashOffset;
}

const TSVGLength& TSVGPen::SVGDashOffset() const {
  return FSVGDashOffset ? *FSVGDashOffset : NoOffset();
}

void TSVGPen::InheritDashOffset(const TSVGPen& Parent) {
  if (FSVGDashOffset || Parent.FSVGDashOffset) SVGDashOffset().Assign(&Parent.SVGDashOffset());
}

float TSVGPen::GetDashOffsetValue() const {
  return FSVGDashOffset ? FSVGDashOffset->GetValue() : 0.0f;
}

TSVGUnitFactors TSVGPen::GetUnitFactors() const {
  TSVGUnitFactors Factors = SVGUnitFactors;
  if (FOnUnitFactors) FOnUnitFactors(const_cast<TSVGPen*>(this), Factors);
  return Factors;
}

// --- Dashes

void TSVGPen::SetDash(TQXGPStrokeDash Value) {
  FHasTakenDashes = false;
  TQXGPPen::SetDash(Value);
}

void TSVGPen::SetCustomDash(std::span<const float> Values, std::ptrdiff_t High, float Offset) {
  FHasTakenDashes = false;
  TQXGPPen::SetCustomDash(Values, High, Offset);
}

void TSVGPen::SetCustomDash(std::span<const float> Values, float Offset) {
  FHasTakenDashes = false;
  TQXGPPen::SetCustomDash(Values, Offset);
}

void TSVGPen::TakeDashes(const TSVGPen* From, float Offset) {
  if (!From) {
    if (!FHasTakenDashes) return;
    SetDashOffset(0);
    return SetDash(TQXGPStrokeDash::sdSolid);
  }
  // The dashes with a name have lengths of their own, in widths of the pen.
  if (From->Dash() == TQXGPStrokeDash::sdCustom)
    SetCustomDash(From->CustomDash(), Offset);
  else
    SetDash(From->Dash());
  FHasTakenDashes = true;
}

// --- Dashes as text

String TSVGPen::GetDashArray() const {
  switch (Dash()) {
    case TQXGPStrokeDash::sdSolid: return String(NoneText);
    case TQXGPStrokeDash::sdCustom: return CustomDashArray();
    default: break;
  }
  String Result;
  for (const float Multiple : DashPattern()) {
    if (!Result.empty()) Result += u' ';
    Result += SVGNumberToString(Multiple * Thickness(), TSVGUnit::suNone, DashFormat);
  }
  return Result;
}

String TSVGPen::CustomDashArray() const {
  if (Dash() != TQXGPStrokeDash::sdCustom) return String(NoneText);
  String Result;
  const auto Dashes = CustomDash();
  for (std::size_t I = 0; I < Dashes.size(); ++I) {
    if (I > 0) Result += u' ';
    // A list of an odd length was repeated, and its units and flags were not.
    const bool IsPercent = I < FDashArrayIsPercent.size() && FDashArrayIsPercent[I];
    const TSVGUnit Unit =
        I < FDashArrayPreferredUnits.size() ? FDashArrayPreferredUnits[I] : TSVGUnit::suNone;
    Result += SVGLengthToString(Dashes[I], IsPercent, Unit, CustomDashFormat, 0, 1);
  }
  return Result;
}

void TSVGPen::SetCustomDashArray(StringView Text) {
  std::vector<bool> IsPercent;
  TSVGUnits Units;
  std::vector<float> Dashes;
  if (!Text.empty() && Text != NoneText)
    Dashes = ParseDashes(Text, IsPercent, Units, GetUnitFactors(), 0, 1);
  // What is refused must not leave its units with the dashes that stay.
  if (!std::all_of(Dashes.begin(), Dashes.end(), [](float Dash) { return Dash > 0; })) return;
  FDashArrayIsPercent = IsPercent;
  FDashArrayPreferredUnits = Units;
  if (Dashes.empty())
    SetDash(TQXGPStrokeDash::sdSolid);
  else
    SetCustomDash(Dashes, GetDashOffsetValue());
}

// --- Stored tests

bool TSVGPen::GetIsInherited(TSVGStyleProperty Property) const {
  bool IsInherited = false;
  if (FOnIsInherited) FOnIsInherited(const_cast<TSVGPen*>(this), Property, IsInherited);
  return IsInherited;
}

bool TSVGPen::IsColorStored() const {
  return Color() != DefaultColor() && !GetIsInherited(TSVGStyleProperty::ipStroke);
}
bool TSVGPen::IsOpacityStored() const {
  return FOpacity != FDefaultOpacity && !GetIsInherited(TSVGStyleProperty::ipStrokeOpacity);
}
bool TSVGPen::IsThicknessStored() const {
  return Thickness() != FirstThickness && !GetIsInherited(TSVGStyleProperty::ipStrokeWidth);
}
bool TSVGPen::IsMiterLimitStored() const {
  return MiterLimit() != FirstMiterLimit && !GetIsInherited(TSVGStyleProperty::ipStrokeMiterLimit);
}
bool TSVGPen::IsJoinStored() const {
  return Join() != TQXGPStrokeJoin::sjMiter && !GetIsInherited(TSVGStyleProperty::ipStrokeLineJoin);
}
bool TSVGPen::IsCapStored(bool IsDefault) const {
  return !IsDefault && !GetIsInherited(TSVGStyleProperty::ipStrokeLinecap);
}
bool TSVGPen::IsStartCapStored() const {
  return IsCapStored(StartCap() == TQXGPLineCap::lcFlat);
}
bool TSVGPen::IsEndCapStored() const {
  return IsCapStored(EndCap() == TQXGPLineCap::lcFlat);
}
bool TSVGPen::IsDashCapStored() const {
  return IsCapStored(DashCap() == TQXGPDashCap::dcFlat);
}
bool TSVGPen::IsDashStored() const {
  return Dash() != TQXGPStrokeDash::sdSolid &&
         !GetIsInherited(TSVGStyleProperty::ipStrokeDasharray);
}
bool TSVGPen::IsSVGDashOffsetStored() const {
  return SVGDashOffset().Raw() != 0 && !GetIsInherited(TSVGStyleProperty::ipStrokeDashOffset);
}

}  // namespace qxsvg
