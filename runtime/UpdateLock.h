// The pairing of BeginUpdate and EndUpdate.
#pragma once

#include <exception>

namespace qxsvg {

// Holds back the change notices of Target, which must outlive the lock, until the end of the block,
// also where an exception ends it. EndUpdate runs the handlers of the host, which may throw: that
// exception leaves the block, unless another is on its way already.
template <class T>
class TUpdateLock {
 public:
  explicit TUpdateLock(T& Target) : FTarget(Target), FExceptions(std::uncaught_exceptions()) {
    FTarget.BeginUpdate();
  }
  TUpdateLock(const TUpdateLock&) = delete;
  TUpdateLock& operator=(const TUpdateLock&) = delete;
  ~TUpdateLock() noexcept(false) {
    if (std::uncaught_exceptions() == FExceptions) {
      FTarget.EndUpdate();
      return;
    }
    try {
      FTarget.EndUpdate();
    } catch (...) {
      // The block's own exception says what went wrong first.
    }
  }

 private:
  T& FTarget;
  int FExceptions;
};

}  // namespace qxsvg
