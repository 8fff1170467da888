#include "document/LongText.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace qxsvg {

namespace {

bool Narrow(StringView Text, unsigned char* Target) {
  constexpr std::size_t Step = 16;
  std::size_t Done = 0;
  // Over copies of fixed size, which compilers turn into a few instructions.
  for (; Done + Step <= Text.size(); Done += Step) {
    std::array<char16_t, Step> Units;
    std::array<unsigned char, Step> Bytes;
    std::memcpy(Units.data(), Text.data() + Done, sizeof Units);
    unsigned All = 0;
    for (std::size_t I = 0; I < Step; ++I) {
      All |= Units[I];
      Bytes[I] = static_cast<unsigned char>(Units[I]);
    }
    if (All > 0xFF) return false;
    std::memcpy(Target + Done, Bytes.data(), Step);
  }
  for (; Done < Text.size(); ++Done) {
    if (Text[Done] > 0xFF) return false;
    Target[Done] = static_cast<unsigned char>(Text[Done]);
  }
  return true;
}

}  // namespace

TLongText::TLongText(std::size_t Size)
    : FSize(Size), FNarrow(std::make_unique_for_overwrite<unsigned char[]>(Size)) {}

std::unique_ptr<TLongText> TLongText::From(StringView Text) {
  std::unique_ptr<TLongText> Result(new TLongText(Text.size()));
  if (!Narrow(Text, Result->FNarrow.get())) return nullptr;
  return Result;
}

StringView TLongText::View() const {
  if (!FWide) {
    auto Wide = std::make_unique_for_overwrite<char16_t[]>(FSize);
    std::copy_n(FNarrow.get(), FSize, Wide.get());
    FWide = std::move(Wide);
    FNarrow.reset();
  }
  return {FWide.get(), FSize};
}

}  // namespace qxsvg
