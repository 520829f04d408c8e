// command_queue.cpp
// What pages ask of a camera, until its thread has time for it.
#include "view/cameras/command_queue.h"

#include <utility>
#include <vector>

#include "base/failure.h"

namespace Kelcam {
namespace {

constexpr std::chrono::seconds kLongestWait{10};
constexpr std::size_t kMostCommands = 64;

CommandOutcome OutcomeOf(const CommandQueue::Work& work, ViewedCamera& camera) {
  try {
    return {CommandOutcome::Kind::kDone, work(camera), {}};
  } catch (const UsageError& error) {
    return {CommandOutcome::Kind::kRefused, {}, error.what()};
  } catch (...) {
    return {CommandOutcome::Kind::kFailed, {}, FaultOfCurrentException().Sentence()};
  }
}

}  // namespace

void CommandQueue::Push(Work work, Done done) {
  {
    const BMutexLock lock(m_mutex);
    if (m_commands.size() < kMostCommands) {
      m_commands.push_back(
          std::make_shared<Command>(Command{std::move(work), std::move(done), Clock::now() + kLongestWait}));
      m_changed.NotifyAll();
      return;
    }
  }
  done({CommandOutcome::Kind::kBusy, {}, "the camera has too much to do; try again later"});
}

void CommandQueue::Await(Clock::time_point deadline) {
  BMutexLock lock(m_mutex);
  while (m_commands.empty() && !m_ends && Clock::now() < deadline) m_changed.WaitUntil(lock, deadline);
}

CommandQueue::SharedCommand CommandQueue::Take() {
  const BMutexLock lock(m_mutex);
  m_under_way = nullptr;
  if (m_commands.empty()) return nullptr;
  m_under_way = m_commands.front();
  m_commands.pop_front();
  return m_under_way;
}

void CommandQueue::Answer(const SharedCommand& command, const CommandOutcome& outcome) {
  Done done;
  {
    const BMutexLock lock(m_mutex);
    done = std::exchange(command->done, nullptr);
  }
  if (done) done(outcome);
}

bool CommandQueue::DoAll(ViewedCamera& camera) {
  bool has_done = false;
  while (const SharedCommand command = Take()) {
    Answer(command, OutcomeOf(command->work, camera));
    has_done = true;
  }
  return has_done;
}

void CommandQueue::RefuseAll() {
  while (const SharedCommand command = Take()) {
    Answer(command, {CommandOutcome::Kind::kNotThere, {}, "the camera is not open"});
  }
}

void CommandQueue::End() {
  const BMutexLock lock(m_mutex);
  m_ends = true;
  m_changed.NotifyAll();
}

void CommandQueue::Expire(Clock::time_point now) {
  std::vector<SharedCommand> late;
  {
    const BMutexLock lock(m_mutex);
    for (const SharedCommand& command : m_commands) {
      if (command->deadline <= now) late.push_back(command);
    }
    std::erase_if(m_commands, [&](const SharedCommand& command) { return command->deadline <= now; });
    if (m_under_way && m_under_way->deadline <= now) late.push_back(m_under_way);
  }
  for (const SharedCommand& command : late) {
    Answer(command, {CommandOutcome::Kind::kTooLate, {}, "the camera did not come to it in 10 seconds"});
  }
}

}  // namespace Kelcam
