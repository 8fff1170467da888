#include "runtime/Threads.h"

#include <algorithm>
#include <chrono>
#include <deque>
#include <memory>

#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

// A call on its way to the main thread.
struct TCall {
  std::function<void()> Work;
  const TThread* Owner = nullptr;
  bool IsAwaited = false;
  // Both for an awaited call: what it raised, and that it is over.
  std::exception_ptr Raised;
  TSimpleEvent Done;
};

using TCallPtr = std::shared_ptr<TCall>;

// What the threads share. It is never destroyed: a worker may outlive the program's statics.
struct TExchange {
  std::mutex Mutex;
  std::deque<TCallPtr> Calls;
  std::thread::id Main = std::this_thread::get_id();
  std::function<void()> Wake;
  // Tells of new calls and of threads that have ended.
  std::condition_variable Changed;
};

TExchange& Exchange() {
  static TExchange& Shared = *std::make_unique<TExchange>().release();
  return Shared;
}

// Notes the main thread while the library is loaded.
[[maybe_unused]] const TExchange& Noted = Exchange();

void Post(const TCallPtr& Call) {
  TExchange& Shared = Exchange();
  std::function<void()> Wake;
  {
    const std::lock_guard Lock(Shared.Mutex);
    Shared.Calls.push_back(Call);
    Wake = Shared.Wake;
  }
  Shared.Changed.notify_all();
  if (Wake) Wake();
}

TCallPtr TakeCall() {
  TExchange& Shared = Exchange();
  const std::lock_guard Lock(Shared.Mutex);
  if (Shared.Calls.empty()) return nullptr;
  TCallPtr Call = std::move(Shared.Calls.front());
  Shared.Calls.pop_front();
  return Call;
}

void RunCall(TCall& Call) {
  if (!Call.IsAwaited) return Call.Work();
  try {
    Call.Work();
  } catch (...) {
    Call.Raised = std::current_exception();
  }
  Call.Done.SetEvent();
}

void DropCallsOf(const TThread* Owner) {
  TExchange& Shared = Exchange();
  std::vector<TCallPtr> Dropped;  // destroyed after the lock: a capture may have a destructor
  const std::lock_guard Lock(Shared.Mutex);
  const auto Last = std::stable_partition(Shared.Calls.begin(), Shared.Calls.end(),
                                          [Owner](const TCallPtr& C) { return C->Owner != Owner; });
  Dropped.assign(std::make_move_iterator(Last), std::make_move_iterator(Shared.Calls.end()));
  Shared.Calls.erase(Last, Shared.Calls.end());
}

}  // namespace

std::thread::id MainThreadID() {
  TExchange& Shared = Exchange();
  const std::lock_guard Lock(Shared.Mutex);
  return Shared.Main;
}

bool IsMainThread() {
  return MainThreadID() == std::this_thread::get_id();
}

void SetMainThread() {
  TExchange& Shared = Exchange();
  const std::lock_guard Lock(Shared.Mutex);
  Shared.Main = std::this_thread::get_id();
}

void SetWakeMainThread(std::function<void()> Wake) {
  TExchange& Shared = Exchange();
  const std::lock_guard Lock(Shared.Mutex);
  std::swap(Shared.Wake, Wake);
}

bool CheckSynchronize(int TimeoutMS) {
  if (!IsMainThread()) throw EInvalidOperation(u"CheckSynchronize belongs to the main thread");
  TExchange& Shared = Exchange();
  std::size_t Count;
  {
    std::unique_lock Lock(Shared.Mutex);
    Shared.Changed.wait_for(Lock, std::chrono::milliseconds(std::max(TimeoutMS, 0)),
                            [&Shared] { return !Shared.Calls.empty(); });
    Count = Shared.Calls.size();
  }
  // Calls that these ones hand over wait for the next time, so that this one ends.
  bool HasRun = false;
  for (; Count > 0; --Count) {
    const TCallPtr Call = TakeCall();
    if (!Call) break;  // a nested pump was faster
    HasRun = true;
    RunCall(*Call);
  }
  return HasRun;
}

void TSimpleEvent::SetEvent() {
  // Notified under the lock: the one who waits may destroy the event as soon as it returns.
  const std::lock_guard Lock(FMutex);
  FIsSet = true;
  FChanged.notify_all();
}

void TSimpleEvent::ResetEvent() {
  const std::lock_guard Lock(FMutex);
  FIsSet = false;
}

bool TSimpleEvent::WaitFor(int TimeoutMS) {
  std::unique_lock Lock(FMutex);
  const auto IsSet = [this] { return FIsSet; };
  if (TimeoutMS < 0) {
    FChanged.wait(Lock, IsSet);
    return true;
  }
  return FChanged.wait_for(Lock, std::chrono::milliseconds(TimeoutMS), IsSet);
}

TThread::~TThread() {
  TerminateAndWait();
  DropCallsOf(this);
}

void TThread::Start() {
  if (IsStarted()) throw EInvalidOperation(u"The thread has been started already");
  FThread = std::thread([this] { Run(); });
}

void TThread::Run() noexcept {
  try {
    Execute();
  } catch (...) {
    FFatal = std::current_exception();
  }
  TExchange& Shared = Exchange();
  const std::lock_guard Lock(Shared.Mutex);
  FIsFinished = true;
  Shared.Changed.notify_all();
}

void TThread::Terminate() {
  FIsTerminated = true;
  TerminatedSet();
}

void TThread::WaitFor() {
  if (!FThread.joinable()) return;
  if (FThread.get_id() == std::this_thread::get_id())
    throw EInvalidOperation(u"A thread cannot wait for itself");
  while (IsMainThread()) {
    TExchange& Shared = Exchange();
    std::unique_lock Lock(Shared.Mutex);
    Shared.Changed.wait(Lock, [&] { return FIsFinished || !Shared.Calls.empty(); });
    if (FIsFinished) break;
    Lock.unlock();
    CheckSynchronize();
  }
  FThread.join();
}

void TThread::TerminateAndWait() noexcept {
  if (!FThread.joinable()) return;
  try {
    Terminate();
  } catch (...) {
    // Whoever ends a thread has nobody to tell.
  }
  for (bool IsOver = false; !IsOver;) try {
      WaitFor();
      IsOver = true;
    } catch (...) {
      // A call that was run in between; the thread itself is still to be waited for.
      IsOver = !FThread.joinable();
    }
}

void TThread::Synchronize(const std::function<void()>& Call) {
  if (IsMainThread()) return Call();
  const auto Posted = std::make_shared<TCall>();
  Posted->Work = [&Call] { Call(); };
  Posted->IsAwaited = true;
  Post(Posted);
  Posted->Done.WaitFor(-1);
  if (Posted->Raised) std::rethrow_exception(Posted->Raised);
}

void TThread::Queue(const TThread* Owner, std::function<void()> Call) {
  const auto Posted = std::make_shared<TCall>();
  Posted->Work = std::move(Call);
  Posted->Owner = Owner;
  Post(Posted);
}

}  // namespace qxsvg
