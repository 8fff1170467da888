#include "shapes/ViewBox.h"

#include "foundation/ParseLengthObjects.h"
#include "foundation/ParseTokens.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

namespace {

constexpr TProperty Properties[] = {
    ObjectProperty<TSVGViewBox, TSVGLength, &TSVGViewBox::X>(u"X"),
    ObjectProperty<TSVGViewBox, TSVGLength, &TSVGViewBox::Y>(u"Y"),
    ObjectProperty<TSVGViewBox, TSVGLength, &TSVGViewBox::Width>(u"Width"),
    ObjectProperty<TSVGViewBox, TSVGLength, &TSVGViewBox::Height>(u"Height"),
};

}  // namespace

constinit const TClass TSVGViewBox::Class{
    u"TSVGViewBox", &TPersistent::Class, Properties,
    []() -> std::unique_ptr<TPersistent> { return std::make_unique<TSVGViewBox>(); }};

constinit const TSVGLengthEventsOf<TSVGViewBox> TSVGViewBox::LengthEvents =
    TSVGLengthEventsOf<TSVGViewBox>()
        .Change<&TSVGViewBox::Changed>()
        .UnitFactors<&TSVGViewBox::LengthUnitFactors>()
        .UnitFactor<&TSVGViewBox::LengthUnitFactor>();

TSVGViewBox::TSVGViewBox() {
  for (TSVGLength* Length : {&FX, &FY, &FWidth, &FHeight}) Length->Wire(this, LengthEvents);
}

TSVGViewBox::TSVGViewBox(const TRectF& Rect) : TSVGViewBox() {
  SetRect(Rect);
}

TSVGViewBox::TSVGViewBox(float Left, float Top, float Right, float Bottom)
    : TSVGViewBox(QXRect(Left, Top, Right, Bottom)) {}

TSVGViewBox::~TSVGViewBox() = default;

void TSVGViewBox::Assign(const TPersistent* Source) {
  const auto* const Other = dynamic_cast<const TSVGViewBox*>(Source);
  if (!Other) return TPersistent::Assign(Source);
  const bool WasSpecified = Other->FViewBoxSpecified;
  {
    const TUpdateLock Lock(*this);
    FX.Assign(&Other->FX);
    FY.Assign(&Other->FY);
    FWidth.Assign(&Other->FWidth);
    FHeight.Assign(&Other->FHeight);
    FViewBoxSpecified = WasSpecified;
  }
}

void TSVGViewBox::Clear() {
  const TUpdateLock Lock(*this);
  for (TSVGLength* Length : {&FX, &FY, &FWidth, &FHeight}) Length->Clear();
  FViewBoxSpecified = false;
}

String TSVGViewBox::ToString(const TSVGNumberFormat& Format, float Minimum, float Maximum) const {
  String Result;
  for (const TSVGLength* Length : {&FX, &FY, &FWidth, &FHeight}) {
    if (!Result.empty()) Result += u' ';
    Result += Length->ToString(Format, Minimum, Maximum);
  }
  return Result;
}

TRectF TSVGViewBox::GetRect() const {
  const double X = FX.GetValue(), Y = FY.GetValue();
  return QXRect(FX.GetValue(), FY.GetValue(), static_cast<float>(X + FWidth.GetValue()),
                static_cast<float>(Y + FHeight.GetValue()));
}

void TSVGViewBox::SetRect(const TRectF& Value) {
  const TUpdateLock Lock(*this);
  FX.SetValue(Value.Left);
  FY.SetValue(Value.Top);
  FWidth.SetValue(Value.Width());
  FHeight.SetValue(Value.Height());
}

void TSVGViewBox::SetRight(float Value) {
  FWidth.SetValue(Value - FX.GetValue());
}
void TSVGViewBox::SetBottom(float Value) {
  FHeight.SetValue(Value - FY.GetValue());
}

void TSVGViewBox::EndUpdate() {
  if (--FUpdateCount == 0) Change();
}

void TSVGViewBox::LengthUnitFactors(TPersistent*, TSVGUnitFactors& Factors) {
  if (FOnUnitFactors)
    FOnUnitFactors(this, Factors);
  else
    Factors = SVGUnitFactors;
}

float TSVGViewBox::LengthUnitFactor(TSVGUnit Unit) {
  // Asked for each element that is drawn, while all factors together take the size of a font.
  if (Unit == TSVGUnit::suNone || Unit == TSVGUnit::suPixels || Unit == TSVGUnit::suPercent)
    return 1;
  TSVGUnitFactors Factors;
  LengthUnitFactors(nullptr, Factors);
  return Factors[static_cast<std::size_t>(Unit)];
}

void TSVGViewBox::Change() {
  if (FUpdateCount > 0) return;
  FViewBoxSpecified = true;
  if (OnChange) OnChange(this);
}

void TSVGViewBox::Changed(TPersistent*) {
  Change();
}

void ParseRect(StringView Text, TSVGViewBox& ViewBox) {
  const std::vector<StringView> Tokens = SplitClean(Text, SVGNumberSeparators);
  if (Tokens.empty()) return ViewBox.Clear();
  TSVGLength* const Lengths[] = {&ViewBox.X(), &ViewBox.Y(), &ViewBox.Width(), &ViewBox.Height()};
  const std::size_t Count = std::min(Tokens.size(), std::size(Lengths));
  for (std::size_t I = 0; I < Count; ++I) ParseLength(Tokens[I], *Lengths[I]);
}

}  // namespace qxsvg
