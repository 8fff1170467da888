// Numbers that stand for content.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace qxsvg {

inline void MixHash(std::uint64_t& Hash, std::uint64_t Value) {
  Hash = (Hash ^ Value) * 0x9e3779b97f4a7c15u;
  Hash ^= Hash >> 29;
}

inline void MixHash(std::uint64_t& Hash, std::span<const std::byte> Bytes) {
  MixHash(Hash, Bytes.size());
  while (!Bytes.empty()) {
    std::uint64_t Word = 0;
    const std::size_t Count = std::min(Bytes.size(), sizeof Word);
    std::memcpy(&Word, Bytes.data(), Count);
    MixHash(Hash, Word);
    Bytes = Bytes.subspan(Count);
  }
}

}  // namespace qxsvg
