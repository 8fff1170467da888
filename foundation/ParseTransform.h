// Transforms (SVG 1.1 chapter 7.6).
#pragma once

#include "foundation/Geometry.h"
#include "runtime/String.h"

namespace qxsvg {

// A list of transforms, the last of which acts on a point first. A blank text is the identity; a
// transform without its closing bracket, and all text behind it, is left out. Raises ESVGException
// for an unknown name or a wrong count of numbers and EConvertError for what is no number. The
// entries of the result are finite.
QXSVG_API TMatrix ParseTransformation(StringView Text);

// The numbers between the brackets of each transform. Angles are degrees. Each raises EConvertError
// for what is no number; all but the skews raise ESVGException for a wrong count.
QXSVG_API TMatrix ParseMatrix(StringView Text);           // a b c d e f
QXSVG_API TMatrix ParseTranslateMatrix(StringView Text);  // tx [ty], 0 when left out
QXSVG_API TMatrix ParseScaleMatrix(StringView Text);      // sx [sy], sx when left out
QXSVG_API TMatrix ParseRotateMatrix(StringView Text);     // angle [cx cy]
// Take the first number and ignore the others; without any they give the identity.
QXSVG_API TMatrix ParseSkewXMatrix(StringView Text);
QXSVG_API TMatrix ParseSkewYMatrix(StringView Text);

}  // namespace qxsvg
