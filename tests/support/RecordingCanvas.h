// A canvas that draws nothing and writes down what it was asked for, one line a call, so that a
// test of drawing compares texts.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "graphics/surface/Canvas.h"
#include "graphics/surface/PathGeometry.h"
#include "graphics/surface/PathMeasure.h"

namespace qxsvg::test {

// A number with up to three places.
inline std::string Brief(double Value) {
  char Text[64];
  std::snprintf(Text, sizeof Text, "%.3f", Value == 0 ? 0.0 : Value);
  std::string Result(Text);
  Result.erase(Result.find_last_not_of('0') + 1);
  if (Result.back() == '.') Result.pop_back();
  return Result == "-0" ? "0" : Result;
}

inline std::string Describe(const TRectF& R) {
  return Brief(R.Left) + "," + Brief(R.Top) + "," + Brief(R.Right) + "," + Brief(R.Bottom);
}

inline void ExpectNear(const TRectF& Got, const TRectF& Expected, float Tolerance) {
  for (const float TRectF::*Side : {&TRectF::Left, &TRectF::Top, &TRectF::Right, &TRectF::Bottom})
    EXPECT_NEAR(Got.*Side, Expected.*Side, Tolerance) << Describe(Got);
}

// "M 0,0 L 10,0 C ... Z".
inline std::string Describe(const TQXPathView& Path) {
  std::string Text;
  std::size_t CurvePoint = 0;
  for (std::size_t I = 0; I < Path.Count(); ++I) {
    const auto Kind = Path.Kinds[I];
    CurvePoint = Kind == TQXPathPointKind::pkCurve ? CurvePoint + 1 : 0;
    if (!Text.empty()) Text += ' ';
    if (Kind == TQXPathPointKind::pkClose) {
      Text += 'Z';
      continue;
    }
    if (Kind != TQXPathPointKind::pkCurve || CurvePoint % 3 == 1)
      Text += std::string(1, "MLC"[static_cast<int>(Kind)]) + " ";
    Text += Brief(Path.Points[I].X) + "," + Brief(Path.Points[I].Y);
  }
  return Text;
}

class TRecordingCanvas : public TQXGPCanvas {
 public:
  explicit TRecordingCanvas(std::int32_t Width = 100, std::int32_t Height = 100)
      : FBounds{0, 0, Width, Height} {
    FClips.push_back(QXRect(FBounds));
  }

  // What was recorded so far, and a fresh start.
  std::vector<std::string> Take() { return std::exchange(FLines, {}); }
  std::string TakeText() {
    std::string Text;
    for (const std::string& Line : Take()) Text += Line + "\n";
    return Text;
  }
  // Whether saves, restores and clips are written down too; they are not at first.
  bool RecordsStates = false;
  // How deep the states are nested.
  std::size_t Depth() const { return FClips.size() - 1; }

  TRect GetDeviceBounds() const override { return FBounds; }
  TRectF GetClipBounds() const override { return FClips.back(); }
  bool IsVisible(TPointF P) const override { return FClips.back().Contains(P); }

