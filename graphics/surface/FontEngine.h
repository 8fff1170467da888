// The contract by which text becomes outlines: families, metrics, advances.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "graphics/surface/PathView.h"
#include "runtime/String.h"

namespace qxsvg {

// One glyph of a run. Lengths are fractions of the em: multiply by the font's size.
struct TQXGlyph {
  std::uint32_t Index = 0;
  // How many UTF-16 units of the text it stands for; 0 for further glyphs of a cluster.
  std::uint16_t TextLength = 0;
  float Advance = 0;
  // From the pen to the glyph's origin; Y grows downwards.
  TPointF Offset;
};

// In the font's design units, all positive; a descent reaches below the baseline. Underline and
// strike-out positions are the distances of the stroke's middle from the baseline, below it for the
// underline, above it for the strike-out.
struct TQXFontMetrics {
  float EmHeight = 2048;
  float CellAscent = 1854, CellDescent = 434, LineSpacing = 2355;
  float UnderlinePosition = 217, UnderlineThickness = 150;
  float StrikeOutPosition = 530, StrikeOutThickness = 102;
};

// One family in one style. All operations may be called from any thread.
class QXSVG_API IFontFace {
 public:
  virtual ~IFontFace() = default;

  virtual const TQXFontMetrics& GetMetrics() const = 0;
  // Appends the glyphs of one run, left to right in visual order, unhinted. A character without a
  // glyph in this face gets one of a fallback face or the face's own missing glyph.
  virtual void GetGlyphs(StringView Text, std::vector<TQXGlyph>& Glyphs) const = 0;
  // The outline with the origin on the baseline at the glyph's start, 1 being the em, Y downwards;
  // to be filled non-zero. Valid as long as the face.
  virtual TQXPathView GetOutline(std::uint32_t Index) const = 0;
};

class QXSVG_API IFontEngine {
 public:
  virtual ~IFontEngine() = default;

  // Whether a family of that name, without regard to case, is installed or stands for one ("serif",
  // "sans-serif", "monospace").
  virtual bool IsFontFamilyAvailable(StringView Name) = 0;
  // The nearest face that there is; never null. The same arguments give the same object while it
  // lives.
  virtual std::shared_ptr<const IFontFace> GetFace(StringView Family, bool Bold, bool Italic) = 0;
};

}  // namespace qxsvg
