// workers_in_flight_test.cpp
// The count that a device waits for before it goes.
#include "acquisition/workers_in_flight.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <utility>

#include "acquisition/module_threads.h"

namespace {

constexpr std::chrono::seconds kDeadline{30};

// Whether the wait is over by the deadline; a wait that is not ends with the process.
bool WaitEnds(WorkersInFlight& workers) {
  std::packaged_task<void()> wait([&workers] { workers.WaitUntilNone(); });
  std::future<void> over = wait.get_future();
  ModuleThreads().Start(std::move(wait));
  return over.wait_for(kDeadline) == std::future_status::ready;
}

// At the end of the process no thread is on its way out: the leak sanitizer would not find what belongs to one.
struct Workers : testing::Test {
  ~Workers() override { ModuleThreads().WaitForAll(); }
};

TEST_F(Workers, NothingIsWaitedForWithoutAWorker) {
  WorkersInFlight workers;
  EXPECT_TRUE(WaitEnds(workers));
}

TEST_F(Workers, NothingIsWaitedForOnceTheWorkersAreOver) {
  WorkersInFlight workers;
  workers.Enter();
  workers.Enter();

  EXPECT_TRUE(WaitEnds(workers));
}

TEST_F(Workers, TheWaitLastsUntilTheLastWorkerHasFinished) {
  constexpr int kWorkers = 10;
  for (int round = 0; round < 20; ++round) {
    WorkersInFlight workers;
    std::atomic<int> finished{0};
    for (int i = 0; i < kWorkers; ++i) {
      ModuleThreads().Start([&finished, i, ticket = workers.Enter()] {
        for (int pause = 0; pause < 20 * i; ++pause) std::this_thread::yield();
        ++finished;
      });
    }

    workers.WaitUntilNone();

    EXPECT_EQ(finished, kWorkers);
  }
}

TEST_F(Workers, AWorkerIsCountedOnceHoweverOftenItsTicketMoves) {
  WorkersInFlight workers;
  std::optional<WorkersInFlight::Ticket> held(workers.Enter());
  std::atomic<bool> given_back{false};
  std::future<bool> waited_long_enough = std::async(std::launch::async, [&] {
    workers.WaitUntilNone();
    return given_back.load();
  });
  std::optional<WorkersInFlight::Ticket> moved(std::move(*held));
  held.reset();
  for (int pause = 0; pause < 100; ++pause) std::this_thread::yield();

  given_back = true;
  moved.reset();

  EXPECT_TRUE(waited_long_enough.get());
}

TEST_F(Workers, ATicketMayOutliveTheObjectThatItReportsTo) {
  auto workers = std::make_unique<WorkersInFlight>();
  std::optional<WorkersInFlight::Ticket> ticket(workers->Enter());

  workers.reset();
  ticket.reset();

  EXPECT_FALSE(ticket);
}

}  // namespace