 protected:
  void DoSaveState() override {
    FClips.push_back(FClips.back());
    if (RecordsStates) Record("save");
  }
  void DoRestoreState() override {
    FClips.pop_back();
    if (RecordsStates) Record("restore");
  }
  void DoIntersectClipRect(const TRectF& R) override {
    FClips.back() = TRectF::Intersect(FClips.back(), R);
    if (RecordsStates) Record("clip " + Describe(R));
  }
  void DoIntersectClip(const TQXGPRegion& Region, const TMatrix& Matrix) override {
    FClips.back() = TRectF::Intersect(FClips.back(), QXMatrixTransform(Matrix, Region.GetBounds()));
    if (!RecordsStates) return;
    std::string Text = "clip region";
    for (std::size_t I = 0; I < Region.StepCount(); ++I) {
      const TQXRegionStep Step = Region.Step(I);
      Text += Step.Mode == TQXGPCombineMode::cmIntersect ? " & " : " | ";
      Text += Describe(Mapped(Step.Path, Matrix).View()) + RuleOf(Step.FillMode);
    }
    Record(Text);
  }
  void DoClear(TQXGPColor Color) override { Record("clear " + Hex(Color)); }
  void DoFillPath(const TQXPathSource& Source, const TQXGPBrush& Brush, float Opacity) override {
    Record("fill " + Named(Brush) + " " + Brief(Opacity) + RuleOf(Source.FillMode) + ": " +
           Describe(OnDevice(Source).View()));
  }
  void DoDrawPath(const TQXPathSource& Source, const TQXGPPen& Pen, float Opacity) override {
    std::string Text = "draw " + Named(Pen) + " " + Brief(Opacity) + " width " +
                       (Pen.Thickness() < 1e-3f ? "hair" : Brief(Pen.Thickness()));
    if (!Pen.DashPattern().empty()) {
      Text += " dash";
      for (const float Value : Pen.DashPattern()) Text += " " + Brief(Value);
      Text += " from " + Brief(Pen.DashOffset());
    }
    Record(Text + ": " + Describe(OnDevice(Source).View()));
  }
  void DoDrawImage(const TQXConstPixels& Pixels, const TRectF& Dest, const TRectF& Source,
                   float Opacity) override {
    Record("image " + std::to_string(Pixels.Width) + "x" + std::to_string(Pixels.Height) + " " +
           Brief(Opacity) + ": " + Describe(Source) + " to " +
           Describe(QXRect(QXMatrixTransform(Matrix(), Dest.TopLeft()),
                           QXMatrixTransform(Matrix(), Dest.BottomRight()))));
  }

 private:
  void Record(std::string Line) { FLines.push_back(std::move(Line)); }
  static std::string Hex(TQXGPColor Color) { return ToUtf8(CanvasColorToString(Color)); }
  static std::string RuleOf(TQXGPFillMode Mode) {
    return Mode == TQXGPFillMode::fmAlternate ? " evenodd" : "";
  }
  static TQXPathGeometry Mapped(const TQXPathView& Path, const TMatrix& M) {
    TQXPathGeometry Result;
    Result.Assign(Path);
    Result.Transform(M);
    return Result;
  }
  TQXPathGeometry OnDevice(const TQXPathSource& Source) const {
    return Mapped(Source.Path, QXMatrixMultiply(Source.Matrix, Matrix()));
  }
  static std::string Named(const TQXGPGradient* Gradient) {
    if (!Gradient) return "gradient";
    std::string Text = Gradient->Style() == TQXGPGradientStyle::gsLinear ? "linear(" : "radial(";
    for (const TQXGPGradientPoint& Point : Gradient->Points().Items())
      Text += (Text.back() == '(' ? "" : " ") + Brief(Point.Offset()) + Hex(Point.Color());
    return Text + ")";
  }
  static std::string Named(const TQXGPImage* Image) {
    if (!Image) return "bitmap";
    return "bitmap(" + std::to_string(Image->GetWidth()) + "x" +
           std::to_string(Image->GetHeight()) + ")";
  }
  static std::string Named(const TQXGPBrush& Brush) {
    switch (Brush.Kind()) {
      case TQXGPBrushKind::bkGradient: return Named(Brush.Gradient());
      case TQXGPBrushKind::bkBitmap: return Named(Brush.Bitmap());
      default: return Hex(Brush.Color());
    }
  }
  static std::string Named(const TQXGPPen& Pen) {
    const TQXGPBrush* Brush = Pen.InnerBrush();
    switch (Pen.Kind()) {
      case TQXGPBrushKind::bkGradient: return Named(Brush ? Brush->Gradient() : nullptr);
      case TQXGPBrushKind::bkBitmap: return Named(Brush ? Brush->Bitmap() : nullptr);
      default: return Hex(Pen.Color());
    }
  }

  TRect FBounds;
  std::vector<TRectF> FClips;
  std::vector<std::string> FLines;
};

}  // namespace qxsvg::test
