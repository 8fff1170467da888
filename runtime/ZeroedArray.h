// A large array of plain values that begins as zeroes.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "runtime/Export.h"

namespace qxsvg {

// Bytes of zeroes, aligned for every plain type; throws std::bad_alloc when there are none. From
// 2 MiB on the system is asked for large pages, where it has them: pixels are walked over row by
// row, each in pages of its own, and the first touch of small pages takes longer than what is
// drawn there.
QXSVG_API void* QXAllocateZeroed(std::size_t Bytes);
// Bytes is the number that the memory was asked for with; Memory may be null.
QXSVG_API void QXFreeZeroed(void* Memory, std::size_t Bytes) noexcept;

// Owns the values; its size does not change but by assignment.
template <class T>
class TZeroedArray {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  TZeroedArray() = default;
  explicit TZeroedArray(std::size_t Count)
      : FData(static_cast<T*>(Count == 0 ? nullptr : QXAllocateZeroed(Count * sizeof(T)))),
        FCount(Count) {}
  TZeroedArray(TZeroedArray&& Other) noexcept
      : FData(std::exchange(Other.FData, nullptr)), FCount(std::exchange(Other.FCount, 0)) {}
  TZeroedArray& operator=(TZeroedArray&& Other) noexcept {
    std::swap(FData, Other.FData);
    std::swap(FCount, Other.FCount);
    return *this;
  }
  ~TZeroedArray() { QXFreeZeroed(FData, FCount * sizeof(T)); }

  T* data() { return FData; }
  const T* data() const { return FData; }
  std::size_t size() const { return FCount; }
  T* begin() { return FData; }
  T* end() { return FData + FCount; }

 private:
  T* FData = nullptr;
  std::size_t FCount = 0;
};

}  // namespace qxsvg
