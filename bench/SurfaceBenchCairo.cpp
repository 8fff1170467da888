#include "bench/SurfaceBenchEngines.h"

#if defined(QXSVG_BENCH_CAIRO)

#include <cairo.h>

namespace qxsvg::bench {

namespace {

using TPath = std::unique_ptr<cairo_path_t, decltype(&cairo_path_destroy)>;

void Append(cairo_t* Context, const TQXPathView& Path) {
  cairo_new_path(Context);
  for (std::size_t I = 0; I < Path.Count(); ++I) {
    const TPointF* P = &Path.Points[I];
    switch (Path.Kinds[I]) {
      case TQXPathPointKind::pkMove: cairo_move_to(Context, P->X, P->Y); break;
      case TQXPathPointKind::pkLine: cairo_line_to(Context, P->X, P->Y); break;
      case TQXPathPointKind::pkCurve:
        cairo_curve_to(Context, P[0].X, P[0].Y, P[1].X, P[1].Y, P[2].X, P[2].Y);
        I += 2;
        break;
      case TQXPathPointKind::pkClose: cairo_close_path(Context); break;
    }
  }
}

class TCairoEngine final : public IBenchEngine {
 public:
  ~TCairoEngine() override { End(); }

  void Begin(int Size) override {
    End();
    FSize = Size;
    FSurface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, Size, Size);
    FContext = cairo_create(FSurface);
    cairo_set_antialias(FContext, CAIRO_ANTIALIAS_BEST);
    FillAll(0xffffffff);
  }
  void Prepare(const TBenchScene& Scene) override {
    FPaths.clear();
    for (const TBenchShape& Shape : Scene.Shapes) FPaths.push_back(Taken(Shape.Path.View()));
  }
  void Prepare(const TQXPathGeometry& Clip, const TQXGPBitmap& Image) override {
    FClip = Taken(Clip.View());
    FImage.Assign(&Image);
    if (FPicture) cairo_surface_destroy(FPicture);
    const TQXPixels Pixels = FImage.Pixels();
    FPicture = cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(Pixels.Data),
                                                   CAIRO_FORMAT_ARGB32, Pixels.Width, Pixels.Height,
                                                   static_cast<int>(Pixels.Stride * 4));
  }

  void DrawScene(const TBenchScene& Scene, const TMatrix& M) override {
    cairo_matrix_t Matrix;
    cairo_matrix_init(&Matrix, M.m11, M.m12, M.m21, M.m22, M.m31, M.m32);
    cairo_set_matrix(FContext, &Matrix);
    for (std::size_t I = 0; I < Scene.Shapes.size(); ++I) {
      const TBenchShape& Shape = Scene.Shapes[I];
      cairo_new_path(FContext);
      cairo_append_path(FContext, FPaths[I].get());
      if (Shape.Fill != 0) {
        SetColor(Shape.Fill);
        cairo_set_fill_rule(FContext, Shape.FillMode == TQXGPFillMode::fmWinding
                                          ? CAIRO_FILL_RULE_WINDING
                                          : CAIRO_FILL_RULE_EVEN_ODD);
        cairo_fill_preserve(FContext);
      }
      if (Shape.Stroke != 0) Stroke(Shape);
    }
    cairo_identity_matrix(FContext);
  }

  void FillAll(TQXGPColor Color) override {
    SetColor(Color);
    cairo_rectangle(FContext, 0, 0, FSize, FSize);
    cairo_fill(FContext);
  }

  void FillGradient(TBenchGradient Kind) override {
    const double Half = FSize / 2.0;
    cairo_pattern_t* Pattern = Kind == TBenchGradient::Radial
                                   ? cairo_pattern_create_radial(Half, Half, 0, Half, Half, Half)
                                   : cairo_pattern_create_linear(
                                         0, 0, FSize, Kind == TBenchGradient::Diagonal ? FSize : 0);
    cairo_pattern_add_color_stop_rgb(Pattern, 0, 1, 0, 0);
    cairo_pattern_add_color_stop_rgb(Pattern, 0.4, 1, 1, 0);
    cairo_pattern_add_color_stop_rgb(Pattern, 1, 0, 0, 1);
    cairo_pattern_set_extend(Pattern, CAIRO_EXTEND_PAD);
    FillAllWith(Pattern);
  }

