// What a paint object asks its element, and what the three kinds of them do alike.
#pragma once

#include <algorithm>
#include <cmath>

#include "foundation/Color.h"
#include "foundation/StyleProperties.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

// IsInherited comes in as false.
using TSVGIsInheritedEvent =
    TMethod<void(TPersistent* Sender, TSVGStyleProperty Property, bool& IsInherited)>;

namespace detail {

// An opacity as it is stored: 0 to 1, and 1 for what is no number.
inline float ClampOpacity(float Value) {
  return std::isnan(Value) ? 1.0f : std::clamp(Value, 0.0f, 1.0f);
}

}  // namespace detail

}  // namespace qxsvg
