// Random shapes beside Cairo, which shares nothing with this surface but what the shapes mean.
//
// Cairo is asked for its best anti-aliasing and for curves ten times as close as ours; it still
// counts fifteen lines a pixel, so that nearly level edges differ by a tenth. This surface sums the
// signed area within a pixel, so that a pixel differs more where parts of the outline that wind
// differently meet. What may not differ is the shape: a pixel far from Cairo's must be one whose
// points, tested one by one, agree with Cairo.
#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "graphics/surface/Path.h"
#include "tests/raster/RasterTestSupport.h"

namespace qxsvg {
namespace {

constexpr std::int32_t Side = 200;
constexpr std::uint32_t SceneCount = 60;
// Differences, of 255.
constexpr int FarApart = 64, CloseEnough = 48;

class TCairoSurface {
 public:
  TCairoSurface()
      : FBitmap(Side, Side),
        FSurface(cairo_image_surface_create_for_data(
            reinterpret_cast<unsigned char*>(FBitmap.Pixels().Data), CAIRO_FORMAT_ARGB32, Side,
            Side, static_cast<int>(FBitmap.Pixels().Stride * 4))),
        FContext(cairo_create(FSurface)) {
    FBitmap.Clear(0xffffffff);
    cairo_surface_mark_dirty(FSurface);
    cairo_set_antialias(FContext, CAIRO_ANTIALIAS_BEST);
    cairo_set_tolerance(FContext, 0.01);
  }
  ~TCairoSurface() {
    cairo_destroy(FContext);
    cairo_surface_destroy(FSurface);
  }

  void SetMatrix(const TMatrix& M) {
    cairo_matrix_t Matrix;
    cairo_matrix_init(&Matrix, M.m11, M.m12, M.m21, M.m22, M.m31, M.m32);
    cairo_set_matrix(FContext, &Matrix);
  }
  void Fill(const TQXPathView& Path, TQXGPFillMode Mode) {
    Begin(Path);
    cairo_set_fill_rule(FContext, Mode == TQXGPFillMode::fmWinding ? CAIRO_FILL_RULE_WINDING
                                                                   : CAIRO_FILL_RULE_EVEN_ODD);
    cairo_fill(FContext);
  }
  void Stroke(const TQXPathView& Path, const TQXGPPen& Pen) {
    constexpr std::array Joins = {CAIRO_LINE_JOIN_MITER, CAIRO_LINE_JOIN_BEVEL,
                                  CAIRO_LINE_JOIN_ROUND};
    constexpr std::array Caps = {CAIRO_LINE_CAP_BUTT, CAIRO_LINE_CAP_SQUARE, CAIRO_LINE_CAP_ROUND};
    Begin(Path);
    cairo_set_line_width(FContext, Pen.Thickness());
    cairo_set_line_join(FContext, Joins.at(static_cast<std::size_t>(Pen.Join())));
    cairo_set_line_cap(FContext, Caps.at(static_cast<std::size_t>(Pen.StartCap())));
    cairo_set_miter_limit(FContext, Pen.MiterLimit());
    std::vector<double> Dashes;
    for (const float Dash : Pen.DashPattern()) Dashes.push_back(double{Dash} * Pen.Thickness());
    cairo_set_dash(FContext, Dashes.data(), static_cast<int>(Dashes.size()),
                   double{Pen.DashOffset()} * Pen.Thickness());
    cairo_stroke(FContext);
  }
  const TQXGPBitmap& Picture() {
    cairo_surface_flush(FSurface);
    return FBitmap;
  }

 private:
  void Begin(const TQXPathView& Path) {
    cairo_set_source_rgb(FContext, 0, 0, 0);
    cairo_new_path(FContext);
    for (std::size_t I = 0; I < Path.Count(); ++I) {
      const TPointF* P = &Path.Points[I];
      switch (Path.Kinds[I]) {
        case TQXPathPointKind::pkMove: cairo_move_to(FContext, P->X, P->Y); break;
        case TQXPathPointKind::pkLine: cairo_line_to(FContext, P->X, P->Y); break;
        case TQXPathPointKind::pkClose: cairo_close_path(FContext); break;
        case TQXPathPointKind::pkCurve:
          cairo_curve_to(FContext, P[0].X, P[0].Y, P[1].X, P[1].Y, P[2].X, P[2].Y);
          I += 2;
          break;
      }
    }
  }

