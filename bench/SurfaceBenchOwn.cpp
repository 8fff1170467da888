#include "bench/SurfaceBenchEngines.h"
#include "raster/RasterCanvas.h"

namespace qxsvg::bench {

namespace {

class TOwnEngine final : public IBenchEngine {
 public:
  void Begin(int Size) override {
    FCanvas.reset();
    FBitmap = std::make_unique<TQXGPBitmap>(Size, Size);
    FBitmap->Clear(0xffffffff);
    FCanvas = std::make_unique<TQXRasterCanvas>(FBitmap->Pixels());
  }
  void Prepare(const TBenchScene&) override {}
  void Prepare(const TQXPathGeometry& Clip, const TQXGPBitmap& Image) override {
    FClip = Clip;
    FImage = std::make_shared<TQXGPBitmap>();
    FImage->Assign(&Image);
  }

  void DrawScene(const TBenchScene& Scene, const TMatrix& M) override {
    FCanvas->SetMatrix(M);
    TQXGPPen& Pen = FCanvas->Pen();
    FCanvas->Brush().SetKind(TQXGPBrushKind::bkSolid);
    for (const TBenchShape& Shape : Scene.Shapes) {
      const TQXPathSource Source{Shape.Path.View(), Shape.FillMode, {}, nullptr};
      if (Shape.Fill != 0) {
        FCanvas->Brush().SetColor(Shape.Fill);
        FCanvas->FillPath(Source, 1);
      }
      if (Shape.Stroke == 0) continue;
      Pen.SetColor(Shape.Stroke);
      Pen.SetThickness(Shape.Width);
      Pen.SetJoin(Shape.Join);
      Pen.SetMiterLimit(Shape.MiterLimit);
      Pen.SetStartCap(Shape.Cap);
      Pen.SetEndCap(Shape.Cap);
      if (Shape.Dashes.empty()) {
        Pen.SetDash(TQXGPStrokeDash::sdSolid);
      } else {
        FDashes = Shape.Dashes;
        for (float& Dash : FDashes) Dash /= Shape.Width;
        Pen.SetCustomDash(FDashes, 0);
        Pen.SetDashCap(Shape.Cap == TQXGPLineCap::lcRound    ? TQXGPDashCap::dcRound
                       : Shape.Cap == TQXGPLineCap::lcSquare ? static_cast<TQXGPDashCap>(1)
                                                             : TQXGPDashCap::dcFlat);
      }
      FCanvas->DrawPath(Source, 1);
    }
    FCanvas->SetMatrix(QXIdentityMatrix);
  }

  void FillAll(TQXGPColor Color) override {
    FCanvas->Brush().SetKind(TQXGPBrushKind::bkSolid);
    FCanvas->Brush().SetColor(Color);
    FCanvas->FillRect(All(), 1);
  }

  void FillGradient(TBenchGradient Kind) override {
    TQXGPBrush& Brush = FCanvas->Brush();
    TQXGPGradient& G = Brush.GetGradient();
    G.Points().Clear();
    G.Points().Add(0, 0xffff0000);
    G.Points().Add(0.4f, 0xffffff00);
    G.Points().Add(1, 0xff0000ff);
    G.SetStyle(Kind == TBenchGradient::Radial ? TQXGPGradientStyle::gsRadial
                                              : TQXGPGradientStyle::gsLinear);
    G.StopPosition().SetPoint({1, Kind == TBenchGradient::Diagonal ? 1.0f : 0.0f});
    Brush.SetKind(TQXGPBrushKind::bkGradient);
    FCanvas->FillRect(All(), 1);
  }

  void FillTiled(const TMatrix& M) override {
    FCanvas->Brush().SetBitmap(FImage, M);
    FCanvas->Brush().SetKind(TQXGPBrushKind::bkBitmap);
    FCanvas->FillRect(All(), 1);
  }

  void DrawImage(const TRectF& Dest) override { FCanvas->DrawImage(*FImage, Dest, 1); }

  void BeginClip() override {
    FState = FCanvas->SaveState();
    FCanvas->IntersectClip(FClip.View(), TQXGPFillMode::fmAlternate);
  }
  void EndClip() override { FCanvas->RestoreState(FState); }
  TQXConstPixels Pixels() const override { return FBitmap->GetPixels(); }

 private:
  TRectF All() const { return QXRect(FCanvas->GetDeviceBounds()); }

  std::unique_ptr<TQXGPBitmap> FBitmap;
  std::unique_ptr<TQXRasterCanvas> FCanvas;
  std::shared_ptr<TQXGPBitmap> FImage;
  TQXPathGeometry FClip;
  TQXGPCanvasSaveState FState;
  std::vector<float> FDashes;
};

}  // namespace

std::unique_ptr<IBenchEngine> CreateOwnEngine() {
  return std::make_unique<TOwnEngine>();
}

}  // namespace qxsvg::bench
