#include "graphics/surface/Canvas.h"

#include <gtest/gtest.h>

#include "runtime/Services.h"
#include "tests/support/RecordingCanvas.h"

namespace qxsvg {
namespace {

using test::TRecordingCanvas;

constexpr float Inf = std::numeric_limits<float>::infinity();

TEST(Canvas, GuardsTheSurfaceFromEmptyInput) {
  TRecordingCanvas Canvas;
  TQXGPPath Square, Empty;
  Square.AddRectangle(QXRect(0, 0, 10, 10));
  Canvas.FillPath(Empty, 1);
  Canvas.DrawPath(Empty, 1);
  for (const float Opacity : {0.0f, -1.0f, NAN}) {
    Canvas.FillPath(Square, Opacity);
    Canvas.DrawPath(Square, Opacity);
    Canvas.FillRect(QXRect(0, 0, 1, 1), Opacity);
  }
  Canvas.FillRect(QXRect(0, 0, 0, 1), 1);
  Canvas.FillRect(QXRect(0, NAN, 1, 1), 1);
  Canvas.DrawLine({0, 0}, {Inf, 0}, 1);
  Canvas.FillPath({Square.View(), TQXGPFillMode::fmWinding, CreateScaleQXMatrix(Inf, 1), nullptr},
                  1);
  Canvas.DrawImage(TQXGPBitmap(), QXRect(0, 0, 9, 9), 1);
  Canvas.DrawImage(TQXGPBitmap(2, 2), QXRect(0, 0, 0, 9), 1);
  Canvas.DrawImage(TQXGPBitmap(2, 2), QXRect(0, 0, 9, 9), QXRect(5, 5, 6, 6), 1);
  using enum TQXGPBrushKind;
  for (const TQXGPBrushKind Kind : {bkNone, bkGradient, bkBitmap}) {
    Canvas.Brush().SetKind(Kind);
    Canvas.FillPath(Square, 1);
  }
  for (const float Width : {0.0f, -1.0f}) {
    Canvas.Pen().SetThickness(Width);
    Canvas.DrawPath(Square, 1);
  }
  EXPECT_EQ(Canvas.TakeText(), "");
  Canvas.Pen().SetThickness(1e-12f);
  Canvas.DrawLine({0, 0}, {1, 0}, 7);
  EXPECT_EQ(Canvas.TakeText(), "draw #FF000000 1 width hair: M 0,0 L 1,0\n");
}

TEST(Canvas, StatesNest) {
  TRecordingCanvas Canvas;
  Canvas.TrySmoothingMode(TQXGPSmoothingMode::smHighQuality);
  const auto Outer = Canvas.SaveState();
  Canvas.SetMatrix(CreateScaleQXMatrix(2, 2));
  Canvas.TrySmoothingMode(TQXGPSmoothingMode::smHighSpeed);
  Canvas.IntersectClip(QXRect(0, 0, 10, 10));
  const auto Inner = Canvas.SaveState();
  Canvas.SetMatrix(CreateScaleQXMatrix(3, 3));
  Canvas.IntersectClip(QXRect(0, 0, 1, 1));
  EXPECT_EQ(Canvas.GetClipBounds(), QXRect(0, 0, 3, 3));
  Canvas.SaveState();
  // Going back to an outer state gives up the ones in between.
  Canvas.RestoreState(Inner);
  EXPECT_EQ(Canvas.Matrix(), CreateScaleQXMatrix(2, 2));
  EXPECT_EQ(Canvas.GetClipBounds(), QXRect(0, 0, 20, 20));
  Canvas.RestoreState(Inner);
  EXPECT_EQ(Canvas.Depth(), 1u);
  Canvas.RestoreState(Outer);
  EXPECT_EQ(Canvas.Matrix(), QXIdentityMatrix);
  EXPECT_EQ(Canvas.Quality().Smoothing, TQXGPSmoothingMode::smHighQuality);
  EXPECT_EQ(Canvas.GetClipBounds(), QXRect(0, 0, 100, 100));
  Canvas.RestoreState(Outer);
  Canvas.RestoreState({});
  const TQXGPCanvasSaveState Later = Canvas.SaveState();
  Canvas.SetMatrix(CreateScaleQXMatrix(3, 3));
  Canvas.RestoreState(Outer);
  EXPECT_EQ(Canvas.Matrix().m11, 3) << "an old mark of the same depth is void";
  Canvas.RestoreState(Later);
  EXPECT_EQ(Canvas.Depth(), 0u);
}

TEST(Canvas, ClipsStayRectanglesWhereTheyCan) {
  TRecordingCanvas Canvas;
  Canvas.RecordsStates = true;
  Canvas.SetMatrix(CreateScaleQXMatrix(2, -2));
  Canvas.IntersectClip(QXRect(5, 0, 1, -3));
  EXPECT_EQ(Canvas.TakeText(), "clip 2,0,10,6\n");
  Canvas.SetMatrix(CreateRotationQXMatrix(0.5f));
  Canvas.IntersectClip(QXRect(0, 0, 10, 10));
  EXPECT_TRUE(Canvas.TakeText().starts_with("clip region | M 0,0 L 8.776,4.794"));
  Canvas.SetMatrix(QXIdentityMatrix);
  TQXGPRegion Region;
  Canvas.IntersectClip(Region);
  EXPECT_EQ(Canvas.TakeText(), "");
  Region.SetBounds(QXRect(1, 2, 3, 4));
  Canvas.IntersectClip(Region);
  Region.MakeEmpty();
  Canvas.IntersectClip(Region);
  Canvas.IntersectClip(QXRect(NAN, 0, 1, 1));
  EXPECT_EQ(Canvas.TakeText(), "clip 1,2,3,4\nclip 0,0,0,0\nclip 0,0,0,0\n");
}

// Clips another canvas before it looks at its own clip.
class TTwinCanvas : public TRecordingCanvas {
 protected:
  void DoIntersectClip(const TQXGPRegion& Region, const TMatrix& Matrix) override {
    TQXPathGeometry Wide;
    Wide.AddEllipse(QXRect(0, 0, 50, 50));
    FOther.IntersectClip(Wide.View(), TQXGPFillMode::fmWinding);
    TRecordingCanvas::DoIntersectClip(Region, Matrix);
  }

