// How a text is laid into its rectangle.
#pragma once

#include <cstdint>

#include "foundation/DrawingEnums.h"

namespace qxsvg {

class TQXGPStringFormat {
 public:
  constexpr TQXGPStringFormat() = default;
  // Without the padding that a plain format puts around a text.
  static constexpr TQXGPStringFormat GenericTypographic() {
    TQXGPStringFormat Format;
    Format.FTypographic = true;
    return Format;
  }

  constexpr bool IsTypographic() const { return FTypographic; }
  // Along the line: where in the rectangle the text lies.
  constexpr TQXGPStringAlignment Align() const { return FAlign; }
  constexpr void SetAlign(TQXGPStringAlignment Align) { FAlign = Align; }
  constexpr TQXGPStringAlignment LineAlign() const { return FLineAlign; }
  constexpr void SetLineAlign(TQXGPStringAlignment Align) { FLineAlign = Align; }
  // The bits of the surface's flat interface; those that the built-in layout knows have no effect
  // on a single unwrapped line.
  constexpr std::uint32_t Flags() const { return FFlags; }
  constexpr void SetFlags(std::uint32_t Flags) { FFlags = Flags; }

 private:
  std::uint32_t FFlags = 0;
  TQXGPStringAlignment FAlign = TQXGPStringAlignment::saNear;
  TQXGPStringAlignment FLineAlign = TQXGPStringAlignment::saNear;
  bool FTypographic = false;
};

}  // namespace qxsvg
