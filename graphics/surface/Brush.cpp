#include "graphics/surface/Brush.h"

namespace qxsvg {
namespace {

std::unique_ptr<TPersistent> NewBrush() {
  return std::make_unique<TQXGPBrush>();
}

}  // namespace

const TClass TQXGPBrush::Class{u"TQXGPBrush", &TQXGPGraphicsObject::Class, {}, &NewBrush};

TQXGPBrush::TQXGPBrush(TQXGPCanvas*, TQXGPBrushKind Kind, TQXGPColor Color)
    : FColor(Color), FDefaultColor(Color), FKind(Kind), FDefaultKind(Kind) {}

TQXGPBrush::~TQXGPBrush() = default;

void TQXGPBrush::Assign(const TPersistent* Source) {
  const auto* Brush = dynamic_cast<const TQXGPBrush*>(Source);
  if (!Brush) return TPersistent::Assign(Source);
  Take(*Brush);
}

void TQXGPBrush::Take(const TQXGPBrush& Brush) {
  if (&Brush == this) return;
  FKind = Brush.FKind;
  FColor = Brush.FColor;
  // What a solid brush keeps of earlier paints is not worth a copy at each draw.
  if (Brush.FGradient) {
    const TQXSilence Silence(GetGradient());
    FGradient->Assign(Brush.FGradient.get());
  } else if (FGradient) {
    const TQXSilence Silence(*FGradient);
    FGradient->Points().Clear();
  }
  if (Brush.FTile) {
    if (!FTile) FTile = std::make_unique<TTile>();
    *FTile = *Brush.FTile;
  } else if (FTile) {
    FTile->Image.reset();
  }
  Update();
}

std::unique_ptr<TQXGPGraphicsObject> TQXGPBrush::Clone() const {
  auto Copy = std::make_unique<TQXGPBrush>(nullptr, FDefaultKind, FDefaultColor);
  Copy->Assign(this);
  return Copy;
}

void TQXGPBrush::SetKind(TQXGPBrushKind Kind) {
  if (FKind == Kind) return;
  FKind = Kind;
  Update();
}

void TQXGPBrush::SetColor(TQXGPColor Color) {
  if (FColor == Color) return;
  FColor = Color;
  Update();
}

TQXGPGradient& TQXGPBrush::GetGradient() {
  if (!FGradient) {
    FGradient = std::make_unique<TQXGPGradient>();
    FGradient->SetOnChange(TNotifyMethod::Bind<&TQXGPBrush::GradientChanged>(this));
  }
  return *FGradient;
}

void TQXGPBrush::SetGradient(const TQXGPGradient& Gradient) {
  GetGradient().Assign(&Gradient);
}

const std::shared_ptr<const TQXGPImage>& TQXGPBrush::BitmapRef() const {
  static const std::shared_ptr<const TQXGPImage> None;
  return FTile ? FTile->Image : None;
}

void TQXGPBrush::SetBitmap(std::shared_ptr<const TQXGPImage> Image, const TMatrix& Matrix) {
  if (!Image && !FTile) return;
  if (!FTile) FTile = std::make_unique<TTile>();
  FTile->Image = std::move(Image);
  FTile->Matrix = Matrix;
  Update();
}

void TQXGPBrush::SetBitmapMatrix(const TMatrix& Matrix) {
  if (!FTile || FTile->Matrix == Matrix) return;
  FTile->Matrix = Matrix;
  Update();
}

void TQXGPBrush::GradientChanged(TPersistent*) {
  Update();
}

}  // namespace qxsvg
