// The free functions of attribute texts: words to values, texts to values and values to texts.
#pragma once

#include "foundation/Limits.h"
#include "foundation/Lookups.h"
#include "foundation/Options.h"
#include "foundation/Parsers.h"
#include "foundation/SplitLines.h"
#include "foundation/Writers.h"
