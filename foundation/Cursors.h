// Mouse cursors: the format's keywords and the window system's numbers.
#pragma once

#include "foundation/WordTable.h"

namespace qxsvg {

// A window system's cursor: one of SVGCursorMapping or what a program registered beside them.
using TCursor = std::int16_t;

enum class TSVGCursor : std::uint8_t {
  scrNone,
  scrAuto,
  scrCrosshair,
  scrDefault,
  scrPointer,
  scrMove,
  scrE_resize,
  scrNE_resize,
  scrNW_resize,
  scrN_resize,
  scrSE_resize,
  scrSW_resize,
  scrS_resize,
  scrW_resize,
  scrText,
  scrWait,
  scrHelp,
};

struct TSVGCursorRow {
  TSVGCursor Cursor;
  StringView Word;
  TCursor Platform;
};

inline constexpr std::array<TSVGCursorRow, CountUpTo(TSVGCursor::scrHelp)> SVGCursorRows{{
    {TSVGCursor::scrNone, u"", -1},                // no cursor
    {TSVGCursor::scrAuto, u"auto", 0},             // default
    {TSVGCursor::scrCrosshair, u"crosshair", -3},  // cross
    {TSVGCursor::scrDefault, u"default", 0},       // default
    {TSVGCursor::scrPointer, u"pointer", -21},     // pointing hand
    {TSVGCursor::scrMove, u"move", -12},           // drag
    {TSVGCursor::scrE_resize, u"e-resize", -9},    // west-east sizing
    {TSVGCursor::scrNE_resize, u"ne-resize", -6},  // north-east to south-west sizing
    {TSVGCursor::scrNW_resize, u"nw-resize", -8},  // north-west to south-east sizing
    {TSVGCursor::scrN_resize, u"n-resize", -7},    // north-south sizing
    {TSVGCursor::scrSE_resize, u"se-resize", -8},  // north-west to south-east sizing
    {TSVGCursor::scrSW_resize, u"sw-resize", -6},  // north-east to south-west sizing
    {TSVGCursor::scrS_resize, u"s-resize", -7},    // north-south sizing
    {TSVGCursor::scrW_resize, u"w-resize", -9},    // west-east sizing
    {TSVGCursor::scrText, u"text", -4},            // I-beam
    {TSVGCursor::scrWait, u"wait", -11},           // hourglass
    {TSVGCursor::scrHelp, u"help", -20},           // help
}};
static_assert(IsInOrder(SVGCursorRows, &TSVGCursorRow::Cursor, TSVGCursor::scrHelp));

inline constexpr auto SVGCursorNames = Column(SVGCursorRows, &TSVGCursorRow::Word);
static_assert(HasNoDuplicates(SVGCursorNames));
inline constexpr auto SVGCursorMapping = Column(SVGCursorRows, &TSVGCursorRow::Platform);

}  // namespace qxsvg
