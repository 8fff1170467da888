// What an outline is drawn with.
#pragma once

#include <span>
#include <vector>

#include "graphics/surface/Brush.h"

namespace qxsvg {

class QXSVG_API TQXGPPen : public TQXGPGraphicsObject {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // Kind and Color become the defaults too. Thickness 1, solid, flat caps, miter join, limit 10.
  explicit TQXGPPen(TQXGPCanvas* Canvas = nullptr, TQXGPBrushKind Kind = TQXGPBrushKind::bkSolid,
                    TQXGPColor Color = 0xff000000);
  ~TQXGPPen() override;
  // Takes everything but the defaults.
  void Assign(const TPersistent* Source) override;
  // The same without asking what Pen is.
  void Take(const TQXGPPen& Pen);
  std::unique_ptr<TQXGPGraphicsObject> Clone() const override;

  TQXGPBrushKind Kind() const { return FKind; }
  virtual void SetKind(TQXGPBrushKind Kind);
  TQXGPColor Color() const { return FColor; }
  void SetColor(TQXGPColor Color);
  TQXGPBrushKind DefaultKind() const { return FDefaultKind; }
  TQXGPColor DefaultColor() const { return FDefaultColor; }

  // The width, in the units of the canvas it draws on. One that is not above 0 draws nothing; what
  // is no number is not taken.
  float Thickness() const { return FThickness; }
  void SetThickness(float Thickness);

  TQXGPStrokeDash Dash() const { return FDash; }
  // Leaves the custom values as they are.
  void SetDash(TQXGPStrokeDash Dash);
  // Lengths of marks and gaps in turn, and where the pattern starts, in multiples of the thickness.
  // A length that is negative or not finite, and a sum of 0, make a solid line.
  std::span<const float> CustomDash() const { return FCustomDash; }
  float DashOffset() const { return FDashOffset; }
  void SetDashOffset(float Offset);
  // Values[0] to Values[High]; the dash becomes custom.
  void SetCustomDash(std::span<const float> Values, std::ptrdiff_t High, float Offset);
  void SetCustomDash(std::span<const float> Values, float Offset);
  // The marks and gaps that the present dash stands for, in multiples of the thickness; empty for a
  // solid line.
  std::span<const float> DashPattern() const;

  TQXGPDashCap DashCap() const { return FDashCap; }
  void SetDashCap(TQXGPDashCap Cap);
  TQXGPLineCap StartCap() const { return FStartCap; }
  void SetStartCap(TQXGPLineCap Cap);
  TQXGPLineCap EndCap() const { return FEndCap; }
  void SetEndCap(TQXGPLineCap Cap);
  TQXGPStrokeJoin Join() const { return FJoin; }
  void SetJoin(TQXGPStrokeJoin Join);
  // The longest miter in multiples of the thickness; a longer one becomes a bevel.
  float MiterLimit() const { return FMiterLimit; }
  void SetMiterLimit(float Limit);

  // The brush that a gradient or bitmap stroke is painted with, made at the first call; a change of
  // it is a change of the pen.
  TQXGPBrush& GetBrush();
  const TQXGPBrush* InnerBrush() const { return FBrush.get(); }

  // Same outline: thickness, dash, caps, join and limit are equal, whatever the paint.
  bool SameStroke(const TQXGPPen& Other) const;

 private:
  template <class T>
  void Set(T& Field, T Value);
  void BrushChanged(TPersistent* Sender);

  std::vector<float> FCustomDash;
  std::unique_ptr<TQXGPBrush> FBrush;
  TQXGPColor FColor, FDefaultColor;
  float FThickness = 1, FDashOffset = 0, FMiterLimit = 10;
  TQXGPBrushKind FKind, FDefaultKind;
  TQXGPStrokeDash FDash = TQXGPStrokeDash::sdSolid;
  TQXGPDashCap FDashCap = TQXGPDashCap::dcFlat;
  TQXGPLineCap FStartCap = TQXGPLineCap::lcFlat, FEndCap = TQXGPLineCap::lcFlat;
  TQXGPStrokeJoin FJoin = TQXGPStrokeJoin::sjMiter;
};

}  // namespace qxsvg
