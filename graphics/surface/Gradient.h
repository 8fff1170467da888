// A gradient in fractions of the box being painted.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "foundation/Color.h"
#include "foundation/DrawingEnums.h"
#include "foundation/Geometry.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

class TQXGPGradient;
class TQXGPGradientPoints;

// A point as an object with a change notice. A coordinate that is not finite stays as it was.
class QXSVG_API TQXPosition : public TPersistent {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  explicit TQXPosition(TPointF P = {}) : FPoint(P) {}
  void Assign(const TPersistent* Source) override;

  TPointF GetPoint() const { return FPoint; }
  void SetPoint(TPointF P);
  float X() const { return FPoint.X; }
  float Y() const { return FPoint.Y; }
  void SetX(float X) { SetPoint({X, FPoint.Y}); }
  void SetY(float Y) { SetPoint({FPoint.X, Y}); }

  void SetOnChange(TNotifyMethod Notice) { FOnChange = Notice; }

 private:
  TPointF FPoint;
  TNotifyMethod FOnChange;
};

// One stop. It belongs to its list and is void after the list's next Add, Clear or Assign.
class QXSVG_API TQXGPGradientPoint {
 public:
  // Offsets are taken as they come: neither sorted nor clamped. One that is not finite is not
  // taken.
  float Offset() const { return FOffset; }
  TQXGPColor Color() const { return FColor; }
  void SetOffset(float Offset);
  void SetColor(TQXGPColor Color);

 private:
  friend class TQXGPGradientPoints;
  TQXGPGradientPoints* FOwner = nullptr;
  float FOffset = 0;
  TQXGPColor FColor = 0xff000000;
};

class QXSVG_API TQXGPGradientPoints {
 public:
  explicit TQXGPGradientPoints(TQXGPGradient& Owner) : FOwner(Owner) {}
  TQXGPGradientPoints(const TQXGPGradientPoints&) = delete;
  TQXGPGradientPoints& operator=(const TQXGPGradientPoints&) = delete;

  void Assign(const TQXGPGradientPoints& Source);
  void Clear();
  std::size_t Count() const { return FPoints.size(); }
  // Raises EListError past Limits::GradientPoints.
  TQXGPGradientPoint& Add();
  TQXGPGradientPoint& Add(float Offset, TQXGPColor Color);
  // Raises EListError for an index that is none.
  TQXGPGradientPoint& GetPoint(std::size_t Index);
  const TQXGPGradientPoint& GetPoint(std::size_t Index) const;
  // All of them, for surfaces.
  std::span<const TQXGPGradientPoint> Items() const { return FPoints; }

  // Between the two no change notice goes out; EndUpdate gives one where something changed.
  void BeginUpdate() { ++FUpdates; }
  void EndUpdate();

 private:
  friend class TQXGPGradientPoint;
  void Changed();

  TQXGPGradient& FOwner;
  std::vector<TQXGPGradientPoint> FPoints;
  std::uint32_t FUpdates = 0;
  bool FChanged = false;
};

// Linear: from StartPosition to StopPosition, fractions of the painted box; the colours go along
// the line between the two as it lies in the painted space. Radial: a path gradient, whose offsets
// count from the rim (0) inwards to the focus (1); CenterPosition is a fraction of the box,
// RadiusPosition the half-axes as fractions of half the box, FocusOffsetPosition the focus less the
// centre in fractions of the box. Outside the stops the nearest colour goes on. Without a stop
// nothing is painted, one stop paints its colour.
class QXSVG_API TQXGPGradient : public TPersistent {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // Linear from (0, 0) to (1, 0), without stops; centre (0.5, 0.5), radius (1, 1).
  TQXGPGradient();
  // Takes everything but the change notice.
  void Assign(const TPersistent* Source) override;

  TQXGPGradientStyle Style() const { return FStyle; }
  void SetStyle(TQXGPGradientStyle Style);
  TQXGPGradientPoints& Points() { return FPoints; }
  const TQXGPGradientPoints& Points() const { return FPoints; }
  TQXPosition& StartPosition() { return FStart; }
  const TQXPosition& StartPosition() const { return FStart; }
  TQXPosition& StopPosition() { return FStop; }
  const TQXPosition& StopPosition() const { return FStop; }
  TQXPosition& CenterPosition() { return FCenter; }
  const TQXPosition& CenterPosition() const { return FCenter; }
  TQXPosition& FocusOffsetPosition() { return FFocusOffset; }
  const TQXPosition& FocusOffsetPosition() const { return FFocusOffset; }
  TQXPosition& RadiusPosition() { return FRadius; }
  const TQXPosition& RadiusPosition() const { return FRadius; }

  const TNotifyMethod& OnChange() const { return FOnChange; }
  void SetOnChange(TNotifyMethod Notice) { FOnChange = Notice; }

 private:
  friend class TQXGPGradientPoints;
  void Changed();
  void PositionChanged(TPersistent* Sender);

  TNotifyMethod FOnChange;
  TQXGPGradientPoints FPoints;
  TQXPosition FStart, FStop, FCenter, FFocusOffset, FRadius;
  TQXGPGradientStyle FStyle = TQXGPGradientStyle::gsLinear;
};

}  // namespace qxsvg
