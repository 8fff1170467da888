// What all fuzz targets share: the input as text, and checks that end the run.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "runtime/String.h"

namespace qxsvg::fuzz {

// The bytes as UTF-8; broken sequences become replacement characters.
inline String TextOf(const std::uint8_t* Data, std::size_t Size) {
  return FromUtf8({reinterpret_cast<const char*>(Data), Size});
}

// Ends the run, so that the fuzzer keeps the input.
inline void Check(bool Holds, const char* What) {
  if (Holds) return;
  std::fprintf(stderr, "Does not hold: %s\n", What);
  std::abort();
}

inline void CheckFinite(double Value, const char* What) {
  Check(std::isfinite(Value), What);
}

// Whether Part is a stretch of Whole and not only equal to one.
inline bool IsWithin(StringView Part, StringView Whole) {
  return Part.empty() ||
         (Part.data() >= Whole.data() && Part.data() + Part.size() <= Whole.data() + Whole.size());
}

}  // namespace qxsvg::fuzz
