// Worker threads and the main thread's queue; meant to be run under the thread sanitizer too.
#include "runtime/Threads.h"

#include <gtest/gtest.h>

#include <chrono>
#include <vector>

#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

using std::chrono::steady_clock;

class TWorker : public TThread {
 public:
  explicit TWorker(std::function<void(TWorker&)> Work) : FWork(std::move(Work)) { Start(); }
  ~TWorker() override { TerminateAndWait(); }
  using TThread::Terminated;
  TSimpleEvent Wake;

 protected:
  void Execute() override { FWork(*this); }
  void TerminatedSet() override { Wake.SetEvent(); }

 private:
  std::function<void(TWorker&)> FWork;
};

TEST(Threads, SynchronizeRunsOnTheMainThreadWhileItWaits) {
  int Total = 0;  // without a lock: only the main thread touches it
  {
    std::vector<std::unique_ptr<TWorker>> Workers;
    for (int I = 0; I < 4; ++I)
      Workers.push_back(std::make_unique<TWorker>([&Total](TWorker&) {
        for (int J = 0; J < 50; ++J)
          TThread::Synchronize([&Total] {
            EXPECT_TRUE(IsMainThread());
            ++Total;
          });
      }));
    for (const auto& Worker : Workers) Worker->WaitFor();
  }
  EXPECT_EQ(Total, 200);
}

TEST(Threads, WhatASynchronizedCallRaisesGoesToTheWorker) {
  TWorker Worker([](TWorker&) {
    EXPECT_THROW(TThread::Synchronize([] { throw EAbort(u"no"); }), EAbort);
    throw EInvalidOperation(u"fatal");
  });
  Worker.WaitFor();
  EXPECT_TRUE(Worker.IsFinished());
  EXPECT_THROW(std::rethrow_exception(Worker.FatalException()), EInvalidOperation);
  EXPECT_THROW(Worker.Start(), EInvalidOperation);
}

TEST(Threads, QueuedCallsRunInOrderAndLater) {
  std::vector<int> Order;
  TThread::Queue(nullptr, [&Order] {
    Order.push_back(1);
    TThread::Queue(nullptr, [&Order] { Order.push_back(3); });
  });
  TThread::Queue(nullptr, [&Order] { Order.push_back(2); });
  EXPECT_TRUE(Order.empty());
  EXPECT_TRUE(CheckSynchronize());
  EXPECT_EQ(Order, (std::vector{1, 2}));
  EXPECT_TRUE(CheckSynchronize());
  EXPECT_EQ(Order, (std::vector{1, 2, 3}));
  EXPECT_FALSE(CheckSynchronize());
}

TEST(Threads, AQueuedCallThatRaisesLeavesTheOthers) {
  bool HasRun = false;
  TThread::Queue(nullptr, [] { throw EAbort(u"stop"); });
  TThread::Queue(nullptr, [&HasRun] { HasRun = true; });
  EXPECT_THROW(CheckSynchronize(), EAbort);
  EXPECT_FALSE(HasRun);
  EXPECT_TRUE(CheckSynchronize());
  EXPECT_TRUE(HasRun);
}

TEST(Threads, CallsOfADeadThreadAreDropped) {
  bool HasRun = false;
  {
    TWorker Worker(
        [&HasRun](TWorker& Self) { TThread::Queue(&Self, [&HasRun] { HasRun = true; }); });
    while (!Worker.IsFinished()) std::this_thread::yield();
  }
  CheckSynchronize();
  EXPECT_FALSE(HasRun);
}

TEST(Threads, TerminateWakesASleeper) {
  const auto Begin = steady_clock::now();
  {
    TWorker Worker([](TWorker& Self) {
      while (!Self.Terminated()) Self.Wake.WaitFor(20'000);
    });
  }
  EXPECT_LT(steady_clock::now() - Begin, std::chrono::seconds(10));
}

TEST(Threads, CheckSynchronizeWaitsForWorkToCome) {
  TWorker Worker([](TWorker&) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    TThread::Queue(nullptr, [] {});
  });
  EXPECT_TRUE(CheckSynchronize(10'000));
  EXPECT_FALSE(CheckSynchronize(1));
}

TEST(Threads, TheWakeHookIsCalledByTheOneWhoHandsOver) {
  std::atomic<int> Wakes = 0;
  SetWakeMainThread([&Wakes] {
    EXPECT_FALSE(IsMainThread());
    ++Wakes;
  });
  TWorker Worker([](TWorker&) { TThread::Synchronize([] {}); });
  Worker.WaitFor();
  SetWakeMainThread(nullptr);
  EXPECT_EQ(Wakes, 1);
}

TEST(Threads, OnlyTheMainThreadPumps) {
  TWorker Worker([](TWorker&) { EXPECT_THROW(CheckSynchronize(), EInvalidOperation); });
  Worker.WaitFor();
}

TEST(Threads, EventStaysSetUntilReset) {
  TSimpleEvent Event;
  EXPECT_FALSE(Event.WaitFor(1));
  Event.SetEvent();
  EXPECT_TRUE(Event.WaitFor(0) && Event.WaitFor(-1));
  Event.ResetEvent();
  EXPECT_FALSE(Event.WaitFor(0));
}

}  // namespace
}  // namespace qxsvg
