// The switches of a document, of hit testing and of an element's transient state.
#pragma once

#include "foundation/WordTable.h"
#include "runtime/EnumSet.h"

namespace qxsvg {

enum class TSVGOption : std::uint8_t {
  // A node of an element type that is not supported is kept as a placeholder; off, it raises.
  soSkipUnknownXML,
  // The system's preferred languages choose among languages; off, the document's own list does.
  soUseLocaleForLanguage,
  // A duplicate identifier raises; off, it is made unique with the word "Copy".
  soEnforceUniqueID,
  // Clip paths and overflow clip what is drawn.
  soApplyClipping,
  // What equals the default or the inherited state is left out of XML.
  soCompactExport,
  // Held for saved option values: verbatim XML is written back in either case.
  soExportUnknownXML,
  // Elements that are not enabled are written all the same.
  soExportDisabled,
  // The binary format holds property sets as ordinals; off, as text.
  soExportOptimizedBinaryStyleProperties,
  // Held for saved option values.
  soFMXRadialGradientPatch,
  // Text is filled by the surface instead of as outlines.
  soUseFillText,
  // Text is laid out character by character even where one call would do.
  soNoOptimizeFillSimpleText,
};

// As a number, bit N is the option of ordinal N; streams hold 16 bits of it.
using TSVGOptions = TEnumSet<TSVGOption, 16>;

inline constexpr TSVGOptions DefaultSVGOptions{
    TSVGOption::soSkipUnknownXML,         TSVGOption::soUseLocaleForLanguage,
    TSVGOption::soApplyClipping,          TSVGOption::soCompactExport,
    TSVGOption::soExportUnknownXML,       TSVGOption::soExportOptimizedBinaryStyleProperties,
    TSVGOption::soFMXRadialGradientPatch,
};
static_assert(DefaultSVGOptions.Mask() == 443);

enum class TSVGFindOption : std::uint8_t {
  // Elements that are not visible are found too.
  foFindHiddenElements,
  // A group answers for itself when the hit lies in one of its children.
  foFindGroups,
  // Held in the set; the hit test of drawing elements does not ask for it.
  foFindNoRecursion,
  // The bounding box decides; the shape is not asked.
  foUseBoundingBox,
  // The inside of a path without fill counts.
  foFindNonFilled,
  // Elements that are not enabled are found too.
  foFindDisabled,
};
using TSVGFindOptions = TEnumSet<TSVGFindOption, 8>;

// What is being done with an element.
enum class TSVGElementStateFlag : std::uint8_t { esReading, esWriting, esDestroying };
using TSVGElementState = TEnumSet<TSVGElementStateFlag, 8>;

// The pattern of written numbers (runtime/FloatFormat.h) where no document gives another.
inline constexpr StringView DefaultSVGFormatStr = u"0.###";

// The largest width or height in pixels to which a size is scaled by itself.
inline constexpr std::int32_t MAX_SVGIMAGE_SIZE = 8096;

}  // namespace qxsvg
