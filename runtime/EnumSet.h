// A set over an enumeration, as a fixed bit set that iterates in rising order.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace qxsvg {

// E must end in a value whose ordinal is below Bits. Asking for an ordinal of Bits or more answers
// that it is no member; adding one has no effect.
template <class E, std::size_t Bits = 64>
class TEnumSet {
  static constexpr std::size_t Words = (Bits + 63) / 64;

 public:
  constexpr TEnumSet() = default;
  constexpr TEnumSet(std::initializer_list<E> Members) {
    for (const E Member : Members) Include(Member);
  }
  // All values from First to Last, both included.
  static constexpr TEnumSet Range(E First, E Last) {
    TEnumSet Result;
    for (auto I = static_cast<std::size_t>(First); I <= static_cast<std::size_t>(Last); ++I)
      Result.Include(static_cast<E>(I));
    return Result;
  }
  static constexpr TEnumSet FromMask(std::uint64_t Mask) {
    TEnumSet Result;
    Result.FWords[0] = Mask;
    return Result;
  }
  // The members of ordinal 0 to 63 as a bit mask.
  constexpr std::uint64_t Mask() const { return FWords[0]; }

  constexpr bool Has(E Member) const {
    const auto I = static_cast<std::size_t>(Member);
    return I < Bits && (FWords[I / 64] >> (I % 64) & 1) != 0;
  }
  constexpr void Include(E Member) {
    const auto I = static_cast<std::size_t>(Member);
    if (I < Bits) FWords[I / 64] |= std::uint64_t{1} << (I % 64);
  }
  constexpr void Exclude(E Member) {
    const auto I = static_cast<std::size_t>(Member);
    if (I < Bits) FWords[I / 64] &= ~(std::uint64_t{1} << (I % 64));
  }
  constexpr void Set(E Member, bool IsMember) { IsMember ? Include(Member) : Exclude(Member); }
  constexpr bool IsEmpty() const { return *this == TEnumSet(); }
  constexpr std::size_t Count() const {
    std::size_t Result = 0;
    for (const auto Word : FWords) Result += static_cast<std::size_t>(std::popcount(Word));
    return Result;
  }

  friend constexpr TEnumSet operator+(TEnumSet A, const TEnumSet& B) {
    for (std::size_t I = 0; I < Words; ++I) A.FWords[I] |= B.FWords[I];
    return A;
  }
  friend constexpr TEnumSet operator-(TEnumSet A, const TEnumSet& B) {
    for (std::size_t I = 0; I < Words; ++I) A.FWords[I] &= ~B.FWords[I];
    return A;
  }
  friend constexpr TEnumSet operator*(TEnumSet A, const TEnumSet& B) {
    for (std::size_t I = 0; I < Words; ++I) A.FWords[I] &= B.FWords[I];
    return A;
  }
  friend constexpr bool operator==(const TEnumSet&, const TEnumSet&) = default;

  class Iterator {
   public:
    constexpr Iterator(const TEnumSet& Set, std::size_t At) : FSet(Set), FAt(At) { Settle(); }
    constexpr E operator*() const { return static_cast<E>(FAt); }
    constexpr Iterator& operator++() {
      ++FAt;
      Settle();
      return *this;
    }
    constexpr bool operator!=(const Iterator& Other) const { return FAt != Other.FAt; }

   private:
    constexpr void Settle() {
      while (FAt < Bits && !FSet.Has(static_cast<E>(FAt))) ++FAt;
    }
    const TEnumSet& FSet;
    std::size_t FAt;
  };
  constexpr Iterator begin() const { return Iterator(*this, 0); }
  constexpr Iterator end() const { return Iterator(*this, Bits); }

 private:
  std::array<std::uint64_t, Words> FWords{};
};

}  // namespace qxsvg
