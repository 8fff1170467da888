// The slots of a keyed table: small indices into its entries, one, two or four bytes each by need.
#pragma once

#include <cstdint>
#include <cstring>
#include <memory>

namespace qxsvg {

class SlotArray {
 public:
  static constexpr std::uint32_t Empty = 0xFFFFFFFF;

  SlotArray() = default;
  // Size is zero or a power of two; all slots start empty.
  explicit SlotArray(std::size_t Size)
      : FBytes(Size == 0 ? nullptr : new std::uint8_t[Size * WidthFor(Size)]), FSize(Size) {
    Clear();
  }
  SlotArray(const SlotArray& Other) : SlotArray(Other.FSize) {
    if (FSize > 0) std::memcpy(FBytes.get(), Other.FBytes.get(), FSize * WidthFor(FSize));
  }
  SlotArray(SlotArray&& Other) noexcept : FBytes(std::move(Other.FBytes)), FSize(Other.FSize) {
    Other.FSize = 0;
  }
  SlotArray& operator=(SlotArray Other) noexcept {
    std::swap(FBytes, Other.FBytes);
    std::swap(FSize, Other.FSize);
    return *this;
  }

  std::size_t Size() const { return FSize; }
  void Clear() {
    if (FSize > 0) std::memset(FBytes.get(), 0xFF, FSize * WidthFor(FSize));
  }
  // The index held, or Empty.
  std::uint32_t Get(std::size_t Slot) const {
    if (FSize <= ByteSlots) {
      const std::uint8_t Index = FBytes[Slot];
      return Index == 0xFF ? Empty : Index;
    }
    if (FSize <= WordSlots) {
      std::uint16_t Index;
      std::memcpy(&Index, FBytes.get() + Slot * 2, 2);
      return Index == 0xFFFF ? Empty : Index;
    }
    std::uint32_t Index;
    std::memcpy(&Index, FBytes.get() + Slot * 4, 4);
    return Index;
  }
  void Set(std::size_t Slot, std::uint32_t Index) {
    if (FSize <= ByteSlots) {
      FBytes[Slot] = static_cast<std::uint8_t>(Index);
    } else if (FSize <= WordSlots) {
      const auto Short = static_cast<std::uint16_t>(Index);
      std::memcpy(FBytes.get() + Slot * 2, &Short, 2);
    } else {
      std::memcpy(FBytes.get() + Slot * 4, &Index, 4);
    }
  }

 private:
  // At three quarters full the largest index stays below the value that marks an empty slot.
  static constexpr std::size_t ByteSlots = 256, WordSlots = 65536;
  static std::size_t WidthFor(std::size_t Size) {
    return Size <= ByteSlots ? 1 : Size <= WordSlots ? 2 : 4;
  }
  std::unique_ptr<std::uint8_t[]> FBytes;
  std::size_t FSize = 0;
};

}  // namespace qxsvg
