#include "foundation/Geometry.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

#include "foundation/Color.h"
#include "runtime/String.h"

namespace qxsvg {
namespace {

void ExpectPoint(TPointF P, float X, float Y) {
  EXPECT_NEAR(P.X, X, 1e-4);
  EXPECT_NEAR(P.Y, Y, 1e-4);
}

TEST(Matrix, TheLeftFactorActsFirst) {
  const TMatrix Move = CreateTranslateQXMatrix(10, 0), Double = CreateScaleQXMatrix(2, 3);
  ExpectPoint(QXMatrixTransform(QXMatrixMultiply(Move, Double), TPointF{1, 1}), 22, 3);
  ExpectPoint(QXMatrixTransform(QXMatrixMultiply(Double, Move), TPointF{1, 1}), 12, 3);
  // A vector of weight 0 is a direction: it is not moved.
  ExpectPoint(QXPoint(QXMatrixTransform(Move, QXVector(1, 1, 0))), 1, 1);
}

TEST(Matrix, LengthsUnderAMatrix) {
  EXPECT_FLOAT_EQ(QXMatrixMultiply(2.0f, CreateScaleQXMatrix(3, 3)), 6);
  EXPECT_FLOAT_EQ(QXMatrixMultiply(2.0f, CreateScaleQXMatrix(-3, 3)), 6);
  EXPECT_FLOAT_EQ(QXMatrixMultiply(2.0f, CreateRotationQXMatrix(1)), 2);
  EXPECT_FLOAT_EQ(QXMatrixMultiply(2.0f, CreateTranslateQXMatrix(9, 9)), 2);
  EXPECT_FLOAT_EQ(QXMatrixMultiply(1.0f, CreateScaleQXMatrix(4, 9)), 6);
}

TEST(Matrix, InverseUndoes) {
  std::mt19937 Random(7);
  std::uniform_real_distribution<float> Number(-5, 5);
  for (int I = 0; I < 200; ++I) {
    const TMatrix M{Number(Random), Number(Random), 0, Number(Random), Number(Random), 0,
                    Number(Random), Number(Random), 1};
    TMatrix Back;
    ASSERT_TRUE(QXMatrixInvert(M, Back));
    if (std::abs(QXMatrixDeterminant(M)) < 0.1) continue;
    EXPECT_TRUE(QXMatrixEquals(QXMatrixMultiply(M, Back), QXIdentityMatrix, 1e-3f));
  }
  TMatrix Untouched = CreateScaleQXMatrix(7, 7);
  EXPECT_FALSE(QXMatrixInvert(CreateScaleQXMatrix(0, 1), Untouched));
  EXPECT_FALSE(QXMatrixInvert(CreateScaleQXMatrix(NAN, 1), Untouched));
  EXPECT_FALSE(QXMatrixInvert(CreateScaleQXMatrix(1e-40f, 1e-40f), Untouched));
  EXPECT_EQ(Untouched, CreateScaleQXMatrix(7, 7));
  EXPECT_FALSE(QXMatrixEquals(QXIdentityMatrix, CreateTranslateQXMatrix(0, 2e-5f), 1e-5f));
}

TEST(Rectangle, FitsWithItsProportions) {
  const std::tuple<TRectF, TRectF, bool, TRectF> Cases[] = {
      {{0, 0, 10, 20}, {0, 0, 100, 100}, true, {25, 0, 75, 100}},
      {{0, 0, 10, 20}, {0, 0, 100, 100}, false, {45, 40, 55, 60}},
      {{0, 0, 400, 200}, {0, 0, 100, 100}, false, {0, 25, 100, 75}},
      {{5, 5, 5, 25}, {0, 0, 100, 100}, true, {50, 40, 50, 60}},
  };
  for (auto [R, Bounds, Enlarge, Fitted] : Cases) {
    FitRect(R, Bounds, Enlarge);
    EXPECT_EQ(R, Fitted);
  }
}

TEST(Rounding, IsTotal) {
  const std::tuple<float, std::int32_t, std::int32_t> Cases[] = {
      {0.5f, 1, 0},
      {-0.5f, -1, 0},
      {2.4f, 2, 2},
      {-2.6f, -3, -2},
      {NAN, 0, 0},
      {1e20f, INT32_MAX, INT32_MAX},
      {-1e20f, INT32_MIN, INT32_MIN},
      {INFINITY, INT32_MAX, INT32_MAX},
  };
  for (const auto& [Value, Rounded, Cut] : Cases) {
    EXPECT_EQ(CanvasRound(Value), Rounded) << Value;
    EXPECT_EQ(CanvasTrunc(Value), Cut) << Value;
  }
}

TEST(Color, Conversions) {
  const TQXGPColorRec Color = TQXGPColorRec::FromTColor(0x00030201, 0x80);
  EXPECT_EQ(Color.Color(), 0x80010203u);
  EXPECT_EQ(Color.ToTColor(), 0x00030201);
  EXPECT_EQ(TQXGPColorRec(0x40ff0000).ToGrayScale().Color(), 0x404c4c4cu);
  EXPECT_EQ(TQXGPColorRec(0xffffffff).ToGrayScale().Color(), 0xffffffffu);
  EXPECT_EQ(CanvasColorToString(0x80abcdef), u"#80ABCDEF");
}

}  // namespace
}  // namespace qxsvg
