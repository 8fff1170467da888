// Documents for tests: read from a text when they are made, and a count of their changes.
#pragma once

#include "document/Document.h"

namespace qxsvg::test {

struct TLoaded : TSVGDocument {
  explicit TLoaded(std::string_view Text) { LoadFromText(Text); }
};

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