  TQXGPBitmap FBitmap;
  cairo_surface_t* FSurface;
  cairo_t* FContext;
};

struct TKind {
  const char* Name;
  bool IsStroked, HasCurves, IsDashed, IsShort, HasMatrix;
  // How many pixels of all scenes may be of another shape: along curves that turn more tightly than
  // the pen is wide, and at miters of lines so short that Cairo's grid turns them.
  int MostOther;
};

struct TShape {
  TQXGPPath Path;
  TQXGPPen Pen;
  TMatrix Matrix = QXIdentityMatrix;
  bool IsStroked = false;
};

// Figures with repeated points, turns right back, and no length at all.
TQXPathGeometry ShortFigures(TRandom& Random) {
  TQXPathGeometry Path;
  for (int Figure = 0; Figure < 6; ++Figure) {
    TPointF P = Random.Point(20, Side - 20);
    Path.MoveTo(P);
    for (std::uint32_t I = Random.Below(4); I > 0; --I) {
      switch (Random.Below(4)) {
        case 0: break;
        case 1: P = P + Random.Point(-0.6f, 0.6f); break;
        case 2: P = P + Random.Point(-30, 30); break;
        case 3: P.X += Random.Between(-40, 40); break;
      }
      Path.LineTo(P);
    }
    if (Random.Below(3) == 0) Path.Close();
  }
  return Path;
}

void SetPen(TRandom& Random, const TKind& Kind, TQXGPPen& Pen) {
  Pen.SetThickness(Random.Between(0.5f, Kind.IsDashed ? 9 : 18));
  auto Join = static_cast<TQXGPStrokeJoin>(Random.Below(3));
  auto Cap = static_cast<TQXGPLineCap>(Random.Below(3));
  // Cairo leaves miters out that are within the limit where a matrix stretches the pen, and square
  // dots altogether.
  if (Kind.HasMatrix && Join == TQXGPStrokeJoin::sjMiter) Join = TQXGPStrokeJoin::sjBevel;
  if (Kind.IsShort && Cap == TQXGPLineCap::lcSquare) Cap = TQXGPLineCap::lcRound;
  Pen.SetJoin(Join);
  Pen.SetMiterLimit(Random.Between(1, 10));
  Pen.SetStartCap(Cap);
  Pen.SetEndCap(Cap);
  Pen.SetDashCap(static_cast<TQXGPDashCap>(Cap));
  if (!Kind.IsDashed) return;
  std::array<float, 5> Dashes;
  for (float& Dash : Dashes) Dash = Random.Between(0.4f, 6);
  Pen.SetCustomDash(std::span(Dashes).first(1 + Random.Below(5)), Random.Between(-8, 8));
}

void MakeShape(TRandom& Random, const TKind& Kind, TShape& Shape) {
  Shape.IsStroked = Kind.IsStroked;
  if (Kind.HasMatrix) {
    const TMatrix Scale =
        CreateScaleQXMatrix(Random.Between(0.3f, 1.6f), Random.Between(0.3f, 1.6f));
    Shape.Matrix = QXMatrixMultiply(Scale, CreateRotationQXMatrix(Random.Between(0, 6)));
    Shape.Matrix.m31 = Random.Between(0, Side);
    Shape.Matrix.m32 = Random.Between(0, Side);
  }
  Shape.Path.Assign(
      (Kind.IsShort ? ShortFigures(Random) : RandomPath(Random, Side, Kind.HasCurves)).View());
  Shape.Path.SetFillMode(static_cast<TQXGPFillMode>(Random.Below(2)));
  SetPen(Random, Kind, Shape.Pen);
}

void Draw(const TShape& Shape, TTestSurface& Ours, TCairoSurface& Theirs) {
  Ours.Canvas.SetMatrix(Shape.Matrix);
  Theirs.SetMatrix(Shape.Matrix);
  const TQXPathSource Source{Shape.Path.View(), Shape.Path.FillMode(), {}, nullptr};
  if (Shape.IsStroked) {
    Ours.Canvas.SetPen(Shape.Pen);
    Ours.Canvas.Pen().SetColor(0xff000000);
    Ours.Canvas.DrawPath(Source, 1);
    Theirs.Stroke(Shape.Path.View(), Shape.Pen);
  } else {
    Ours.Canvas.Brush().SetColor(0xff000000);
    Ours.Canvas.FillPath(Source, 1);
    Theirs.Fill(Shape.Path.View(), Shape.Path.FillMode());
  }
}

// What a shape covers of a pixel, by testing 8 times 8 points in it.
int ExactCover(const TShape& Shape, const TQXGPCanvas& Canvas, std::int32_t X, std::int32_t Y) {
  int Count = 0;
  for (int I = 0; I < 64; ++I) {
    const TPointF P{static_cast<float>(X) + (static_cast<float>(I % 8) + 0.5f) / 8,
                    static_cast<float>(Y) + (static_cast<float>(I / 8) + 0.5f) / 8};
    Count += Shape.IsStroked ? Shape.Path.IsOutlineVisiblePathPoint(P, Shape.Pen, &Canvas)
                             : Shape.Path.IsVisiblePathPoint(P, &Canvas);
  }
  return Count * 255 / 64;
}

constexpr TKind Kinds[] = {
    {"Polygons", false, false, false, false, false, 0},
    {"CurvedFigures", false, true, false, false, false, 0},
    {"Strokes", true, false, false, false, false, 2},
    {"CurvedStrokes", true, true, false, false, false, 10},
    {"Dashes", true, false, true, false, false, 0},
    {"CurvedDashes", true, true, true, false, false, 10},
    {"ShortLines", true, false, false, true, false, 40},
    {"ShortDashes", true, false, true, true, false, 5},
    {"TurnedStrokes", true, false, false, false, true, 0},
    {"TurnedDashes", true, true, true, false, true, 10},
};

class TBesideCairo : public testing::TestWithParam<TKind> {};

TEST_P(TBesideCairo, ShapesAreTheSame) {
  double Means = 0;
  int Other = 0;
  std::string Worst;
  for (std::uint32_t Seed = 1; Seed <= SceneCount; ++Seed) {
    TRandom Random(Seed);
    TTestSurface Ours(Side, Side, 0xffffffff);
    TCairoSurface Theirs;
    TShape Shape;
    MakeShape(Random, GetParam(), Shape);
    Draw(Shape, Ours, Theirs);
    const TQXConstPixels Picture = Theirs.Picture().GetPixels();
    for (std::int32_t Y = 0; Y < Side; ++Y)
      for (std::int32_t X = 0; X < Side; ++X) {
        const int Cover = 255 - static_cast<int>(Picture.Row(Y)[X] & 255);
        const int Difference = std::abs(255 - static_cast<int>(Ours.Pixel(X, Y) & 255) - Cover);
        Means += Difference / (1.0 * Side * Side);
        if (Difference <= FarApart) continue;
        if (std::abs(ExactCover(Shape, Ours.Canvas, X, Y) - Cover) <= CloseEnough) continue;
        ++Other;
        Worst =
            "seed " + std::to_string(Seed) + " at " + std::to_string(X) + ", " + std::to_string(Y);
      }
  }
  EXPECT_LT(Means / SceneCount, 0.5);
  EXPECT_LE(Other, GetParam().MostOther) << Worst;
}

INSTANTIATE_TEST_SUITE_P(Kinds, TBesideCairo, testing::ValuesIn(Kinds),
                         [](const auto& Info) { return std::string(Info.param.Name); });

}  // namespace
}  // namespace qxsvg
