// Numbers as text and back, in UTF-16, with the period as decimal separator whatever the locale.
//
// The grammar of a number is that of the format's attributes: an optional sign, digits with an
// optional period among, before or behind them, an optional exponent of "e" or "E", an optional
// sign and digits. There are no words for infinity, no hexadecimal digits and no digit groups.
#pragma once

#include <cstdint>

#include "runtime/String.h"

namespace qxsvg {

// Reads the longest number at First and gives its end, or First where none begins or where the
// number lies beyond the range of the type; Value is then as it was. The result is the value
// nearest to the text; what is too small for the type is zero. Takes no memory.
QXSVG_API const char16_t* ParseFloatPrefix(const char16_t* First, const char16_t* Last,
                                           double& Value);
QXSVG_API const char16_t* ParseFloatPrefix(const char16_t* First, const char16_t* Last,
                                           float& Value);

// Reads Text as one number with nothing but characters of U+0020 and below around it. False where
// it is none or is beyond the range of the type; Value is then as it was.
QXSVG_API bool TryStrToFloat(StringView Text, float& Value);
QXSVG_API bool TryStrToFloat(StringView Text, double& Value);
// The same, raising EConvertError where the others give false.
QXSVG_API float StrToFloat(StringView Text);
QXSVG_API double StrToDouble(StringView Text);

// Decimal digits with an optional sign, blanks around them allowed; false beyond the type's range.
QXSVG_API bool TryStrToInt(StringView Text, std::int32_t& Value);
QXSVG_API bool TryStrToInt(StringView Text, std::int64_t& Value);
// The same, raising EConvertError.
QXSVG_API std::int32_t StrToInt(StringView Text);

QXSVG_API String IntToStr(std::int64_t Value);

// The number in up to 15 significant digits, without trailing zeros; with an exponent ("1E-5",
// "1.5E20") below 0.0001 and from 1E15 upwards. Zero has no sign. So that what is written can
// always be read back, an infinity is written as the largest 32-bit float and what is no number
// as 0.
QXSVG_API String FloatToStr(double Value);
// The same form with the fewest digits that read back as exactly this float.
QXSVG_API String FloatToStr(float Value);
QXSVG_API void AppendFloat(String& Target, double Value);
QXSVG_API void AppendFloat(String& Target, float Value);

// The number by a pattern such as "0.###"; see TFloatFormat, which is the faster way for many
// numbers of one pattern. Raises EConvertError for a pattern that is none.
QXSVG_API String FormatFloat(StringView Pattern, double Value);

}  // namespace qxsvg
