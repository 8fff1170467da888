// One line of text in a font: its glyphs, width and outlines.
#pragma once

#include <memory>
#include <vector>

#include "foundation/DrawingEnums.h"
#include "graphics/surface/Font.h"
#include "graphics/surface/PathGeometry.h"

namespace qxsvg {

// How far the start of a line of that width lies from the point it is aligned at.
constexpr float QXAlignShift(TQXGPStringAlignment Align, float Width) {
  switch (Align) {
    case TQXGPStringAlignment::saCenter: return -Width / 2;
    case TQXGPStringAlignment::saFar: return -Width;
    case TQXGPStringAlignment::saNear: break;
  }
  return 0;
}

// Text beyond Limits::TextRun is cut off. Without a font engine there are no glyphs, and the widths
// are 0. The font must not change while the line lives.
class QXSVG_API TQXTextLine {
 public:
  // Glyphs is memory that the caller keeps from line to line, or null.
  TQXTextLine(const TQXGPFont& Font, StringView Text, std::vector<TQXGlyph>* Glyphs = nullptr);

  bool HasFace() const { return FFace != nullptr; }
  // The sum of the advances.
  float Width() const { return FWidth; }
  float Ascent() const { return FScale * FMetrics.CellAscent / FMetrics.EmHeight; }
  float Descent() const { return FScale * FMetrics.CellDescent / FMetrics.EmHeight; }
  float LineHeight() const { return FScale * FMetrics.LineSpacing / FMetrics.EmHeight; }
  // The outlines from that point of the baseline on, underline and strike-out included as the
  // font's style tells; to be filled non-zero.
  void AppendOutlines(TPointF Baseline, TQXPathGeometry& Target) const;

 private:
  void AppendBar(TPointF Baseline, float Middle, float Thickness, TQXPathGeometry& Target) const;

  std::shared_ptr<const IFontFace> FFace;
  TQXFontMetrics FMetrics;
  std::vector<TQXGlyph> FOwn;
  const std::vector<TQXGlyph>* FGlyphs;
  TFontStyles FStyle;
  float FScale;
  float FWidth = 0;
};

}  // namespace qxsvg
