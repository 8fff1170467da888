// Pictures: the same whatever the machine and however they are cut, and right in what can be told.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "RasterTestSupport.h"
#include "graphics/surface/CoverageStamps.h"
#include "graphics/surface/PathData.h"

namespace qxsvg {
namespace {

constexpr std::int32_t Side = 160;

void Restore() {
  SetSimdLevel(BestSimdLevel());
}

TEST(TRasterCanvasTest, PlainAndSimdGiveTheSameBits) {
  for (std::uint32_t Seed = 1; Seed <= 40; ++Seed) {
    TTestSurface A(Side, Side, 0xff204060);
    SetSimdLevel(TSimdLevel::Plain);
    DrawRandomScene(A.Canvas, Seed, Side);
    for (const TSimdLevel Level : {TSimdLevel::SSE41, TSimdLevel::AVX2}) {
      TTestSurface B(Side, Side, 0xff204060);
      SetSimdLevel(Level);
      const int Drawn = static_cast<int>(SimdLevel());
      DrawRandomScene(B.Canvas, Seed, Side);
      Restore();
      ASSERT_EQ(Difference(A.Bitmap, B.Bitmap), "") << "seed " << Seed << " level " << Drawn;
    }
  }
}

TEST(TRasterCanvasTest, TilesMakeTheWhole) {
  for (std::uint32_t Seed = 1; Seed <= 25; ++Seed) {
    const std::int32_t Tile = 23 + static_cast<std::int32_t>(Seed);
    const auto Draw = [=](TQXGPCanvas& Canvas) { DrawRandomScene(Canvas, Seed, Side); };
    ASSERT_EQ(PartsDifference(Side, Tile, Tile, Draw), "") << "seed " << Seed;
  }
  // An image that hardly turns does so in small parts, too.
  TQXGPBitmap Image(Side, Side);
  TRandom Random(5);
  for (std::int32_t Y = 0; Y < Side; ++Y)
    for (std::int32_t X = 0; X < Side; ++X)
      Image.Pixels().Row(Y)[X] = QXPremultiply(Random.Color());
  const auto Draw = [&](TQXGPCanvas& Canvas) {
    Canvas.SetMatrix(CreateRotationQXMatrix(5e-5f));
    Canvas.DrawImage(Image, {0.3f, 0.3f, Side + 0.3f, Side + 0.3f}, 1);
  };
  EXPECT_EQ(PartsDifference(Side, 23, 23, Draw), "");
}

// Large figures are drawn band by band, within the picture and past its sides; strips of it are not
// worth bands.
TEST(TRasterCanvasTest, BandsMakeTheWhole) {
  constexpr std::int32_t Large = 900, Strip = 70;
  for (std::uint32_t Seed = 1; Seed <= 12; ++Seed) {
    TRandom Random(Seed);
    TQXPathGeometry Path = RandomPath(Random, 500, true);
    if (Seed % 3 == 0)
      Path.Transform(
          QXMatrixMultiply(CreateScaleQXMatrix(2.2f, 2.2f), CreateTranslateQXMatrix(-100, -100)));
    else
      Path.Transform(CreateTranslateQXMatrix(200, 200));
    const auto Draw = [&](TQXGPCanvas& Canvas) {
      Canvas.Brush().SetColor(0xff336699);
      Canvas.FillPath({Path.View(), static_cast<TQXGPFillMode>(Seed % 2), {}, nullptr}, 1);
    };
    ASSERT_EQ(PartsDifference(Large, Large, Strip, Draw), "") << "seed " << Seed;
  }
}

// Strokes that reach far beyond the surface.
void DrawFarStroke(TQXGPCanvas& Canvas, std::uint32_t Seed) {
  TRandom Random(Seed);
  const float Size = 100 * std::pow(10.0f, Random.Between(0, 5));
  TQXPathGeometry Path = RandomPath(Random, Size, Random.Below(2) != 0);
  // Some lead on in steps far below a pixel.
  if (Random.Below(4) == 0)
    for (int I = 0; I < 400; ++I)
      Path.LineTo(Path.CurrentPoint() + TPointF{0.01f, Random.Between(-3, 3)});
  Path.Translate(-Random.Between(0, Size * 0.8f), -Random.Between(0, Size * 0.8f));
  TQXGPPen& Pen = Canvas.Pen();
  SetRandomPen(Random, Pen);
  Pen.SetThickness(std::pow(10.0f, Random.Between(-1, 7)));
  Pen.SetMiterLimit(std::pow(10.0f, Random.Between(0, 3)));
  const float Dashes[] = {Random.Between(0, 2), Random.Between(0.1f, 2)};
  if (Random.Below(2)) Pen.SetCustomDash(Dashes, Random.Between(-2, 2));
  if (Random.Below(3) == 0) Canvas.SetMatrix(CreateScaleQXMatrix(1, Random.Between(0.5f, 2)));
  Canvas.DrawPath({Path.View(), TQXGPFillMode::fmWinding, {}, nullptr}, 1);
  Canvas.SetMatrix(QXIdentityMatrix);
}

TEST(TRasterCanvasTest, WideAndFarStrokesAreTheSameInTiles) {
  for (std::uint32_t Seed = 1; Seed <= 300; ++Seed) {
    const auto Tile = static_cast<std::int32_t>(23 + Seed % 30);
    const auto Draw = [=](TQXGPCanvas& Canvas) { DrawFarStroke(Canvas, Seed); };
    ASSERT_EQ(PartsDifference(100, Tile, Tile, Draw), "") << "seed " << Seed;
  }
}

// Over the limit of marks the rest of the path is solid, from one segment to the next.
TEST(TRasterCanvasTest, TooManyMarksBecomeASolidLine) {
  constexpr std::int32_t Width = 500, Rows = 120;
  TTestSurface S(Width, 2 * Rows + 4);
  TQXPathGeometry Path;
  Path.MoveTo({0, 0.5f});
  for (int I = 0; I < Rows; ++I) {
    const auto Y = static_cast<float>(2 * I) + 0.5f;
    Path.LineTo({I % 2 ? 0.0f : Width, Y});
    Path.LineTo({I % 2 ? 0.0f : Width, Y + 2});
  }
  for (float X = 100; X <= Width; X += 100) Path.LineTo({X, 2 * Rows + 0.5f});
  const float Fine[] = {0.125f, 0.125f};
  S.Canvas.Pen().SetCustomDash(Fine, 0);
  S.Canvas.DrawPath({Path.View(), TQXGPFillMode::fmWinding, {}, nullptr}, 1);
  EXPECT_NEAR(S.Pixel(250, 0) >> 24, 128, 3);
  for (std::int32_t X = 1; X + 1 < Width; ++X) ASSERT_EQ(S.Pixel(X, 2 * Rows), 0xff000000) << X;
}

TEST(TRasterCanvasTest, KeptCoverageDrawsTheSame) {
  TQXCoverageBudget Budget(1 << 20);
  for (std::uint32_t Seed = 1; Seed <= 20; ++Seed) {
    TRandom Random(Seed);
    const TQXPathGeometry Path = RandomPath(Random, Side, true);
    TQXCoverageCache Fill(Budget), Stroke(Budget);
    TTestSurface Fresh(Side, Side);
    SetRandomPen(Random, Fresh.Canvas.Pen());
    // Kept coverage comes in groups of eight pixels, a clip's edge in pieces of any length.
    TQXGPRegion Clip(&Fresh.Canvas);
    Clip.Combine(RandomPath(Random, Side, true).View(), TQXGPFillMode::fmAlternate,
                 TQXGPCombineMode::cmUnion);
    bool IsServed = Seed % 3 == 0;
    const auto Draw = [&](TTestSurface& S, bool IsKept) {
      S.Canvas.SetPen(Fresh.Canvas.Pen());
      S.Canvas.IntersectClip(QXRect(20, 20, 150, 130));
      if (Seed % 2 == 0) S.Canvas.IntersectClip(Clip);
      TQXGPBrush& Brush = S.Canvas.Brush();
      Brush.SetColor(Seed % 4 == 1 ? 0x80ff8040 : 0xff4080ff);
      if (IsServed) {
        Brush.GetGradient().Points().Clear();
        Brush.GetGradient().Points().Add(0, 0xff000000);
        Brush.GetGradient().Points().Add(1, 0x80ff0000);
        Brush.SetKind(TQXGPBrushKind::bkGradient);
      }
      S.Canvas.FillPath({Path.View(), TQXGPFillMode::fmWinding, {}, IsKept ? &Fill : nullptr}, 1);
      S.Canvas.DrawPath({Path.View(), TQXGPFillMode::fmWinding, {}, IsKept ? &Stroke : nullptr}, 1);
    };
    Draw(Fresh, false);
    for (int I = 0; I < 5; ++I) {
      TTestSurface Kept(Side, Side);
      SetSimdLevel(static_cast<TSimdLevel>(std::max(0, I - 2)));
      Draw(Kept, true);
      Restore();
      ASSERT_EQ(Difference(Fresh.Bitmap, Kept.Bitmap), "") << "seed " << Seed << " time " << I;
    }
    // What was kept of a colour serves a gradient, and the other way round.
    IsServed = !IsServed;
    TTestSurface Other(Side, Side), OtherKept(Side, Side);
    Draw(Other, false);
    Draw(OtherKept, true);
    ASSERT_EQ(Difference(Other.Bitmap, OtherKept.Bitmap), "") << "seed " << Seed;
    // Under another matrix, and under another clip, what was kept no longer serves.
    for (const bool IsClip : {false, true}) {
      TTestSurface A(Side, Side), B(Side, Side);
      for (TTestSurface* S : {&A, &B}) {
        if (IsClip)
          S->Canvas.IntersectClip(QXRect(0, 0, 80, 160));
        else
          S->Canvas.SetMatrix(CreateTranslateQXMatrix(3, 0));
        Draw(*S, S == &B);
      }
      ASSERT_EQ(Difference(A.Bitmap, B.Bitmap), "") << "seed " << Seed << " clip " << IsClip;
      TTestSurface Again(Side, Side);
      for (int I = 0; I < 2; ++I) Draw(Again, true);
    }
  }
}

// Rows alike are held once, here all of a clip's rows above and below a gap: the same rows and the
// same spans, and only the middle tells the clips apart.
TEST(TRasterCanvasTest, ClipsOfTheSameRowsAreNotTheSame) {
  TQXCoverageBudget Budget(1 << 20);
  TQXCoverageCache Kept(Budget);
  TQXPathGeometry Path;
  Path.AddEllipse(QXRect(0, 0, Side, Side));
  for (const float Middle : {20.0f, 20.0f, 80.0f}) {
    TTestSurface A(Side, Side), B(Side, Side);
    for (TTestSurface* S : {&A, &B}) {
      TQXGPRegion Clip(&S->Canvas);
      Clip.MakeEmpty();
      Clip.Combine(QXRect(20, 30, 60, 50), TQXGPCombineMode::cmUnion);
      Clip.Combine(QXRect(Middle, 60, Middle + 40, 80), TQXGPCombineMode::cmUnion);
      Clip.Combine(QXRect(80, 90, 120, 110), TQXGPCombineMode::cmUnion);
      S->Canvas.IntersectClip(Clip);
      S->Canvas.Brush().SetColor(0xff4080ff);
      S->Canvas.FillPath({Path.View(), TQXGPFillMode::fmWinding, {}, S == &A ? &Kept : nullptr}, 1);
    }
    ASSERT_EQ(Difference(A.Bitmap, B.Bitmap), "") << Middle;
  }
}

// Without a cache beside them, too, and by whatever kernels.
TEST(TRasterCanvasTest, StampsAreDrawnLikeWhatIsNotKept) {
  TQXCoverageBudget Budget(1 << 20);
  constexpr TSimdLevel Levels[] = {TSimdLevel::Plain, TSimdLevel::SSE41, TSimdLevel::AVX2};
  for (std::uint32_t Seed = 1; Seed <= 30; ++Seed) {
    TRandom Random(Seed);
    const TQXPathGeometry Path = RandomPath(Random, Seed % 2 ? 40 : 7, true);
    TQXCoverageStamps Stamps(Budget);
    TTestSurface Fresh(Side, Side), Kept(Side, Side), Placed(Side, Side);
    SetRandomPen(Random, Fresh.Canvas.Pen());
    for (const float X : {3.3f, 60.3f, -20.7f, 33.0f, 40000.0f}) {
      TQXPathSource Source{Path.View(), static_cast<TQXGPFillMode>(Seed % 2),
                           CreateTranslateQXMatrix(X, 70.1f)};
      Source.IsRepeated = true;
      for (TTestSurface* To : {&Fresh, &Kept}) {
        SetSimdLevel(To == &Kept ? Levels[Seed % 3] : TSimdLevel::Plain);
        if (To == &Kept) Source.Stamps = &Stamps;
        To->Canvas.SetPen(Fresh.Canvas.Pen());
        To->Canvas.FillPath(Source, 0.7f);
        To->Canvas.DrawPath(Source, 1);
      }
      TQXRasterCanvas& Canvas = Placed.Canvas;
      Canvas.SetPen(Fresh.Canvas.Pen());
      for (const bool Strokes : {false, true}) {
        const TQXGPPen* const Pen = Strokes ? &Fresh.Canvas.Pen() : nullptr;
        const auto Key = Canvas.StampKey(Source, Pen);
        const TQXGPColor Color = Pen ? Pen->Color() : Canvas.Brush().Color();
        const float Opacity = Pen ? 1 : 0.7f;
        TQXPlacedStamp One;
        if (Key && Canvas.PlaceStamp(Stamps, *Key, QXPoint(X, 70.1f), Color, Opacity, One))
          Canvas.DrawStamps({&One, 1});
        else if (Pen)
          Canvas.DrawPath(Source, Opacity);
        else
          Canvas.FillPath(Source, Opacity);
      }
    }
    Restore();
    ASSERT_EQ(Difference(Fresh.Bitmap, Kept.Bitmap), "") << "seed " << Seed;
    ASSERT_EQ(Difference(Fresh.Bitmap, Placed.Bitmap), "") << "seed " << Seed;
  }
}

// Nothing here may crash, hang or take memory; the test's time limit sees to the rest.
TEST(TRasterCanvasTest, DegenerateInputComesToAnEnd) {
  constexpr float Inf = std::numeric_limits<float>::infinity(),
                  Not = std::numeric_limits<float>::quiet_NaN(), Huge = 3e38f;
  std::vector<TQXPathGeometry> Paths(1);
  for (const StringView Text :
       {u"M5 5", u"M5 5L5 5L5 5", u"M-3e38-3e38L3e38 3e38L-3e38 3e38", u"M-1e6 50L1e6 50.5",
        u"M-1e30 50L1e30 51L1e30-1e30", u"M40 40L1e-30 1e-38", u"M10 10H90H10H90",
        u"M-3e38 0C3e38 3e38-3e38 3e38 3e38 0M50 50C50 50 50 50 50 50C90 50 10 50 50 50"
        u"C1e7 1e7-1e7 1e7 50 20M-1e9 0A1e9 1e9 0 1 1 1e9 0M10 10A0.001 40 0 1 1 10 90"})
    for (const bool IsClosed : {false, true}) {
      EXPECT_TRUE(QXParsePath(Text, Paths.emplace_back()));
      if (IsClosed) Paths.back().Close();
    }

  const TMatrix Matrices[] = {QXIdentityMatrix,
                              CreateScaleQXMatrix(1e-20f, 1e-20f),
                              CreateScaleQXMatrix(1e20f, 1),
                              CreateScaleQXMatrix(0, 1),
                              CreateScaleQXMatrix(-1, 1e-6f),
                              TMatrix{1, 1, 0, 1, 1, 0, 0, 0, 1},
                              CreateTranslateQXMatrix(1e30f, Huge)};
  for (int I = 0; I < 2 * static_cast<int>(std::size(Matrices)); ++I) {
    const TMatrix& M = Matrices[I / 2];
    const bool IsRepeated = I % 2 != 0;
    TTestSurface S(100, 100);
    if (!IsRepeated) S.Canvas.SetMatrix(M);
    for (const TQXPathGeometry& Path : Paths) {
      TQXPathSource Source{Path.View(), TQXGPFillMode::fmAlternate, IsRepeated ? M : TMatrix()};
      Source.IsRepeated = IsRepeated;
      S.Canvas.FillPath(Source, 1);
      for (const float Width : {0.0f, -1.0f, 1e-12f, 1.0f, 1e9f, Not, Inf}) {
        TQXGPPen& Pen = S.Canvas.Pen();
        Pen.SetThickness(Width);
        Pen.SetJoin(Width == 1 ? TQXGPStrokeJoin::sjMiter : TQXGPStrokeJoin::sjRound);
        Pen.SetMiterLimit(1e30f);
        Pen.SetStartCap(TQXGPLineCap::lcRound);
        Pen.SetDash(TQXGPStrokeDash::sdSolid);
        S.Canvas.DrawPath(Source, 1);
        const float Fine[] = {1e-6f, 1e-6f};
        Pen.SetCustomDash(Fine, 0.5f);
        S.Canvas.DrawPath(Source, 1);
      }
    }
    S.Canvas.FillRect({-Huge, -Huge, Huge, Huge}, 1);
    S.Canvas.FillRect({Not, 0, 10, 10}, 1);
    S.Canvas.FillRect({10, 10, -10, -10}, Not);
    S.Canvas.DrawImage(S.Bitmap, {-1e30f, -1e30f, 1e30f, 1e30f}, 1);
    S.Canvas.IntersectClip(TRectF{Not, 0, Inf, 3});
    S.Canvas.FillRect({0, 0, 10, 10}, 1);
  }
}

TEST(TRasterCanvasTest, HugeFiguresCoverWhatTheySurround) {
  TTestSurface S(50, 50);
  S.Canvas.Brush().SetColor(0xff00ff00);
  TQXPathGeometry Path;
  Path.AddEllipse({-1e8f, -1e8f, 1e8f, 1e8f});
  S.Canvas.FillPath({Path.View(), TQXGPFillMode::fmWinding, {}, nullptr}, 1);
  for (std::int32_t I = 0; I < 50; ++I) ASSERT_EQ(S.Pixel(I, 49 - I), 0xff00ff00);
  // A line from far left to far right, one pixel high, is where it should be.
  S.Canvas.Pen().SetColor(0xffff0000);
  S.Canvas.DrawLine({-1e9f, 10.5f}, {1e9f, 10.5f}, 1);
  for (std::int32_t Y = 9; Y < 12; ++Y)
    for (const std::int32_t X : {0, 25, 49})
      EXPECT_EQ(S.Pixel(X, Y), Y == 10 ? 0xffff0000 : 0xff00ff00);
}

TEST(TRasterCanvasTest, ClipsMultiplyAndNest) {
  TTestSurface S(40, 40, 0xffffffff);
  TQXPathGeometry Circle;
  Circle.AddEllipse({0, 0, 40, 40});
  const TQXGPCanvasSaveState State = S.Canvas.SaveState();
  S.Canvas.IntersectClip(Circle.View(), TQXGPFillMode::fmWinding);
  S.Canvas.IntersectClip(QXRect(0, 0, 20.5f, 40));
  EXPECT_TRUE(S.Canvas.IsVisible({10, 20}));
  EXPECT_FALSE(S.Canvas.IsVisible({1, 1}));
  EXPECT_FALSE(S.Canvas.IsVisible({30, 20}));
  EXPECT_EQ(S.Canvas.GetClipBounds(), QXRect(0, 0, 21, 40));
  S.Canvas.Brush().SetColor(0xff000000);
  S.Canvas.FillRect({0, 0, 40, 40}, 1);
  S.Canvas.RestoreState(State);
  EXPECT_EQ(S.Pixel(10, 20), 0xff000000);
  EXPECT_EQ(S.Pixel(20, 20), 0xff7f7f7f);
  EXPECT_EQ(S.Pixel(21, 20), 0xffffffff);
  EXPECT_EQ(S.Pixel(1, 1), 0xffffffff);
  EXPECT_TRUE(S.Canvas.IsVisible({30, 20}));
  // A region of two figures, then with a third cut out of it.
  TQXGPRegion Region;
  Region.MakeEmpty();
  TQXPathGeometry Left, Right;
  Left.AddEllipse({0, 0, 20, 40});
  Right.AddEllipse({20, 0, 40, 40});
  Region.Combine(Left.View(), TQXGPFillMode::fmWinding, TQXGPCombineMode::cmUnion);
  Region.Combine(Right.View(), TQXGPFillMode::fmWinding, TQXGPCombineMode::cmUnion);
  Region.Combine(QXRect(0, 0, 40, 15), TQXGPCombineMode::cmIntersect);
  S.Canvas.IntersectClip(Region);
  EXPECT_TRUE(S.Canvas.IsVisible({10, 10}) && S.Canvas.IsVisible({30, 10}));
  EXPECT_FALSE(S.Canvas.IsVisible({10, 20}));
  EXPECT_FALSE(S.Canvas.IsVisible({20, 1}));
  // Pixels that lie wholly in a clip are as without it, in shapes within and in those across it.
  TTestSurface Free(40, 40), Cut(40, 40);
  Cut.Canvas.IntersectClip(QXRect(1.5f, 1.5f, 38, 38.5f));
  for (TQXRasterCanvas* Canvas : {&Free.Canvas, &Cut.Canvas})
    for (const TRectF& Box : {QXRect(0, 0, 40, 40), QXRect(2, 2, 38, 38), QXRect(3, 10, 40, 20)}) {
      Canvas->Brush().SetColor(0x80336699);
      Canvas->FillRect(Box, 1);
      TQXPathGeometry Round;
      Round.AddEllipse(Box);
      Canvas->FillPath({Round.View(), TQXGPFillMode::fmWinding, {}, nullptr}, 1);
    }
  for (std::int32_t Y = 2; Y < 38; ++Y)
    for (std::int32_t X = 2; X < 38; ++X) ASSERT_EQ(Free.Pixel(X, Y), Cut.Pixel(X, Y)) << X << Y;
  EXPECT_EQ(Cut.Pixel(20, 0), 0u);
  EXPECT_LT(Cut.Pixel(20, 38), Free.Pixel(20, 38));
}

// What differs in one thing from a clip that was made before is another clip.
TEST(TRasterCanvasTest, ClipsThatComeAgainAreTheSame) {
  TRandom Random(3);
  TQXPathGeometry Paths[] = {RandomPath(Random, Side, true), RandomPath(Random, Side, true)};
  TTestSurface Again(Side, Side, 0);
  for (std::uint32_t I = 0; I < 128; ++I) {
    // One bit after the other changes.
    const std::uint32_t Way = I ^ I >> 1;
    const auto Draw = [&](TQXGPCanvas& Canvas) {
      TQXGPRegion Region;
      Region.MakeEmpty();
      for (const std::uint32_t Other : {0u, 1u})
        Region.Combine(Paths[(Way + Other) % 2].View(), static_cast<TQXGPFillMode>(Way / 2 % 2),
                       Way / 4 % 2 ? TQXGPCombineMode::cmIntersect : TQXGPCombineMode::cmUnion);
      const TQXCanvasStateLock State(Canvas);
      Canvas.Clear(0);
      Canvas.TrySmoothingMode(Way / 8 % 2 ? TQXGPSmoothingMode::smDefault
                                          : TQXGPSmoothingMode::smHighSpeed);
      if (Way / 16 % 2) Canvas.IntersectClip(QXRect(10.5f, 20, 90, 120));
      if (Way / 32 % 2) Canvas.SetMatrix(CreateTranslateQXMatrix(7.25f, 3));
      Canvas.IntersectClip(Region);
      Canvas.FillRect(QXRect(0, 0, Side, Side), 1);
    };
    TTestSurface Fresh(Side, Side, 0);
    Draw(Again.Canvas);
    Draw(Fresh.Canvas);
    ASSERT_EQ(Difference(Again.Bitmap, Fresh.Bitmap), "") << Way;
  }
}

TEST(TRasterCanvasTest, WithoutAntiAliasingPixelsAreWholeOrNot) {
  TTestSurface S(40, 40);
  S.Canvas.TrySmoothingMode(TQXGPSmoothingMode::smHighSpeed);
  S.Canvas.Brush().SetColor(0xff123456);
  TQXPathGeometry Circle;
  Circle.AddEllipse({3, 3, 36, 37});
  S.Canvas.FillPath({Circle.View(), TQXGPFillMode::fmWinding, {}, nullptr}, 1);
  for (std::int32_t Y = 0; Y < 40; ++Y)
    for (std::int32_t X = 0; X < 40; ++X)
      ASSERT_TRUE(S.Pixel(X, Y) == 0 || S.Pixel(X, Y) == 0xff123456);
  EXPECT_EQ(S.Pixel(20, 20), 0xff123456);
}

TEST(TRasterCanvasTest, GradientsRunWhereTheyShould) {
  TTestSurface S(256, 64);
  TQXGPBrush& Brush = S.Canvas.Brush();
  TQXGPGradient& G = Brush.GetGradient();
  Brush.SetKind(TQXGPBrushKind::bkGradient);
  G.Points().Add(0, 0xff000000);
  G.Points().Add(1, 0xffff0000);
  S.Canvas.FillRect({0, 0, 256, 64}, 1);
  for (std::int32_t X = 0; X < 256; ++X)
    ASSERT_NEAR(static_cast<double>(S.Pixel(X, 30) >> 16 & 255), X + 0.5, 1.5) << X;
  // Stops are padded; a stop that steps back counts as standing with the one before it.
  G.Points().Clear();
  G.Points().Add(0.25f, 0xff00ff00);
  G.Points().Add(0.75f, 0xff0000ff);
  G.Points().Add(0.5f, 0xffffffff);
  S.Canvas.FillRect({0, 0, 256, 64}, 1);
  EXPECT_EQ(S.Pixel(10, 5), 0xff00ff00);
  EXPECT_EQ(S.Pixel(250, 5), 0xffffffff);
  EXPECT_NEAR(static_cast<double>(S.Pixel(128, 5) & 255), 128, 2);
  // A path gradient counts from the rim inwards.
  G.Points().Clear();
  G.Points().Add(0, 0xff0000ff);
  G.Points().Add(1, 0xffff0000);
  G.SetStyle(TQXGPGradientStyle::gsRadial);
  S.Canvas.FillRect({0, 0, 64, 64}, 1);
  EXPECT_EQ(S.Pixel(1, 1), 0xff0000ff);
  EXPECT_GT(S.Pixel(32, 32) >> 16 & 255, 245u);
  EXPECT_NEAR(static_cast<double>(S.Pixel(16, 32) & 255), 124, 4);
  // One stop is a colour; opacity goes into it.
  G.Points().Clear();
  G.Points().Add(0.3f, 0xffffffff);
  S.Canvas.Clear();
  S.Canvas.FillRect({0, 0, 64, 64}, 0.5f);
  EXPECT_EQ(S.Pixel(3, 60), 0x80808080);
}

TEST(TRasterCanvasTest, ImagesKeepTheirPixels) {
  TRandom Random(5);
  TQXGPBitmap Image(7, 5);
  for (int I = 0; I < 35; ++I) Image.Pixels().Row(I / 7)[I % 7] = QXPremultiply(Random.Color());
  const TQXConstPixels P = Image.GetPixels();
  TTestSurface S(64, 64);
  S.Canvas.DrawImage(Image, {10, 20, 17, 25}, 1);
  for (int Y = 0; Y < 5; ++Y)
    for (int X = 0; X < 7; ++X) ASSERT_EQ(S.Pixel(10 + X, 20 + Y), P.Row(Y)[X]);
  // Each pixel three times in both directions, and mirrored.
  S.Canvas.SetInterpolationMode(TQXGPInterpolationMode::imNearestNeighbor);
  S.Canvas.Clear();
  S.Canvas.DrawImage(Image, {30, 0, 9, 15}, 1);
  for (int Y = 0; Y < 15; ++Y)
    for (int X = 0; X < 21; ++X) ASSERT_EQ(S.Pixel(29 - X, Y), P.Row(Y / 3)[X / 3]);
  // Tiles begin where the matrix puts them.
  S.Canvas.Clear();
  auto Tile = std::make_shared<TQXGPBitmap>();
  Tile->Assign(&Image);
  S.Canvas.Brush().SetBitmap(Tile, CreateTranslateQXMatrix(3, 2));
  S.Canvas.Brush().SetKind(TQXGPBrushKind::bkBitmap);
  S.Canvas.FillRect({0, 0, 64, 64}, 1);
  for (int Y = 0; Y < 64; ++Y)
    for (int X = 0; X < 64; ++X) ASSERT_EQ(S.Pixel(X, Y), P.Row((Y + 3) % 5)[(X + 4) % 7]);
  // Half a turn, which rounding leaves a little short: columns at the far side come from no other
  // memory.
  S.Canvas.Clear();
  S.Canvas.SetMatrix(QXMatrixMultiply(CreateRotationQXMatrix(std::numbers::pi_v<float>),
                                      CreateTranslateQXMatrix(60, 60)));
  S.Canvas.SetInterpolationMode(TQXGPInterpolationMode::imDefault);
  S.Canvas.DrawImage(Image, {0, 0, 3.5f, 2.5f}, 1);
  S.Canvas.DrawImage(Image, {20, 20, 27, 25}, 1);
  for (int Y = 0; Y < 5; ++Y)
    for (int X = 0; X < 7; ++X) ASSERT_EQ(S.Pixel(39 - X, 39 - Y), P.Row(Y)[X]);
}

// The mean of one part of all that lies between the sides of a pixel of the smaller picture.
double MeanOf(const TQXConstPixels& P, double Left, double Top, double Width, double Height,
              int Shift) {
  double Sum = 0;
  const auto Part = [](double From, double Size, int I) {
    return std::max(std::min(From + Size, I + 1.0) - std::max(From, double(I)), 0.0);
  };
  for (int Y = static_cast<int>(Top); Y < std::min(Top + Height, double(P.Height)); ++Y)
    for (int X = static_cast<int>(Left); X < std::min(Left + Width, double(P.Width)); ++X)
      Sum += Part(Left, Width, X) * Part(Top, Height, Y) * (P.Row(Y)[X] >> Shift & 255);
  return Sum / (Width * Height);
}

TEST(TRasterCanvasTest, MeansAreExactAtAnySize) {
  TRandom Random(8);
  TQXGPBitmap Image(210, 131);
  const TQXPixels P = Image.Pixels();
  for (int I = 0; I < 210 * 131; ++I) P.Row(I / 210)[I % 210] = Random.Color() | 0xff000000;
  constexpr int Sizes[][2] = {{97, 83}, {70, 44}, {71, 30}, {150, 14}, {60, 131}, {11, 9}};
  for (const auto& Size : Sizes) {
    const int Width = Size[0], Height = Size[1];
    const double Across = 210.0 / Width, Down = 131.0 / Height;
    TTestSurface Plain(210, 131);
    for (const TSimdLevel Level : {TSimdLevel::Plain, TSimdLevel::SSE41, TSimdLevel::AVX2}) {
      TTestSurface S(210, 131);
      SetSimdLevel(Level);
      S.Canvas.DrawImage(Image, {0, 0, float(Width), float(Height)}, 1);
      Restore();
      if (Level == TSimdLevel::Plain) Plain.Bitmap.Assign(&S.Bitmap);
      ASSERT_EQ(Difference(Plain.Bitmap, S.Bitmap), "") << Width;
    }
    for (int Y = 0; Y < Height; ++Y)
      for (int X = 0; X < Width; ++X)
        for (const int Shift : {0, 8, 16, 24})
          ASSERT_NEAR(Plain.Pixel(X, Y) >> Shift & 255,
                      MeanOf(P, X * Across, Y * Down, Across, Down, Shift), 1.5)
              << Width << " at " << X << ", " << Y;
  }
}

}  // namespace
}  // namespace qxsvg
