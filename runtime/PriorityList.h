// A list that hands out its entries by rising priority.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qxsvg {

// T is what the list holds, usually a pointer to something that the list does not own. Entries of
// equal priority keep the order of adding.
template <class T>
class TPriorityList {
 public:
  void Add(T Object, std::int32_t Priority) {
    const auto At =
        std::upper_bound(FEntries.begin(), FEntries.end(), Priority,
                         [](std::int32_t P, const TEntry& Entry) { return P < Entry.Priority; });
    FEntries.insert(At, TEntry{std::move(Object), Priority});
  }
  std::size_t Count() const { return FEntries.size(); }
  const T& operator[](std::size_t Index) const { return FEntries[Index].Object; }
  std::int32_t Priority(std::size_t Index) const { return FEntries[Index].Priority; }
  // Keeps its memory, so that one list serves many elements in a row.
  void Clear() { FEntries.clear(); }

 private:
  struct TEntry {
    T Object;
    std::int32_t Priority;
  };
  std::vector<TEntry> FEntries;
};

}  // namespace qxsvg
