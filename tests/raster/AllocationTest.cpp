// A drawing that was drawn before takes no memory: what it needs was kept.
#include <gtest/gtest.h>

#include "RasterTestSupport.h"
#include "bench/AllocationCount.h"

namespace qxsvg {
namespace {

constexpr std::int32_t Side = 160;

struct TDrawing {
  const char* Name;
  void (*Draw)(TQXGPCanvas& Canvas, const TQXPathSource& Source, const TQXGPBitmap& Image);
};

void SetGradient(TQXGPBrush& Brush, TQXGPGradientStyle Style) {
  Brush.GetGradient().SetStyle(Style);
  Brush.SetKind(TQXGPBrushKind::bkGradient);
}

void Dash(TQXGPPen& Pen) {
  constexpr float Dashes[] = {3, 1, 0, 2};
  Pen.SetCustomDash(Dashes, 0.5f);
  Pen.SetDashCap(TQXGPDashCap::dcRound);
}

constexpr TDrawing Drawings[] = {
    {"Fill", [](auto& C, auto& S, auto&) { C.FillPath(S, 1); }},
    {"Stroke",
     [](auto& C, auto& S, auto&) {
       C.Pen().SetThickness(7);
       C.Pen().SetJoin(TQXGPStrokeJoin::sjRound);
       C.DrawPath(S, 0.5f);
     }},
    {"Dashes",
     [](auto& C, auto& S, auto&) {
       C.Pen().SetThickness(2);
       Dash(C.Pen());
       C.DrawPath(S, 1);
     }},
    {"Linear",
     [](auto& C, auto& S, auto&) {
       SetGradient(C.Brush(), TQXGPGradientStyle::gsLinear);
       C.FillPath(S, 1);
     }},
    {"Radial",
     [](auto& C, auto& S, auto&) {
       SetGradient(C.Brush(), TQXGPGradientStyle::gsRadial);
       C.FillPath(S, 0.7f);
     }},
    {"Tiles",
     [](auto& C, auto& S, auto&) {
       C.Brush().SetKind(TQXGPBrushKind::bkBitmap);
       C.FillPath(S, 1);
     }},
    {"Images",
     [](auto& C, auto&, auto& Image) {
       C.DrawImage(Image, {10, 10, 150, 140}, 1);
       C.DrawImage(Image, {10, 10, 14, 15}, 1);
       const TQXCanvasStateLock Lock(C);
       C.SetMatrix(CreateRotationQXMatrix(0.3f));
       C.DrawImage(Image, {10, 10, 150, 140}, 1);
     }},
    {"Clip",
     [](auto& C, auto& S, auto&) {
       const TQXCanvasStateLock Lock(C);
       C.IntersectClip(S.Path, TQXGPFillMode::fmAlternate);
       C.FillRect({0, 0, Side, Side}, 1);
       C.DrawPath(S, 1);
       static const TQXGPRegion Both = [&] {
         TQXGPRegion Region;
         Region.Combine(S.Path, TQXGPFillMode::fmWinding, TQXGPCombineMode::cmReplace);
         Region.Combine(TRectF{20, 20, 90, 90}, TQXGPCombineMode::cmUnion);
         return Region;
       }();
       C.IntersectClip(Both);
       C.DrawPath(S, 1);
     }},
};

class TAllocation : public testing::TestWithParam<TDrawing> {};

TEST_P(TAllocation, NoneWhenDrawnAgain) {
  TRandom Random(5);
  const TQXPathGeometry Path = RandomPath(Random, Side, true);
  auto Image = std::make_shared<TQXGPBitmap>(32, 32);
  Image->Clear(0x80306090);
  TTestSurface Surface(Side, Side);
  TQXGPBrush& Brush = Surface.Canvas.Brush();
  Brush.SetBitmap(Image, CreateScaleQXMatrix(1.7f, 0.4f));
  for (int I = 0; I < 3; ++I)
    Brush.GetGradient().Points().Add(static_cast<float>(I) / 2, Random.Color());
  const TQXPathSource Source{Path.View(), TQXGPFillMode::fmWinding, {}, nullptr};
  const auto Draw = [&] { GetParam().Draw(Surface.Canvas, Source, *Image); };
  Draw();
  // Clips that were larger the first time may change places with others.
  Draw();
  const std::size_t Before = bench::AllocationCount();
  Draw();
  EXPECT_EQ(bench::AllocationCount() - Before, 0u);
}

INSTANTIATE_TEST_SUITE_P(Drawings, TAllocation, testing::ValuesIn(Drawings),
                         [](const auto& Info) { return std::string(Info.param.Name); });

}  // namespace
}  // namespace qxsvg
