// The enumerations that cross the drawing surface's boundary. Their numbers are those of the
// Windows GDI+ flat interface, and streams hold them.
#pragma once

#include <cstdint>

#include "runtime/EnumSet.h"

namespace qxsvg {

enum class TQXGPBrushKind : std::uint8_t { bkNone, bkSolid, bkGradient, bkBitmap };

enum class TQXGPLineCap : std::uint8_t { lcFlat, lcSquare, lcRound, lcTriangle };

// A dash has no square cap.
enum class TQXGPDashCap : std::uint8_t { dcFlat = 0, dcRound = 2, dcTriangle = 3 };

enum class TQXGPStrokeJoin : std::uint8_t { sjMiter, sjBevel, sjRound };

enum class TQXGPStrokeDash : std::uint8_t {
  sdSolid,
  sdDash,
  sdDot,
  sdDashDot,
  sdDashDotDot,
  sdCustom
};

enum class TQXGPFillMode : std::uint8_t { fmAlternate, fmWinding };

enum class TQXGPSmoothingMode : std::uint8_t {
  smDefault = 0,
  // Draws without anti-aliasing; every other mode draws with it.
  smHighSpeed = 1,
  smHighQuality = 2,
  smNone = 3,
  smAntiAlias8x4 = 4,
  smAntiAlias8x8 = 5
};

enum class TQXGPTextRenderingHint : std::uint8_t {
  thSystemDefault = 0,
  thSingleBitPerPixelGridFit = 1,
  thSingleBitPerPixel = 2,
  thAntiAliasGridFit = 3,
  thAntiAlias = 4,
  thClearTypeGridFit = 5
};

enum class TQXGPCompositingQuality : std::uint8_t {
  cqDefault,
  cqHighSpeed,
  cqHighQuality,
  cqGammaCorrected,
  cqAssumeLinear
};

enum class TQXGPInterpolationMode : std::uint8_t {
  imDefault = 0,
  imLowQuality = 1,
  imHighQuality = 2,
  imBilinear = 3,
  imBicubic = 4,
  imNearestNeighbor = 5,
  imHighQualityBilinear = 6,
  imHighQualityBicubic = 7
};

enum class TQXGPWrapMode : std::uint8_t { wmTile, wmTileFlipX, wmTileFlipY, wmTileFlipXY, wmClamp };

enum class TQXGPGradientStyle : std::uint8_t { gsLinear, gsRadial };

enum class TQXGPCombineMode : std::uint8_t { cmReplace, cmIntersect, cmUnion };

enum class TQXGPStringAlignment : std::uint8_t { saNear, saCenter, saFar };

enum class TFontStyle : std::uint8_t { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using TFontStyles = TEnumSet<TFontStyle, 8>;

enum class TQXCorner : std::uint8_t { crTopLeft, crTopRight, crBottomLeft, crBottomRight };
using TQXCorners = TEnumSet<TQXCorner, 8>;
inline constexpr TQXCorners AllCorners = TQXCorners::FromMask(15);

}  // namespace qxsvg
