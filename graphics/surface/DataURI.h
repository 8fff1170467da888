// Pictures that a document carries in its own text.
#pragma once

#include <memory>

#include "graphics/surface/Bitmap.h"

namespace qxsvg {

// Loads the picture of a URI such as "data:image/png;base64,iVBORw0..." into Bitmap, which is made
// where it is null. A text that is no data URI, or whose data is no picture in base64, leaves the
// bitmap as it was. Raises EInvalidGraphicOperation for a picture that cannot be decoded.
QXSVG_API void LoadBitmapFromDataURI(StringView Text, std::unique_ptr<TQXGPBitmap>& Bitmap);

}  // namespace qxsvg
