// The elements of text.
#pragma once

#include "text/CustomText.h"
#include "text/TextElements.h"
