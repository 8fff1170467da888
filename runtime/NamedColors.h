// The system's colours by name and in hexadecimal digits.
//
// A colour is 32 bits: alpha in the top byte, then red, green, blue.
#pragma once

#include <cstdint>
#include <optional>

#include "runtime/String.h"

namespace qxsvg {

// The colour keywords of SVG 1.1 (chapter 4.4), found without regard to case.
QXSVG_API std::optional<std::uint32_t> FindNamedColor(StringView Name);

// An identifier is "cla" and a colour keyword ("claRed"). False, with Color as it was, for others.
QXSVG_API bool IdentToAlphaColor(StringView Ident, std::uint32_t& Color);

// A colour identifier, or "$" and hexadecimal digits, of which the low 32 bits count. Raises
// EConvertError for any other text.
QXSVG_API std::uint32_t StringToAlphaColor(StringView Text);

// The keyword of an opaque colour that has one, "#AARRGGBB" in capitals for any other. Of two
// keywords for one colour it is the first in the alphabet.
QXSVG_API String AlphaColorToString(std::uint32_t Color);

}  // namespace qxsvg
