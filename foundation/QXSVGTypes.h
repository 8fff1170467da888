// The vocabulary of the system: enumerations, word tables, sets, units, options and messages, and
// the lengths that are written in them.
#pragma once

#include "foundation/Cursors.h"
#include "foundation/ElementTypes.h"
#include "foundation/Features.h"
#include "foundation/Keywords.h"
#include "foundation/Length.h"
#include "foundation/Limits.h"
#include "foundation/Lookups.h"
#include "foundation/Messages.h"
#include "foundation/Options.h"
#include "foundation/SelectorTokens.h"
#include "foundation/StyleProperties.h"
#include "foundation/Units.h"
