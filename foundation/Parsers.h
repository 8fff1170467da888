// The parsers of every attribute's text.
#pragma once

#include "foundation/ParseColor.h"
#include "foundation/ParseGeometry.h"
#include "foundation/ParseInherit.h"
#include "foundation/ParseKeywords.h"
#include "foundation/ParseLengthObjects.h"
#include "foundation/ParseLengths.h"
#include "foundation/ParseNumbers.h"
#include "foundation/ParseText.h"
#include "foundation/ParseTokens.h"
#include "foundation/ParseTransform.h"
#include "foundation/ParseURI.h"
