// Draws the two sides of one stroked piece after another: begin, joins, curves, end.
#pragma once

#include <array>
#include <cstdint>

#include "graphics/surface/Stroker.h"

namespace qxsvg {

class TStrokeOutline {
 public:
  // Shown is the box in the pen's space that the surface shows.
  TStrokeOutline(const TQXStrokeStyle& Style, const TMatrix& ToDevice, float Tolerance,
                 const TRectF& Shown, TQXLineBuffer& Left, TQXLineBuffer& Right);

  float HalfWidth() const { return FHalf; }
  float Tolerance() const { return FTolerance; }
  // So wide that no surface shows more than a part of an arc. Arcs are then followed only where
  // they are shown, and the sides of curves are made of them.
  bool IsWide() const { return FIsWide; }
  bool IsOpen() const { return FIsOpen; }
  TPointF Point() const { return FP; }
  TPointF Direction() const { return FDirection; }

  // A piece that begins at P in that direction.
  void Begin(TPointF P, TPointF Direction, TQXGPLineCap Cap);
  // A ring, which EndRing closes; End with a flat cap makes an open piece of it.
  void BeginRing(TPointF P, TPointF Direction);
  // Turns into the direction of the next segment, of that length, with the pen's join or, within a
  // curve, with a round one. A length of 0 says that the segment is curved.
  void Turn(TPointF Direction, float Length) { Turn(Direction, Length, FStyle.Join); }
  void TurnWithin(TPointF Direction, float Length) {
    Turn(Direction, Length, TQXGPStrokeJoin::sjRound);
  }
  // Goes on to P along the present direction; nothing is drawn until the next turn or the end.
  void Advance(TPointF P, float Length) {
    FP = P;
    FLength = Length;
  }
  void End(TQXGPLineCap Cap);
  void EndRing();
  // A cap alone, at the start of what goes in Direction.
  void StartCapAlone(TPointF P, TPointF Direction, TQXGPLineCap Cap);
  // Goes along the points, Count > 1, whose unit tangents are given; the first is the present
  // point, and the turn into its tangent was made.
  void Curve(const TPointF* Points, const TPointF* Tangents, std::uint32_t Count);

 private:
  void Turn(TPointF Direction, float Length, TQXGPStrokeJoin Join);
  void OuterJoin(TQXLineBuffer& Side, TPointF From, TPointF To, float Dot, float Turn,
                 TQXGPStrokeJoin Join);
  void Arc(TQXLineBuffer& Side, TPointF From, TPointF To, float Turn);
  void WideArc(TQXLineBuffer& Side, TPointF From, TPointF To, float Turn, int Levels);
  void Cap(TPointF From, TPointF Direction, TQXGPLineCap Cap);
  bool CurveSides(const TPointF* Points, const TPointF* Tangents, std::uint32_t Count,
                  TPointF* Left, TPointF* Right) const;
  void Put(TQXLineBuffer& Side, std::uint32_t Count, const TPointF* Points);
  TPointF Normal(TPointF Direction) const { return {-Direction.Y * FHalf, Direction.X * FHalf}; }
  TPointF Map(TPointF P) const { return FHasMatrix ? QXMatrixTransform(FToDevice, P) : P; }

  const TQXStrokeStyle& FStyle;
  const TMatrix FToDevice;
  const TRectF FShown;
  const float FHalf, FTolerance;
  const bool FHasMatrix, FIsWide;
  // Of the rotation from one point of an arc to the next.
  float FStepCos = 0, FStepSin = 1, FBulge = 1;
  float FMiterLimit2;
  TQXLineBuffer &FLeft, &FRight;
  TPointF FP, FDirection, FRingP, FRingDirection;
  float FLength = 0;
  // So much of the present segment lies on the one before, with the sides of both.
  float FRetraced = 0;
  bool FIsOpen = false, FIsRing = false;
};

}  // namespace qxsvg
