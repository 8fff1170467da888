// Position, size and spacings: the lengths of an element, what they ask it, and its bounds.
#include <algorithm>

#include "document/Document.h"
#include "document/ElementLock.h"
#include "foundation/ParseTransform.h"
#include "foundation/Writers.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/Repeats.h"
#include "shapes/CustomViewBox.h"

namespace qxsvg {

using TWiring = TSVGLengthEventsOf<TSVGGraphicElement>;

constexpr TWiring TSVGGraphicElement::PlainLength =
    TWiring()
        .Change<&TSVGGraphicElement::HeldObjectChanged>()
        .UnitFactors<&TSVGGraphicElement::HeldUnitFactors>()
        .UnitFactor<&TSVGGraphicElement::LengthUnitFactor>();
constexpr TWiring TSVGGraphicElement::WidthLength =
    PlainLength.Range<&TSVGGraphicElement::LengthRangeViewBoxWidth>();
constexpr TWiring TSVGGraphicElement::HeightLength =
    PlainLength.Range<&TSVGGraphicElement::LengthRangeViewBoxHeight>();
constexpr TWiring TSVGGraphicElement::BaselineShiftLength =
    PlainLength.GetInherited<&TSVGGraphicElement::LengthGetInherited>()
        .SetInherited<&TSVGGraphicElement::LengthSetInherited>()
        .GetParent<&TSVGGraphicElement::LengthParent>();
constexpr TWiring TSVGGraphicElement::SpacingLength =
    BaselineShiftLength.Range<&TSVGGraphicElement::LengthRangeViewBoxWidth>();

// --- Units

float TSVGGraphicElement::EffectiveFontSize() {
  TSVGRecording::Spoil();
  if (FFont) return GetFont().Size();
  const bool MayAsk = !FElementState.Has(TSVGElementStateFlag::esReading);
  if (MayAsk && IsMarked(TSVGStyleProperty::ipFontSize))
    if (TSVGGraphicElement* Ancestor = GetGraphicParent()) return Ancestor->EffectiveFontSize();
  return TSVGFont::DefaultSize;
}

TSVGUnitFactors TSVGGraphicElement::GetUnitFactors() {
  TSVGUnitFactors Result = TSVGElement::GetUnitFactors();
  const double Size = EffectiveFontSize();
  float& Em = Result[Ordinal(TSVGUnit::suFontSize)];
  float& Ex = Result[Ordinal(TSVGUnit::suFontXHeight)];
  Em = static_cast<float>(Em * Size);
  Ex = static_cast<float>(Ex * Size * 0.5);
  return Result;
}

void TSVGGraphicElement::HeldUnitFactors(TPersistent*, TSVGUnitFactors& Factors) {
  Factors = GetUnitFactors();
}

TSVGUnitFactorsEvent TSVGGraphicElement::OwnUnitFactors() {
  return TSVGUnitFactorsEvent::Bind<&TSVGGraphicElement::HeldUnitFactors>(this);
}

float TSVGGraphicElement::LengthUnitFactor(TSVGUnit Unit) {
  switch (Unit) {
    case TSVGUnit::suNone:
    case TSVGUnit::suPixels:
    case TSVGUnit::suPercent: return 1;
    default: return GetUnitFactors()[Ordinal(Unit)];
  }
}

std::unique_ptr<TSVGLength> TSVGGraphicElement::CreateLength(const TWiring& Events) {
  auto Result = std::make_unique<TSVGLength>();
  Result->Wire(this, Events);
  return Result;
}

std::unique_ptr<TSVGStylePropertyLength> TSVGGraphicElement::CreateStylePropertyLength(
    const TSVGStylePropertyLengthClass& LengthClass, TSVGStyleProperty Property,
    const TWiring& Events) {
  auto Result = LengthClass.Create(Property);
  Result->Wire(this, Events);
  return Result;
}

// --- Ranges and inheritance

void TSVGGraphicElement::LengthRangeViewBoxWidth(TSVGLength*, float&, float& Max, bool& DoRange) {
  const TSVGCustomViewBox* Nearest = GetNearestViewBox();
  DoRange = Nearest && Nearest->ViewBox().ViewBoxSpecified();
  if (DoRange) Max = Nearest->ViewBox().Width().GetValue();
}

void TSVGGraphicElement::LengthRangeViewBoxHeight(TSVGLength*, float&, float& Max, bool& DoRange) {
  const TSVGCustomViewBox* Nearest = GetNearestViewBox();
  DoRange = Nearest && Nearest->ViewBox().ViewBoxSpecified();
  if (DoRange) Max = Nearest->ViewBox().Height().GetValue();
}

void TSVGGraphicElement::LengthGetInherited(TSVGStylePropertyLength* Sender, bool& IsInherited) {
  IsInherited = IsMarked(Sender->StyleProperty());
}

void TSVGGraphicElement::LengthSetInherited(TSVGStylePropertyLength* Sender, bool IsInherited) {
  FInherits.Set(Sender->StyleProperty(), IsInherited);
}

void TSVGGraphicElement::LengthParent(TSVGStylePropertyLength* Sender,
                                      TSVGStylePropertyLength*& Parent) {
  Parent = nullptr;
  TSVGGraphicElement* Ancestor = GetGraphicParent();
  if (!Ancestor) return;
  switch (Sender->StyleProperty()) {
    case TSVGStyleProperty::ipBaselineShift: Parent = &Ancestor->BaselineShift(); break;
    case TSVGStyleProperty::ipKerning: Parent = &Ancestor->Kerning(); break;
    case TSVGStyleProperty::ipLetterSpacing: Parent = &Ancestor->LetterSpacing(); break;
    case TSVGStyleProperty::ipWordSpacing: Parent = &Ancestor->WordSpacing(); break;
    default: break;
  }
}

TSVGGraphicElement::Spacings& TSVGGraphicElement::WriteSpacings() {
  if (!FSpacings) {
    FSpacings = std::make_unique<Spacings>();
    FSpacings->Letter.Wire(this, SpacingLength);
    FSpacings->Kerning.Wire(this, SpacingLength);
    FSpacings->Word.Wire(this, SpacingLength);
    FSpacings->BaselineShift.Wire(this, BaselineShiftLength);
  }
  return *FSpacings;
}

TSVGBaselineShiftLength& TSVGGraphicElement::BaselineShift() {
  return WriteSpacings().BaselineShift;
}
void TSVGGraphicElement::SetBaselineShift(const TSVGBaselineShiftLength* Value) {
  BaselineShift().Assign(Value);
}
TSVGStylePropertyAutoLength& TSVGGraphicElement::Kerning() {
  return WriteSpacings().Kerning;
}
void TSVGGraphicElement::SetKerning(const TSVGStylePropertyAutoLength* Value) {
  Kerning().Assign(Value);
}
TSVGStylePropertyAutoLength& TSVGGraphicElement::LetterSpacing() {
  return WriteSpacings().Letter;
}
void TSVGGraphicElement::SetLetterSpacing(const TSVGStylePropertyAutoLength* Value) {
  LetterSpacing().Assign(Value);
}
TSVGStylePropertyAutoLength& TSVGGraphicElement::WordSpacing() {
  return WriteSpacings().Word;
}
void TSVGGraphicElement::SetWordSpacing(const TSVGStylePropertyAutoLength* Value) {
  WordSpacing().Assign(Value);
}

// --- Position and size

TSVGGraphicElement::Box& TSVGGraphicElement::WriteBox() {
  if (!FBox) {
    FBox = std::make_unique<Box>();
    FBox->X.Wire(this, WidthLength);
    FBox->Width.Wire(this, WidthLength);
    FBox->Y.Wire(this, HeightLength);
    FBox->Height.Wire(this, HeightLength);
  }
  return *FBox;
}

TSVGLength& TSVGGraphicElement::Xu() {
  return WriteBox().X;
}
TSVGLength& TSVGGraphicElement::Yu() {
  return WriteBox().Y;
}
TSVGLength& TSVGGraphicElement::WidthU() {
  return WriteBox().Width;
}
TSVGLength& TSVGGraphicElement::HeightU() {
  return WriteBox().Height;
}

float TSVGGraphicElement::GetX() {
  return FBox ? FBox->X.GetValue() : 0;
}
float TSVGGraphicElement::GetXRaw() {
  return FBox ? FBox->X.Raw() : 0;
}
float TSVGGraphicElement::GetY() {
  return FBox ? FBox->Y.GetValue() : 0;
}
float TSVGGraphicElement::GetYRaw() {
  return FBox ? FBox->Y.Raw() : 0;
}
float TSVGGraphicElement::GetHeight() {
  return FBox ? FBox->Height.GetValue() : 0;
}
float TSVGGraphicElement::GetHeightRaw() {
  return FBox ? FBox->Height.Raw() : 0;
}
float TSVGGraphicElement::GetWidth() {
  return FBox ? FBox->Width.GetValue() : 0;
}
float TSVGGraphicElement::GetWidthRaw() {
  return FBox ? FBox->Width.Raw() : 0;
}
void TSVGGraphicElement::SetX(float Value) {
  Xu().SetPixels(Value);
}
void TSVGGraphicElement::SetY(float Value) {
  Yu().SetPixels(Value);
}
void TSVGGraphicElement::SetHeight(float Value) {
  HeightU().SetPixels(std::max(Value, 0.0f));
}
void TSVGGraphicElement::SetWidth(float Value) {
  WidthU().SetPixels(std::max(Value, 0.0f));
}

// --- Bounds and transformation

TRectF TSVGGraphicElement::GetBoundsRect() {
  const float X = GetX(), Y = GetY();
  return QXRect(X, Y, X + GetWidth(), Y + GetHeight());
}

TRectF TSVGGraphicElement::GetBoundsRect(const TMatrix& Matrix) {
  const TRectF Bounds = GetBoundsRect();
  const TMatrix M = QXMatrixMultiply(FMatrix, Matrix);
  return QXMatrixEquals(M, QXIdentityMatrix, MatrixTolerance) ? Bounds
                                                              : QXMatrixTransform(M, Bounds);
}

void TSVGGraphicElement::SetBoundsRect(const TRectF& Value) {
  const TElementLock Lock(*this);
  SetX(Value.Left);
  SetY(Value.Top);
  SetWidth(Value.Width());
  SetHeight(Value.Height());
}

TRectF TSVGGraphicElement::GetClipRect() {
  if (IsMarked(TSVGStyleProperty::ipClip))
    if (TSVGGraphicElement* Ancestor = GetGraphicParent()) return Ancestor->GetClipRect();
  const TRectF Bounds = GetBoundsRect();
  const TRectF& Clip = ClipRect();
  TRectF Result = QXRect(Bounds.Left - Clip.Left, Bounds.Top - Clip.Top, Bounds.Right - Clip.Right,
                         Bounds.Bottom - Clip.Bottom);
  QXInflateRect(Result, 1, 1);
  return Result;
}

void TSVGGraphicElement::SetMatrix(const TMatrix& Value) {
  if (Value == FMatrix) return;
  FMatrix = Value;
  Change(this);
}

String TSVGGraphicElement::TransformMatrix() const {
  return SVGTransformationToString(FMatrix);
}

void TSVGGraphicElement::SetTransformMatrix(StringView Value) {
  FMatrix = ParseTransformation(Value);
  Change(this);
}

TMatrix TSVGGraphicElement::GetTransformationMatrix(const TMatrix& Matrix) {
  TSVGGraphicElement* Ancestor = GetGraphicParent();
  const TMatrix Above = Ancestor ? Ancestor->GetTransformationMatrix(Matrix) : Matrix;
  return ShouldDraw() ? QXMatrixMultiply(FMatrix, Above) : Above;
}

}  // namespace qxsvg