 private:
  TRecordingCanvas FOther;
};

TEST(Canvas, ClipsOfTwoCanvasesAreApart) {
  TTwinCanvas Canvas;
  Canvas.RecordsStates = true;
  const TPointF Corners[] = {{1, 0}, {9, 0}, {1, 7}};
  TQXPathGeometry Path;
  Path.AddPolygon(Corners);
  Canvas.IntersectClip(Path.View(), TQXGPFillMode::fmWinding);
  EXPECT_TRUE(Canvas.TakeText().starts_with("clip region | M 1,0 L 9,0 L 1,7 Z"));
}

TEST(Canvas, RefusesMatricesThatAreNotFinite) {
  TRecordingCanvas Canvas;
  std::vector<TQXDiagnostic> Told;
  Canvas.SetOnDiagnostic([&](TQXDiagnostic Kind, StringView) { Told.push_back(Kind); });
  Canvas.SetMatrix(CreateScaleQXMatrix(2, 2));
  Canvas.SetMatrix(CreateScaleQXMatrix(NAN, 2));
  EXPECT_EQ(Canvas.Matrix(), CreateScaleQXMatrix(2, 2));
  EXPECT_EQ(Told, std::vector{TQXDiagnostic::InvalidMatrix});
}

TEST(Canvas, CutsImagesToWhatTheyHave) {
  const std::pair<TRectF, std::string> Cases[] = {
      {{0, 0, 4, 4}, "0,0,4,4 to 0,0,10,10"},
      {{2, 0, 6, 4}, "2,0,4,4 to 0,0,5,10"},
      {{-4, 0, 4, 8}, "0,0,4,4 to 5,0,10,5"},
      // A mirrored source mirrors the picture.
      {{4, 0, 0, 4}, "0,0,4,4 to 10,0,0,10"},
  };
  TRecordingCanvas Canvas;
  for (const auto& [Source, Shown] : Cases) {
    Canvas.DrawImage(TQXGPBitmap(4, 4), {0, 0, 10, 10}, Source, 0.5f);
    EXPECT_EQ(Canvas.TakeText(), "image 4x4 0.5: " + Shown + "\n");
  }
}

// A face of squares: every character is half an em wide, a blank a quarter.
class TSquareFace : public IFontFace {
 public:
  TSquareFace() {
    FSquare.AddRectangle(QXRect(0, -0.4f, 0.4f, 0));
    FMetrics = {1000, 800, 200, 1200, 100, 50, 300, 50};
  }
  const TQXFontMetrics& GetMetrics() const override { return FMetrics; }
  void GetGlyphs(StringView Text, std::vector<TQXGlyph>& Glyphs) const override {
    for (const char16_t C : Text) Glyphs.push_back({C, 1, C == u' ' ? 0.25f : 0.5f, {}});
  }
  TQXPathView GetOutline(std::uint32_t Index) const override {
    return Index == u' ' ? TQXPathView{} : FSquare.View();
  }

