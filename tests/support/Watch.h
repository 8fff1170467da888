// Counts notices of change.
#pragma once

#include <utility>

#include "runtime/Method.h"

namespace qxsvg::test {

// How often an object with a notice of change has told of one since the last look.
template <class T>
class TWatch {
 public:
  explicit TWatch(T& Target) { Target.SetOnChange(TNotifyMethod::To(FCount)); }
  int Take() { return std::exchange(FCount.Notices, 0); }

 private:
  struct TCount {
    int Notices = 0;
    void operator()(TPersistent*) { ++Notices; }
  } FCount;
};

}  // namespace qxsvg::test
