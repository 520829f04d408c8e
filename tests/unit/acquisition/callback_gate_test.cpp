// callback_gate_test.cpp
// Who is let in, and that a device waits for those who are.
#include "acquisition/callback_gate.h"

#include <gtest/gtest.h>

#include <array>
#include <future>
#include <memory>
#include <optional>

namespace {

constexpr std::chrono::seconds kDeadline{30};

struct Gate : testing::Test {
  int owner = 0;
  int other_owner = 0;
  std::array<VmbFrame_t, 3> records{};
  std::array<VmbFrame_t, 3> other_records{};
  CallbackGate gate{&owner, records};
  CallbackGate other_gate{&other_owner, other_records};

  static void* Visited(const VmbFrame_t* frame) { return CallbackGate::Visit(frame).Owner(); }
};

TEST_F(Gate, AFrameIsTheOwnersWhoseRecordItIs) {
  records[1].context[0] = &other_owner;
  EXPECT_EQ(Visited(&records[0]), &owner);
  EXPECT_EQ(Visited(&records[1]), &owner) << "whatever its context says";
  EXPECT_EQ(Visited(&records[2]), &owner);
  EXPECT_EQ(Visited(&other_records[2]), &other_owner);
}

TEST_F(Gate, AnyOtherFrameIsTheOwnersThatItNames) {
  VmbFrame_t foreign{};
  EXPECT_EQ(Visited(&foreign), nullptr);
  foreign.context[0] = &other_owner;
  EXPECT_EQ(Visited(&foreign), &other_owner);
  foreign.context[0] = this;
  EXPECT_EQ(Visited(&foreign), nullptr);
}

TEST_F(Gate, NoFrameIsNobodys) { EXPECT_EQ(Visited(nullptr), nullptr); }

TEST_F(Gate, AClosedOneLetsNobodyIn) {
  VmbFrame_t foreign{};
  foreign.context[0] = &owner;
  gate.Close();
  EXPECT_EQ(Visited(&foreign), nullptr);
  EXPECT_EQ(Visited(&other_records[0]), &other_owner);
  gate.Close();
}

TEST_F(Gate, ClosingWaitsForThoseInside) {
  std::optional<CallbackGate::Visit> first(std::in_place, &records[0]);
  std::optional<CallbackGate::Visit> second(std::in_place, &records[1]);
  std::atomic<bool> left{false};
  std::future<bool> closed = std::async(std::launch::async, [&] {
    gate.Close();
    return left.load();
  });
  while (Visited(&records[2])) std::this_thread::yield();
  first.reset();
  left = true;
  second.reset();
  ASSERT_EQ(closed.wait_for(kDeadline), std::future_status::ready);
  EXPECT_TRUE(closed.get());
}

}  // namespace
