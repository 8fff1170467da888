// Tables that turn the values of an enumeration into words and back.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <stdexcept>

#include "runtime/String.h"

namespace qxsvg {

// The number of values of an enumeration that counts from 0 and ends with Last.
template <class E>
constexpr std::size_t CountUpTo(E Last) {
  return static_cast<std::size_t>(Last) + 1;
}

constexpr std::size_t Ordinal(auto Value) {
  return static_cast<std::size_t>(Value);
}

// Whether no word stands twice; the empty word may, as the word of values that are never written.
template <std::size_t N>
constexpr bool HasNoDuplicates(const std::array<StringView, N>& Words) {
  for (std::size_t I = 0; I < N; ++I)
    for (std::size_t J = 0; J < I; ++J)
      if (!Words[I].empty() && Words[I] == Words[J]) return false;
  return true;
}

// The word table of the enumeration that ends with Last: one word a value, in their order.
template <auto Last, class... Texts>
consteval std::array<StringView, sizeof...(Texts)> WordTable(const Texts&... Words) {
  static_assert(sizeof...(Texts) == CountUpTo(Last), "one word for each value of the enumeration");
  const std::array<StringView, sizeof...(Texts)> Table{StringView(Words)...};
  if (!HasNoDuplicates(Table)) throw std::logic_error("a word stands twice");
  return Table;
}

// A column of a table of rows, which have to stand in the order of their enumerators.
template <class Row, std::size_t N, class Value>
consteval std::array<Value, N> Column(const std::array<Row, N>& Rows, Value Row::*Member) {
  std::array<Value, N> Result{};
  for (std::size_t I = 0; I < N; ++I) Result[I] = Rows[I].*Member;
  return Result;
}

template <class Row, std::size_t N, class E>
consteval bool IsInOrder(const std::array<Row, N>& Rows, E Row::*Member, E Last) {
  for (std::size_t I = 0; I < N; ++I)
    if (Ordinal(Rows[I].*Member) != I) return false;
  return N == CountUpTo(Last);
}

// The set of the enumerators whose rows have one of the marks.
template <class Set, class Row, std::size_t N, class E, class Marks>
consteval Set SetOfRows(const std::array<Row, N>& Rows, E Row::*Member, Marks Row::*Field,
                        Marks Wanted) {
  Set Result;
  for (const Row& R : Rows)
    if ((R.*Field & Wanted) != 0) Result.Include(R.*Member);
  return Result;
}

// The index of the first equal entry from index First, or 0 without one. Exact and case-sensitive.
template <class T, std::size_t N>
constexpr std::size_t IndexOf(const std::array<T, N>& Table, const T& Value,
                              std::size_t First = 0) {
  for (std::size_t I = First; I < N; ++I)
    if (Table[I] == Value) return I;
  return 0;
}

// A hash index over a word table, made by the compiler: the answers of IndexOf in constant time,
// for the tables that every node and every attribute of a document is looked up in.
template <std::size_t N>
class TWordIndex {
  static_assert(N < 255);
  static constexpr std::size_t Slots = std::bit_ceil(N * 4);

 public:
  consteval explicit TWordIndex(const std::array<StringView, N>& Table) : FTable(Table) {
    for (std::size_t I = 0; I < N; ++I)
      if (!Table[I].empty()) Insert(I);
  }

  // The index of Word, or 0 without one; the empty word gives 0.
  std::size_t IndexOf(StringView Word) const {
    if (Word.empty()) return 0;
    for (std::size_t At = Hash(Word);; ++At) {
      const std::size_t Index = FSlots[At % Slots];
      if (Index == 0 || IsSame(FTable[Index], Word)) return Index;
    }
  }

  // The most words that a look-up compares, hit or miss.
  consteval std::size_t LongestProbe() const {
    std::size_t Longest = 0, Run = 0;
    for (std::size_t I = 0; I < 2 * Slots; ++I) {
      Run = FSlots[I % Slots] ? Run + 1 : 0;
      Longest = std::max(Longest, Run);
    }
    return Longest;
  }

 private:
  // The library compares UTF-16 one unit at a time.
  static bool IsSame(StringView A, StringView B) {
    return A.size() == B.size() && std::memcmp(A.data(), B.data(), A.size() * sizeof(A[0])) == 0;
  }
  // Names of the format differ in length, at the ends or in the middle: a few characters tell
  // them apart without reading the whole word.
  static constexpr std::size_t Hash(StringView Word) {
    const std::size_t Size = Word.size();
    std::uint32_t Result = static_cast<std::uint32_t>(Size) * 0x9e3779b1u;
    Result = (Result ^ Word[0]) * 0x85ebca6bu;
    Result = (Result ^ Word[Size / 2]) * 0xc2b2ae35u;
    Result = (Result ^ Word[Size - 1]) * 0x27d4eb2fu;
    Result = (Result ^ Word[Size * 3 / 4]) * 0x165667b1u;
    return Result >> 16;
  }
  consteval void Insert(std::size_t Index) {
    if (Index == 0) throw std::logic_error("index 0 is for no word");
    std::size_t At = Hash(FTable[Index]);
    while (FSlots[At % Slots] != 0) ++At;
    FSlots[At % Slots] = static_cast<std::uint8_t>(Index);
  }

  std::array<StringView, N> FTable;
  std::array<std::uint8_t, Slots> FSlots{};
};

}  // namespace qxsvg
