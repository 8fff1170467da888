// The texts that the system raises. "%s" stands for the arguments of Format, in order.
#pragma once

#include "runtime/String.h"

namespace qxsvg {

inline constexpr StringView SElementParentSetToSelf =
    u"An svg element cannot have itself as its parent";
inline constexpr StringView SDocNotSVG = u"Not a valid SVG";
inline constexpr StringView SDocEmpty = u"Empty XML document";
inline constexpr StringView SCircularReference = u"Circular reference detected";
inline constexpr StringView SUnknownSVGElement = u"Unknown SVG element <%s> in document: %s";
inline constexpr StringView SInvalidSVGDoc = u"Invalid SVG document, contains \"doc\" node";
inline constexpr StringView SInvalidTransform = u"Invalid transformation: %s";
inline constexpr StringView SInvalidMatrix = u"Invalid matrix: %s";
inline constexpr StringView SInvalidTransformationMatrix = u"Invalid %s transformation matrix: %s";
inline constexpr StringView SInvalidSelector = u"Invalid selector: %s";
inline constexpr StringView SInvalidScaling = u"Invalid scaling values: %f and %f";
inline constexpr StringView SInvalidChildType =
    u"SVG element <%s> does not allow children of <%s> element type";
inline constexpr StringView SNameNotUnique = u"Name <%s> is not unique";
inline constexpr StringView sSVGImageFile = u"Scalable Vector Graphics File";
inline constexpr StringView sSVGInvalidOperation = u"Invalid operation for SVG";
inline constexpr StringView sSVGUnsupportedOperation = u"Unsupported operation for SVG";
inline constexpr StringView sSVGUnsupportedFileOperation = u"Unsupported operation for SVG file";

// Limits, each named after its constant in foundation/Limits.h.
inline constexpr StringView SNestingDepthLimit = u"The document is nested too deeply";
inline constexpr StringView SElementCountLimit = u"The document holds too many elements";
inline constexpr StringView SAttributeLimit = u"An attribute is too long";
inline constexpr StringView SDocumentSizeLimit = u"The document is too large";
inline constexpr StringView SElementAttributesLimit = u"An element has too many attributes";
inline constexpr StringView SDeclarationLimit = u"The document type declares too much";
inline constexpr StringView SEntityCountLimit = u"The document declares too many entities";
inline constexpr StringView SEntityLimit = u"The entities of the document expand to too much text";
inline constexpr StringView SDecompressedSizeLimit =
    u"The compressed document expands to too much data";
inline constexpr StringView SStyleRuleLimit = u"The document has too many style rules";
inline constexpr StringView SStyleCopyLimit =
    u"The selector lists of the document repeat too much text";
inline constexpr StringView SStyleMatchLimit =
    u"The document has too many style rules for its elements";
inline constexpr StringView SPathSegmentLimit = u"The path has too many segments";
inline constexpr StringView SGradientPointLimit = u"The gradient repeats too often";
inline constexpr StringView SBitmapSizeLimit = u"The bitmap is too large";
inline constexpr StringView SImageSizeLimit = u"The image is too large";
inline constexpr StringView SPictureLimit = u"The images of the document hold too many pixels";
inline constexpr StringView SReferenceDepthLimit = u"References are nested too deeply";
inline constexpr StringView SDrawnReferenceLimit =
    u"Too many elements are drawn through references";
inline constexpr StringView STilePixelLimit = u"Too many pixels are painted in tiles";

}  // namespace qxsvg