  void FillTiled(const TMatrix& M) override {
    cairo_pattern_t* Pattern = cairo_pattern_create_for_surface(FPicture);
    cairo_matrix_t Matrix;
    cairo_matrix_init(&Matrix, M.m11, M.m12, M.m21, M.m22, M.m31, M.m32);
    cairo_matrix_invert(&Matrix);
    cairo_pattern_set_matrix(Pattern, &Matrix);
    cairo_pattern_set_extend(Pattern, CAIRO_EXTEND_REPEAT);
    cairo_pattern_set_filter(Pattern, CAIRO_FILTER_BILINEAR);
    FillAllWith(Pattern);
  }

  void DrawImage(const TRectF& Dest) override {
    cairo_save(FContext);
    cairo_translate(FContext, Dest.Left, Dest.Top);
    cairo_scale(FContext, Dest.Width() / static_cast<float>(FImage.GetWidth()),
                Dest.Height() / static_cast<float>(FImage.GetHeight()));
    cairo_set_source_surface(FContext, FPicture, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(FContext), CAIRO_FILTER_GOOD);
    cairo_pattern_set_extend(cairo_get_source(FContext), CAIRO_EXTEND_PAD);
    cairo_rectangle(FContext, 0, 0, FImage.GetWidth(), FImage.GetHeight());
    cairo_fill(FContext);
    cairo_restore(FContext);
  }

  void BeginClip() override {
    cairo_save(FContext);
    cairo_new_path(FContext);
    cairo_append_path(FContext, FClip.get());
    cairo_set_fill_rule(FContext, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_clip(FContext);
  }
  void EndClip() override { cairo_restore(FContext); }
  TQXConstPixels Pixels() const override {
    cairo_surface_flush(FSurface);
    return {reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(FSurface)), FSize,
            FSize, cairo_image_surface_get_stride(FSurface) / 4};
  }

 private:
  // Takes the pattern.
  void FillAllWith(cairo_pattern_t* Pattern) {
    cairo_set_source(FContext, Pattern);
    cairo_rectangle(FContext, 0, 0, FSize, FSize);
    cairo_fill(FContext);
    cairo_pattern_destroy(Pattern);
  }
  void End() {
    if (FContext) cairo_destroy(FContext);
    if (FSurface) cairo_surface_destroy(FSurface);
    FContext = nullptr;
    FSurface = nullptr;
  }
  TPath Taken(const TQXPathView& View) {
    Append(FContext, View);
    TPath Path(cairo_copy_path(FContext), &cairo_path_destroy);
    cairo_new_path(FContext);
    return Path;
  }
  void SetColor(TQXGPColor Color) {
    const TAlphaColorRec C(Color);
    cairo_set_source_rgba(FContext, C.R / 255.0, C.G / 255.0, C.B / 255.0, C.A / 255.0);
  }
  void Stroke(const TBenchShape& Shape) {
    SetColor(Shape.Stroke);
    cairo_set_line_width(FContext, Shape.Width);
    cairo_set_miter_limit(FContext, Shape.MiterLimit);
    cairo_set_line_join(FContext, Shape.Join == TQXGPStrokeJoin::sjRound   ? CAIRO_LINE_JOIN_ROUND
                                  : Shape.Join == TQXGPStrokeJoin::sjBevel ? CAIRO_LINE_JOIN_BEVEL
                                                                           : CAIRO_LINE_JOIN_MITER);
    cairo_set_line_cap(FContext, Shape.Cap == TQXGPLineCap::lcRound    ? CAIRO_LINE_CAP_ROUND
                                 : Shape.Cap == TQXGPLineCap::lcSquare ? CAIRO_LINE_CAP_SQUARE
                                                                       : CAIRO_LINE_CAP_BUTT);
    const std::vector<double> Dashes(Shape.Dashes.begin(), Shape.Dashes.end());
    cairo_set_dash(FContext, Dashes.data(), static_cast<int>(Dashes.size()), 0);
    cairo_stroke(FContext);
  }

  int FSize = 0;
  cairo_surface_t *FSurface = nullptr, *FPicture = nullptr;
  cairo_t* FContext = nullptr;
  std::vector<TPath> FPaths;
  TPath FClip{nullptr, &cairo_path_destroy};
  TQXGPBitmap FImage;
};

}  // namespace

std::unique_ptr<IBenchEngine> CreateCairoEngine() {
  return std::make_unique<TCairoEngine>();
}

}  // namespace qxsvg::bench

#else

namespace qxsvg::bench {
std::unique_ptr<IBenchEngine> CreateCairoEngine() {
  return nullptr;
}
}  // namespace qxsvg::bench

#endif
