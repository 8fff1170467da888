// Points, rectangles, vectors and matrices, and the helpers over them.
//
// Coordinates are 32-bit floats; sums and products are formed in double precision and rounded once.
// A point is a row vector (X, Y, 1), so that in a product of matrices the left one acts first.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "runtime/Export.h"

namespace qxsvg {

struct TPoint {
  std::int32_t X = 0, Y = 0;
  friend constexpr bool operator==(const TPoint&, const TPoint&) = default;
};

struct TPointF {
  float X = 0, Y = 0;
  friend constexpr bool operator==(const TPointF&, const TPointF&) = default;
  friend constexpr TPointF operator+(TPointF A, TPointF B) { return {A.X + B.X, A.Y + B.Y}; }
  friend constexpr TPointF operator-(TPointF A, TPointF B) { return {A.X - B.X, A.Y - B.Y}; }
  friend constexpr TPointF operator*(TPointF A, float S) { return {A.X * S, A.Y * S}; }
};

struct TSizeF {
  float Width = 0, Height = 0;
  friend constexpr bool operator==(const TSizeF&, const TSizeF&) = default;
};

struct TRect {
  std::int32_t Left = 0, Top = 0, Right = 0, Bottom = 0;
  constexpr std::int64_t Width() const { return std::int64_t{Right} - Left; }
  constexpr std::int64_t Height() const { return std::int64_t{Bottom} - Top; }
  constexpr bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
  friend constexpr bool operator==(const TRect&, const TRect&) = default;
};

struct TRectF {
  float Left = 0, Top = 0, Right = 0, Bottom = 0;

