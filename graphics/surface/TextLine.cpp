#include "graphics/surface/TextLine.h"

#include "foundation/Limits.h"

namespace qxsvg {

TQXTextLine::TQXTextLine(const TQXGPFont& Font, StringView Text, std::vector<TQXGlyph>* Glyphs)
    : FFace(Font.GetFace()),
      FMetrics(Font.Metrics()),
      FGlyphs(Glyphs ? Glyphs : &FOwn),
      FStyle(Font.Style()),
      FScale(Font.Size()) {
  std::vector<TQXGlyph>& Target = Glyphs ? *Glyphs : FOwn;
  Target.clear();
  // Ratios are taken of it everywhere.
  if (!(FMetrics.EmHeight > 0)) FMetrics.EmHeight = 1;
  if (!FFace) return;
  FFace->GetGlyphs(Text.substr(0, Limits::TextRun), Target);
  double Sum = 0;
  for (const TQXGlyph& Glyph : Target) Sum += Glyph.Advance;
  FWidth = static_cast<float>(Sum * FScale);
}

void TQXTextLine::AppendOutlines(TPointF Baseline, TQXPathGeometry& Target) const {
  if (!FFace || FGlyphs->empty()) return;
  double Pen = 0;
  for (const TQXGlyph& Glyph : *FGlyphs) {
    const TMatrix M{FScale,
                    0,
                    0,
                    0,
                    FScale,
                    0,
                    static_cast<float>(Baseline.X + (Pen + Glyph.Offset.X) * FScale),
                    Baseline.Y + Glyph.Offset.Y * FScale,
                    1};
    Target.Append(FFace->GetOutline(Glyph.Index), M);
    Pen += Glyph.Advance;
  }
  if (FStyle.Has(TFontStyle::fsUnderline))
    AppendBar(Baseline, FMetrics.UnderlinePosition, FMetrics.UnderlineThickness, Target);
  if (FStyle.Has(TFontStyle::fsStrikeOut))
    AppendBar(Baseline, -FMetrics.StrikeOutPosition, FMetrics.StrikeOutThickness, Target);
}

void TQXTextLine::AppendBar(TPointF Baseline, float Middle, float Thickness,
                            TQXPathGeometry& Target) const {
  const float Unit = FScale / FMetrics.EmHeight;
  const float Top = Baseline.Y + (Middle - Thickness / 2) * Unit;
  // The way round that glyphs of outline fonts have here, so that a bar does not cut holes into
  // them under the non-zero rule.
  Target.AddRectangle({Baseline.X, Top, Baseline.X + FWidth, Top + Thickness * Unit});
}

}  // namespace qxsvg