 private:
  TQXPathGeometry FSquare;
  TQXFontMetrics FMetrics;
};

class TSquareEngine : public IFontEngine {
 public:
  bool IsFontFamilyAvailable(StringView Name) override { return Name == u"Square"; }
  std::shared_ptr<const IFontFace> GetFace(StringView, bool, bool) override { return FFace; }

 private:
  std::shared_ptr<const IFontFace> FFace = std::make_shared<TSquareFace>();
};

class CanvasText : public testing::Test {
 protected:
  CanvasText() {
    Services().Fonts.Install([] { return std::make_shared<TSquareEngine>(); });
    Canvas.Font().SetSize(10);
  }
  ~CanvasText() override { Services().Fonts.Install(nullptr); }

  TRecordingCanvas Canvas;
};

TEST_F(CanvasText, Measures) {
  EXPECT_TRUE(TQXGPFont::IsFontFamilyAvailable(u"Square"));
  EXPECT_FLOAT_EQ(Canvas.TextWidth(u"ab "), 12.5f);
  EXPECT_FLOAT_EQ(Canvas.TextWidthTight(u" ab "), 10);
  EXPECT_EQ(Canvas.TextWidthTight(u"  "), 0);
  EXPECT_EQ(Canvas.TextExtentF(u"a"), (TSizeF{5, 12}));
  TRectF R = QXRect(3, 4, 3, 4);
  Canvas.MeasureText(R, u"ab", TQXGPStringFormat::GenericTypographic());
  EXPECT_EQ(R, QXRect(3, 4, 13, 16));
  EXPECT_EQ(Canvas.TextWidth(u""), 0);
}

TEST_F(CanvasText, FillsAlignedInItsRectangle) {
  TQXGPStringFormat Format = TQXGPStringFormat::GenericTypographic();
  Canvas.FillText(QXRect(0, 0, 100, 20), u"a", Format, 1);
  EXPECT_EQ(Canvas.TakeText(), "fill #FF000000 1: M 0,4 L 4,4 L 4,8 L 0,8 Z\n");
  Format.SetAlign(TQXGPStringAlignment::saFar);
  Format.SetLineAlign(TQXGPStringAlignment::saCenter);
  Canvas.Brush().SetColor(0xff00ff00);
  Canvas.FillText(QXRect(0, 0, 100, 20), u"a", Format, 0.5f);
  EXPECT_EQ(Canvas.TakeText(), "fill #FF00FF00 0.5: M 95,9 L 99,9 L 99,13 L 95,13 Z\n");
  // The font's own brush comes before the canvas's, and styles draw bars.
  Canvas.Font().SetBrush(TQXGPBrush(nullptr, TQXGPBrushKind::bkSolid, 0xff0000ff));
  Canvas.Font().SetStyle({TFontStyle::fsUnderline});
  Canvas.FillText(QXRect(0, 0, 0, 0), u"a", false, 1);
  EXPECT_EQ(Canvas.TakeText(),
            "fill #FF0000FF 1: M 0,4 L 4,4 L 4,8 L 0,8 Z M 0,8.75 L 5,8.75 L 5,9.25 L 0,9.25 Z\n");
  Canvas.FillText(QXRect(0, 0, 9, 9), u"", Format, 1);
  Canvas.FillText(QXRect(0, 0, 9, 9), u" ", Format, 0);
  EXPECT_EQ(Canvas.TakeText(), "");
}

TEST_F(CanvasText, PathsTakeOutlines) {
  TQXGPPath Path;
  Path.AddText({1, 0}, u"a b", Canvas.Font());
  EXPECT_EQ(test::Describe(Path.View()),
            "M 1,4 L 5,4 L 5,8 L 1,8 Z M 8.5,4 L 12.5,4 L 12.5,8 L 8.5,8 Z");
}

TEST(CanvasWithoutFonts, SaysSo) {
  TRecordingCanvas Canvas;
  int Told = 0;
  Canvas.SetOnDiagnostic(
      [&](TQXDiagnostic Kind, StringView) { Told += Kind == TQXDiagnostic::NoFontEngine; });
  Canvas.FillText(QXRect(0, 0, 9, 9), u"a", {}, 1);
  EXPECT_EQ(Canvas.TakeText(), "");
  EXPECT_EQ(Told, 1);
  EXPECT_EQ(Canvas.TextWidth(u"a"), 0);
}

}  // namespace
}  // namespace qxsvg
