// Pens, brushes, fonts, gradients and the objects over rectangles and transforms.
#include <gtest/gtest.h>

#include <numbers>

#include "foundation/Limits.h"
#include "graphics/surface/Font.h"
#include "graphics/surface/ObjectRect.h"
#include "graphics/surface/Pen.h"
#include "graphics/surface/Transform.h"
#include "runtime/Exceptions.h"
#include "tests/support/Watch.h"

namespace qxsvg {
namespace {

using test::TWatch;

TEST(Brush, TellsOfChangesAndOfNothingElse) {
  TQXGPBrush Brush(nullptr, TQXGPBrushKind::bkNone, 0xff112233);
  TWatch Watch(Brush);
  Brush.SetColor(0xff112233);
  Brush.SetKind(TQXGPBrushKind::bkNone);
  EXPECT_EQ(Watch.Take(), 0);
  Brush.SetColor(0xff000000);
  Brush.SetKind(TQXGPBrushKind::bkSolid);
  EXPECT_EQ(Watch.Take(), 2);
  // The gradient belongs to the brush.
  Brush.GetGradient().Points().Add(0.5f, 0xffffffff);
  Brush.GetGradient().StopPosition().SetX(0.25f);
  EXPECT_EQ(Watch.Take(), 2);
  EXPECT_EQ(Brush.DefaultColor(), 0xff112233u);
}

TEST(Brush, CopiesTheGradientAndSharesTheImage) {
  TQXGPGradient Gradient;
  Gradient.SetStyle(TQXGPGradientStyle::gsRadial);
  Gradient.Points().Add(0, 0xff010203);
  TQXGPBrush Brush, Copy;
  Brush.SetGradient(Gradient);
  EXPECT_EQ(Brush.Kind(), TQXGPBrushKind::bkSolid);
  Gradient.Points().GetPoint(0).SetColor(0);
  EXPECT_EQ(Brush.Gradient()->Points().GetPoint(0).Color(), 0xff010203u);
  const auto Image = std::make_shared<TQXGPBitmap>(3, 4);
  Brush.SetBitmap(Image, CreateTranslateQXMatrix(1, 2));
  Copy.Assign(&Brush);
  EXPECT_EQ(Copy.Bitmap(), Image.get());
  EXPECT_EQ(Copy.BitmapMatrix().m31, 1);
  EXPECT_EQ(Copy.Gradient()->Style(), TQXGPGradientStyle::gsRadial);
  // A paint without them takes them away from the copy.
  Copy.Assign(std::make_unique<TQXGPBrush>().get());
  EXPECT_EQ(Copy.Bitmap(), nullptr);
  EXPECT_EQ(Image.use_count(), 2);
  EXPECT_EQ(Copy.Gradient()->Points().Count(), 0u);
  // A change of the copied gradient tells the copy's owner.
  TWatch Watch(Copy);
  Copy.GetGradient().Points().Add(1, 0);
  EXPECT_EQ(Watch.Take(), 1);
}

TEST(Gradient, TakesPointsAsTheyCome) {
  TQXGPGradient Gradient;
  EXPECT_EQ(Gradient.StopPosition().GetPoint(), (TPointF{1, 0}));
  EXPECT_EQ(Gradient.CenterPosition().GetPoint(), (TPointF{0.5f, 0.5f}));
  EXPECT_EQ(Gradient.RadiusPosition().GetPoint(), (TPointF{1, 1}));
  TWatch Watch(Gradient);
  Gradient.Points().BeginUpdate();
  for (const float Offset : {2.0f, -1.0f, NAN}) Gradient.Points().Add(Offset, 1);
  Gradient.Points().EndUpdate();
  EXPECT_EQ(Watch.Take(), 1);
  for (std::size_t I = 0; I < 3; ++I)
    EXPECT_EQ(Gradient.Points().GetPoint(I).Offset(), (std::array{2.0f, -1.0f, 0.0f})[I]);
  EXPECT_THROW(Gradient.Points().GetPoint(3), EListError);
  Gradient.Points().GetPoint(1).SetOffset(0.5f);
  Gradient.Points().GetPoint(1).SetOffset(0.5f);
  EXPECT_EQ(Watch.Take(), 1);
  TQXGPGradient Copy;
  TWatch CopyWatch(Copy);
  Copy.Assign(&Gradient);
  EXPECT_EQ(CopyWatch.Take(), 1);
  Copy.Points().GetPoint(0).SetOffset(0);
  EXPECT_EQ(CopyWatch.Take(), 1);
  EXPECT_EQ(Watch.Take(), 0);
  for (std::size_t I = 3; I < Limits::GradientPoints; ++I) Gradient.Points().Add();
  EXPECT_THROW(Gradient.Points().Add(), EListError);
  EXPECT_EQ(Gradient.Points().Count(), Limits::GradientPoints);
}

TEST(Pen, Dashes) {
  TQXGPPen Pen;
  EXPECT_TRUE(Pen.DashPattern().empty());
  const std::pair<TQXGPStrokeDash, std::vector<float>> Patterns[] = {
      {TQXGPStrokeDash::sdDash, {3, 1}},
      {TQXGPStrokeDash::sdDot, {1, 1}},
      {TQXGPStrokeDash::sdDashDot, {3, 1, 1, 1}},
      {TQXGPStrokeDash::sdDashDotDot, {3, 1, 1, 1, 1, 1}},
  };
  for (const auto& [Dash, Lengths] : Patterns) {
    Pen.SetDash(Dash);
    EXPECT_TRUE(std::ranges::equal(Pen.DashPattern(), Lengths)) << int(Dash);
  }
  const float Values[] = {1, 2, 3, 4};
  Pen.SetCustomDash(Values, 1, 0.5f);
  EXPECT_TRUE(std::ranges::equal(Pen.DashPattern(), std::vector<float>{1, 2}));
  EXPECT_EQ(Pen.DashOffset(), 0.5f);
  Pen.SetCustomDash(Values, 99, 0);
  EXPECT_EQ(Pen.CustomDash().size(), 4u);
  Pen.SetCustomDash(Pen.CustomDash(), 1, 0);
  EXPECT_TRUE(std::ranges::equal(Pen.CustomDash(), std::vector<float>{1, 2}));
  Pen.SetCustomDash(Values, -1, 0);
  EXPECT_TRUE(Pen.CustomDash().empty());
}

TEST(Pen, CopiesEverythingButTheDefaults) {
  TQXGPPen Pen(nullptr, TQXGPBrushKind::bkSolid, 0xff123456);
  Pen.SetThickness(3);
  Pen.SetDashCap(TQXGPDashCap::dcTriangle);
  Pen.GetBrush().SetKind(TQXGPBrushKind::bkGradient);
  TQXGPPen Copy(nullptr, TQXGPBrushKind::bkNone, 0xff000001);
  EXPECT_FALSE(Copy.SameStroke(Pen));
  Copy.Assign(&Pen);
  EXPECT_TRUE(Copy.SameStroke(Pen));
  EXPECT_EQ(Copy.DefaultColor(), 0xff000001u);
  EXPECT_EQ(Copy.InnerBrush()->Kind(), TQXGPBrushKind::bkGradient);
  TWatch Watch(Copy);
  Copy.GetBrush().SetColor(5);
  EXPECT_EQ(Watch.Take(), 1);
  Pen.SetThickness(NAN);
  Pen.SetMiterLimit(NAN);
  EXPECT_TRUE(Copy.SameStroke(Pen));
}

TEST(Font, Defaults) {
  TQXGPFont Font;
  EXPECT_EQ(Font.Name(), u"Tahoma");
  EXPECT_EQ(Font.Size(), 11);
  // Without an engine there are still metrics, so that no ratio of them fails.
  EXPECT_GT(Font.GetEmHeight(), 0);
  EXPECT_FALSE(TQXGPFont::IsFontFamilyAvailable(u"serif"));
  TWatch Watch(Font);
  Font.SetName(u"Arial");
  Font.SetSize(11);
  Font.SetSize(NAN);
  Font.SetStyle({TFontStyle::fsBold});
  EXPECT_EQ(Watch.Take(), 2);
}

TEST(Objects, TransformScalesTurnsAndMoves) {
  TQXTransform Transform;
  EXPECT_TRUE(Transform.IsIdentity());
  TWatch Watch(Transform);
  Transform.Scale().SetPoint({2, 1});
  Transform.SetRotationAngle(90);
  Transform.RotationCenter().SetPoint({10, 10});
  Transform.Translation().SetPoint({100, 0});
  EXPECT_EQ(Watch.Take(), 4);
  // (13, 10) lies 3 right of the centre: scaled 6 right, turned 6 below, moved by 100.
  const TPointF P = QXMatrixTransform(Transform.Matrix(), TPointF{13, 10});
  EXPECT_NEAR(P.X, 110, 1e-4);
  EXPECT_NEAR(P.Y, 16, 1e-4);
  Transform.Clear();
  EXPECT_TRUE(Transform.IsIdentity());
  EXPECT_EQ(Watch.Take(), 1);
}

TEST(Objects, RectangleTellsOfChanges) {
  TQXObjectQXRect Rect;
  TWatch Watch(Rect);
  Rect.SetLeft(1);
  Rect.SetRect({1, 0, 0, 0});
  Rect.SetTop(NAN);
  EXPECT_EQ(Watch.Take(), 1);
  TQXObjectQXRect Other(QXRect(1, 2, 3, 4));
  Rect.Assign(&Other);
  EXPECT_EQ(Watch.Take(), 1);
}

}  // namespace
}  // namespace qxsvg
