// Worker threads and the way back to the main thread.
//
// The main thread is the one that started the program (more exactly: loaded the library); a host
// whose windows live elsewhere says so with SetMainThread. Work is handed to it through one queue
// that it empties with CheckSynchronize: a headless program calls that itself, a window system's
// adapter calls it from the event loop, woken by the hook of SetWakeMainThread.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

#include "runtime/Export.h"

namespace qxsvg {

using TCriticalSection = std::recursive_mutex;

QXSVG_API std::thread::id MainThreadID();
QXSVG_API bool IsMainThread();
// Makes the calling thread the main one. To be called before other threads hand work over.
QXSVG_API void SetMainThread();
// Wake is called, on the thread that hands work over and with no lock held, when the main thread
// should call CheckSynchronize soon. Null for none.
QXSVG_API void SetWakeMainThread(std::function<void()> Wake);

// Runs, on the main thread, what was handed over before the call; waits up to TimeoutMS for
// something to come when there is nothing. True when anything was run. EInvalidOperation on
// another thread. What a queued call raises passes to the caller, and the calls behind it stay in
// the queue; what a synchronized call raises goes to the thread that waits for it.
QXSVG_API bool CheckSynchronize(int TimeoutMS = 0);

// An event that stays set until it is reset.
class QXSVG_API TSimpleEvent {
 public:
  void SetEvent();
  void ResetEvent();
  // True when the event is set, at once or within the time; a negative time waits without end.
  bool WaitFor(int TimeoutMS);

 private:
  std::mutex FMutex;
  std::condition_variable FChanged;
  bool FIsSet = false;
};

// The numbering is the platform's; the standard library cannot set it, so it is a wish that a host
// may read.
enum class TThreadPriority : std::uint8_t {
  tpIdle,
  tpLowest,
  tpLower,
  tpNormal,
  tpHigher,
  tpHighest,
  tpTimeCritical
};

// A thread that runs Execute once.
//
// A thread starts in Start and must not outlive the parts of its object: a class that overrides
// Execute calls Start when its constructor is done (unless it was created suspended) and
// TerminateAndWait first thing in its destructor.
class QXSVG_API TThread {
 public:
  TThread() = default;
  TThread(const TThread&) = delete;
  TThread& operator=(const TThread&) = delete;
  virtual ~TThread();

  // Once; a second call raises EInvalidOperation.
  void Start();
  // Asks the thread to end: sets Terminated and calls TerminatedSet, both on the calling thread.
  void Terminate();
  // Waits for the end of Execute. On the main thread, calls that the worker synchronizes are run
  // meanwhile, so that the two never wait for each other. Returns at once for a thread that never
  // started.
  void WaitFor();
  bool IsStarted() const { return FThread.joinable() || FIsFinished; }
  bool IsFinished() const { return FIsFinished; }
  // What ended Execute early, once the thread has finished; null otherwise.
  std::exception_ptr FatalException() const { return FIsFinished ? FFatal : nullptr; }

  TThreadPriority Priority() const { return FPriority; }
  void SetPriority(TThreadPriority Priority) { FPriority = Priority; }

  // Runs Call on the main thread and waits for it; on the main thread itself runs it at once. What
  // Call raises is raised here.
  static void Synchronize(const std::function<void()>& Call);
  // Hands Call to the main thread without waiting; also from the main thread it runs later. Calls
  // queued for a thread (null for none) are dropped when that thread's object goes.
  static void Queue(const TThread* Owner, std::function<void()> Call);

 protected:
  virtual void Execute() = 0;
  // Called by Terminate, for a thread that sleeps and has to be woken.
  virtual void TerminatedSet() {}
  bool Terminated() const { return FIsTerminated; }
  // For destructors: Terminate and WaitFor, swallowing what they raise.
  void TerminateAndWait() noexcept;

 private:
  void Run() noexcept;

  std::thread FThread;
  std::exception_ptr FFatal;
  std::atomic<bool> FIsTerminated = false, FIsFinished = false;
  std::atomic<TThreadPriority> FPriority = TThreadPriority::tpNormal;
};

}  // namespace qxsvg