  constexpr float Width() const { return Right - Left; }
  constexpr float Height() const { return Bottom - Top; }
  // No area; true also where a side is not a number.
  constexpr bool IsEmpty() const { return !(Right > Left && Bottom > Top); }
  constexpr TPointF TopLeft() const { return {Left, Top}; }
  constexpr TPointF BottomRight() const { return {Right, Bottom}; }
  // The left and top edges belong to the rectangle, the right and bottom ones do not.
  constexpr bool Contains(TPointF P) const {
    return P.X >= Left && P.X < Right && P.Y >= Top && P.Y < Bottom;
  }
  // Left is no greater than Right and Top no greater than Bottom afterwards.
  constexpr TRectF Normalized() const {
    return {std::min(Left, Right), std::min(Top, Bottom), std::max(Left, Right),
            std::max(Top, Bottom)};
  }
  // The box around both, whether or not they have area.
  static constexpr TRectF Hull(const TRectF& A, const TRectF& B) {
    return {std::min(A.Left, B.Left), std::min(A.Top, B.Top), std::max(A.Right, B.Right),
            std::max(A.Bottom, B.Bottom)};
  }
  // The box around both; a rectangle without area adds nothing.
  static constexpr TRectF Union(const TRectF& A, const TRectF& B) {
    if (A.IsEmpty()) return B.IsEmpty() ? TRectF{} : B;
    return B.IsEmpty() ? A : Hull(A, B);
  }
  // What both cover; the zero rectangle where they share no area.
  static constexpr TRectF Intersect(const TRectF& A, const TRectF& B) {
    const TRectF Common{std::max(A.Left, B.Left), std::max(A.Top, B.Top),
                        std::min(A.Right, B.Right), std::min(A.Bottom, B.Bottom)};
    return Common.IsEmpty() ? TRectF{} : Common;
  }
  friend constexpr bool operator==(const TRectF&, const TRectF&) = default;
};

struct TVector {
  float X = 0, Y = 0, W = 1;
  friend constexpr bool operator==(const TVector&, const TVector&) = default;
};

// Row by row; the translation is in m31 and m32. A new matrix is the identity.
struct TMatrix {
  float m11 = 1, m12 = 0, m13 = 0;
  float m21 = 0, m22 = 1, m23 = 0;
  float m31 = 0, m32 = 0, m33 = 1;
  friend constexpr bool operator==(const TMatrix&, const TMatrix&) = default;
};

inline constexpr TMatrix QXIdentityMatrix{};

using TQXPoints = std::vector<TPointF>;
using TQXPolygons = std::vector<TQXPoints>;

constexpr TPointF QXPoint(float X, float Y) {
  return {X, Y};
}
constexpr TPointF QXPoint(const TVector& V) {
  return {V.X, V.Y};
}
constexpr TPointF QXPoint(TPoint P) {
  return {static_cast<float>(P.X), static_cast<float>(P.Y)};
}

constexpr TRectF QXRect(float Left, float Top, float Right, float Bottom) {
  return {Left, Top, Right, Bottom};
}
// P1 becomes the left top, P2 the right bottom corner; nothing is swapped.
constexpr TRectF QXRect(TPointF P1, TPointF P2) {
  return {P1.X, P1.Y, P2.X, P2.Y};
}
constexpr TRectF QXRect(const TRect& R) {
  return {static_cast<float>(R.Left), static_cast<float>(R.Top), static_cast<float>(R.Right),
          static_cast<float>(R.Bottom)};
}
constexpr TRectF RectToQXRect(const TRect& R) {
  return QXRect(R);
}
constexpr float QXRectWidth(const TRectF& R) {
  return R.Width();
}
constexpr float QXRectHeight(const TRectF& R) {
  return R.Height();
}
constexpr void OffsetQXRect(TRectF& R, float DX, float DY) {
  R = {R.Left + DX, R.Top + DY, R.Right + DX, R.Bottom + DY};
}
// Moves every side outwards by DX and DY; negative values move them inwards.
constexpr void QXInflateRect(TRectF& R, float DX, float DY) {
  R = {R.Left - DX, R.Top - DY, R.Right + DX, R.Bottom + DY};
}
constexpr TPointF QXRectCenter(const TRectF& R) {
  return {R.Left + R.Width() / 2, R.Top + R.Height() / 2};
}
// Centres R in Bounds without changing its size.
QXSVG_API void RectCenter(TRectF& R, const TRectF& Bounds);
// Scales R into Bounds, its proportions kept, and centres it there. Without AllowEnlarge a
// rectangle that is smaller than Bounds keeps its size. A rectangle without area is only centred.
QXSVG_API void FitRect(TRectF& R, const TRectF& Bounds, bool AllowEnlarge);

// The nearest whole number, halves away from zero; what no 32-bit integer holds is clamped, and
// what is no number gives 0.
QXSVG_API std::int32_t CanvasRound(float Value);
// The whole part, clamped likewise.
QXSVG_API std::int32_t CanvasTrunc(float Value);
inline TPoint CanvasPoint(TPointF P) {
  return {CanvasRound(P.X), CanvasRound(P.Y)};
}
inline TRect CanvasRect(const TRectF& R) {
  return {CanvasRound(R.Left), CanvasRound(R.Top), CanvasRound(R.Right), CanvasRound(R.Bottom)};
}

// Within 1e-5 on both axes.
QXSVG_API bool PointsEqual(TPointF P, TPointF Q);
inline bool IsFinite(TPointF P) {
  return std::isfinite(P.X) && std::isfinite(P.Y);
}
inline bool IsFinite(const TRectF& R) {
  return IsFinite(R.TopLeft()) && IsFinite(R.BottomRight());
}
QXSVG_API bool IsFinite(const TMatrix& M);

constexpr TVector QXVector(float X, float Y, float W = 1) {
  return {X, Y, W};
}
constexpr TVector QXVector(TPointF P, float W = 1) {
  return {P.X, P.Y, W};
}
constexpr TVector QXVectorAdd(const TVector& A, const TVector& B) {
  return {A.X + B.X, A.Y + B.Y, A.W};
}
// The square of the length of (X, Y).
constexpr float QXVectorNorm(const TVector& V) {
  return static_cast<float>(double{V.X} * V.X + double{V.Y} * V.Y);
}
inline float QXVectorLength(const TVector& V) {
  return static_cast<float>(std::sqrt(double{V.X} * V.X + double{V.Y} * V.Y));
}

// A acts first, B after it.
QXSVG_API TMatrix QXMatrixMultiply(const TMatrix& A, const TMatrix& B);
// The length that Scalar has under M: Scalar times the root of the absolute determinant, which is
// the scale itself where M scales evenly.
QXSVG_API float QXMatrixMultiply(float Scalar, const TMatrix& M);
constexpr TVector QXMatrixTransform(const TMatrix& M, const TVector& V) {
  const double X = V.X, Y = V.Y, W = V.W;
  return {static_cast<float>(X * M.m11 + Y * M.m21 + W * M.m31),
          static_cast<float>(X * M.m12 + Y * M.m22 + W * M.m32),
          static_cast<float>(X * M.m13 + Y * M.m23 + W * M.m33)};
}
constexpr TPointF QXMatrixTransform(const TMatrix& M, TPointF P) {
  const double X = P.X, Y = P.Y;
  return {static_cast<float>(X * M.m11 + Y * M.m21 + M.m31),
          static_cast<float>(X * M.m12 + Y * M.m22 + M.m32)};
}
// The box around the transformed corners of R.
QXSVG_API TRectF QXMatrixTransform(const TMatrix& M, const TRectF& R);
// No entry differs by more than Epsilon.
QXSVG_API bool QXMatrixEquals(const TMatrix& A, const TMatrix& B, float Epsilon);
// What the system allows where it asks whether a matrix does anything.
inline constexpr float MatrixTolerance = 1e-5f;
constexpr bool IsIdentityMatrix(const TMatrix& M) {
  return M == QXIdentityMatrix;
}
constexpr double QXMatrixDeterminant(const TMatrix& M) {
  return double{M.m11} * M.m22 - double{M.m12} * M.m21;
}
// False, with Inverse untouched, where M flattens the plane or is not finite. The third column is
// taken to be (0, 0, 1).
QXSVG_API bool QXMatrixInvert(const TMatrix& M, TMatrix& Inverse);

constexpr TMatrix CreateTranslateQXMatrix(float DX, float DY) {
  return {1, 0, 0, 0, 1, 0, DX, DY, 1};
}
constexpr TMatrix CreateScaleQXMatrix(float SX, float SY) {
  return {SX, 0, 0, 0, SY, 0, 0, 0, 1};
}
// Angles are radians and turn the X axis towards the Y axis.
QXSVG_API TMatrix CreateRotationQXMatrix(float Angle);
QXSVG_API TMatrix CreateRotationQXMatrix(TPointF Center, float Angle);

// The point at that fraction of the way from P1 to P2.
constexpr TPointF QXCenterPoint(TPointF P1, TPointF P2, float Ratio = 0.5f) {
  return {static_cast<float>(P1.X + (double{P2.X} - P1.X) * Ratio),
          static_cast<float>(P1.Y + (double{P2.Y} - P1.Y) * Ratio)};
}

}  // namespace qxsvg
