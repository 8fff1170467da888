// Colours of 32 bits: alpha in the top byte, then red, green, blue; 0xff000000 is opaque black.
#pragma once

#include <cstdint>

#include "runtime/String.h"

namespace qxsvg {

using TQXGPColor = std::uint32_t;

// A window system's colour: red in the lowest byte, then green, blue; no alpha.
using TColor = std::int32_t;

// A colour by its parts.
struct TAlphaColorRec {
  std::uint8_t B = 0, G = 0, R = 0, A = 0;

  constexpr TAlphaColorRec() = default;
  constexpr TAlphaColorRec(TQXGPColor Color)
      : B(static_cast<std::uint8_t>(Color)),
        G(static_cast<std::uint8_t>(Color >> 8)),
        R(static_cast<std::uint8_t>(Color >> 16)),
        A(static_cast<std::uint8_t>(Color >> 24)) {}
  constexpr TQXGPColor Color() const {
    return TQXGPColor{A} << 24 | TQXGPColor{R} << 16 | TQXGPColor{G} << 8 | B;
  }
  friend constexpr bool operator==(const TAlphaColorRec&, const TAlphaColorRec&) = default;
};

// A colour with its conversions.
class QXSVG_API TQXGPColorRec : public TAlphaColorRec {
 public:
  constexpr TQXGPColorRec() = default;
  constexpr TQXGPColorRec(TQXGPColor Color) : TAlphaColorRec(Color) {}
  constexpr TQXGPColorRec(const TAlphaColorRec& Rec) : TAlphaColorRec(Rec) {}
  constexpr TQXGPColorRec(std::uint8_t Red, std::uint8_t Green, std::uint8_t Blue,
                          std::uint8_t Alpha = 255) {
    R = Red, G = Green, B = Blue, A = Alpha;
  }
  static constexpr TQXGPColorRec FromTColor(TColor Color, std::uint8_t Alpha = 255) {
    return {static_cast<std::uint8_t>(Color), static_cast<std::uint8_t>(Color >> 8),
            static_cast<std::uint8_t>(Color >> 16), Alpha};
  }
  constexpr TColor ToTColor() const { return R | G << 8 | B << 16; }
  constexpr operator TQXGPColor() const { return Color(); }

  // The grey of the same luma (weights 0.299, 0.587, 0.114), with the same alpha.
  constexpr TQXGPColorRec ToGrayScale() const {
    const auto Gray = static_cast<std::uint8_t>((R * 299 + G * 587 + B * 114 + 500) / 1000);
    return {Gray, Gray, Gray, A};
  }
};

// "#AARRGGBB" in capitals.
QXSVG_API String CanvasColorToString(TQXGPColor Color);

}  // namespace qxsvg
