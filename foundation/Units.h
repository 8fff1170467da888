// The units of lengths.
#pragma once

#include <vector>

#include "foundation/WordTable.h"

namespace qxsvg {

enum class TSVGUnit : std::uint8_t {
  suNone,
  suPixels,
  suPoints,
  suPicas,
  suMillimeters,
  suCentimeters,
  suInches,
  // The size of the element's font.
  suFontSize,
  // Half the size of the element's font: the x-height is not measured.
  suFontXHeight,
  suPercent,
};

// A unit for each value of a list.
using TSVGUnits = std::vector<TSVGUnit>;

inline constexpr auto SVGUnitStrings = WordTable<TSVGUnit::suPercent>(
    u"", u"px", u"pt", u"pc", u"mm", u"cm", u"in", u"em", u"ex", u"%");

// Pixels for one of each unit, indexed by TSVGUnit.
using TSVGUnitFactors = std::array<float, 10>;
static_assert(SVGUnitStrings.size() == TSVGUnitFactors().size());

// The factors of what belongs to no document, at 96 dots per inch. They are rounded decimals, and
// stay so: coordinates of such elements have always come out this way.
inline constexpr TSVGUnitFactors SVGUnitFactors{1.0f,  1.0f,  1.333f, 15.996f, 3.78f,
                                                37.8f, 96.0f, 1.0f,   1.0f,    1.0f};

}  // namespace qxsvg
