// A long text that is kept for its own sake and seldom looked at.
#pragma once

#include <cstddef>
#include <memory>

#include "runtime/String.h"

namespace qxsvg {

// The path data that a style keeps as it was written is most of what a drawing holds. It takes one
// byte a character here for as long as nobody asks for it.
class TLongText {
 public:
  // Shorter texts are not worth a piece of memory of their own.
  static constexpr std::size_t LeastSize = 512;

  // Null where Text has characters that need more than a byte.
  static std::unique_ptr<TLongText> From(StringView Text);

  // Stays valid as long as the object.
  StringView View() const;

 private:
  explicit TLongText(std::size_t Size);

  std::size_t FSize;
  mutable std::unique_ptr<unsigned char[]> FNarrow;
  mutable std::unique_ptr<char16_t[]> FWide;
};

}  // namespace qxsvg
