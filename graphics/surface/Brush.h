// What a fill is painted with.
#pragma once

#include "foundation/Color.h"
#include "foundation/DrawingEnums.h"
#include "graphics/surface/Bitmap.h"
#include "graphics/surface/Gradient.h"
#include "graphics/surface/GraphicsObject.h"

namespace qxsvg {

class QXSVG_API TQXGPBrush : public TQXGPGraphicsObject {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // Kind and Color become the defaults too.
  explicit TQXGPBrush(TQXGPCanvas* Canvas = nullptr, TQXGPBrushKind Kind = TQXGPBrushKind::bkSolid,
                      TQXGPColor Color = 0xff000000);
  ~TQXGPBrush() override;
  // Takes kind, colour, gradient (a copy) and image (the reference); the defaults stay.
  void Assign(const TPersistent* Source) override;
  // The same without asking what Brush is.
  void Take(const TQXGPBrush& Brush);
  std::unique_ptr<TQXGPGraphicsObject> Clone() const override;

  TQXGPBrushKind Kind() const { return FKind; }
  virtual void SetKind(TQXGPBrushKind Kind);
  TQXGPColor Color() const { return FColor; }
  void SetColor(TQXGPColor Color);
  TQXGPBrushKind DefaultKind() const { return FDefaultKind; }
  TQXGPColor DefaultColor() const { return FDefaultColor; }

  // Null where none was set or asked for yet.
  const TQXGPGradient* Gradient() const { return FGradient.get(); }
  // The brush's own gradient, made at the first call; a change of it is a change of the brush.
  TQXGPGradient& GetGradient();
  // Takes a copy. The kind stays as it is.
  void SetGradient(const TQXGPGradient& Gradient);

  const TQXGPImage* Bitmap() const { return FTile ? FTile->Image.get() : nullptr; }
  const std::shared_ptr<const TQXGPImage>& BitmapRef() const;
  // From the image's pixels to the coordinates that are painted in: where its left top corner lies
  // and how it is scaled and turned. The image repeats from there in both directions.
  const TMatrix& BitmapMatrix() const { return FTile ? FTile->Matrix : QXIdentityMatrix; }
  // Keeps the reference; null takes the image away. The kind stays as it is.
  void SetBitmap(std::shared_ptr<const TQXGPImage> Image, const TMatrix& Matrix = QXIdentityMatrix);
  void SetBitmapMatrix(const TMatrix& Matrix);

 private:
  struct TTile {
    std::shared_ptr<const TQXGPImage> Image;
    TMatrix Matrix;
  };
  void GradientChanged(TPersistent* Sender);

  std::unique_ptr<TQXGPGradient> FGradient;
  std::unique_ptr<TTile> FTile;
  TQXGPColor FColor, FDefaultColor;
  TQXGPBrushKind FKind, FDefaultKind;
};

}  // namespace qxsvg
