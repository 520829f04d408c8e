// frame_description_test.cpp
// The line about what the library delivered.
#include "acquisition/frame_description.h"
#include "VimbaC.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace {

void* Context(std::uint64_t id) { return reinterpret_cast<void*>(static_cast<std::uintptr_t>(id)); }

VmbFrame_t FrameWith(VmbFrameStatus_t status, VmbFrameFlags_t flags) {
  VmbFrame_t frame{};
  frame.context[0] = Context(99);
  frame.context[1] = Context(17);
  frame.receiveStatus = status;
  frame.receiveFlags = flags;
  frame.width = 2464;
  frame.height = 2056;
  frame.offsetX = 8;
  frame.offsetY = 4;
  frame.frameID = 3;
  frame.timestamp = 123456789;
  return frame;
}

TEST(FrameDescription, NamesEveryStatus) {
  struct Row {
    VmbFrameStatus_t status;
    const wchar_t* text;
  };
  const Row rows[] = {{0, L"Frame context id = 17 FrameStatusComplete"},
                      {VmbFrameStatusIncomplete, L"Frame context id = 17 FrameStatusInComplete"},
                      {VmbFrameStatusTooSmall, L"Frame context id = 17 FrameStatusTooSmall"},
                      {VmbFrameStatusInvalid, L"Frame context id = 17 FrameStatusInvalid"},
                      {-4, L"Frame context id = 17unknown FrameStatus"},
                      {1, L"Frame context id = 17unknown FrameStatus"},
                      {std::numeric_limits<VmbFrameStatus_t>::min(), L"Frame context id = 17unknown FrameStatus"}};
  for (const Row& row : rows) EXPECT_EQ(DescribeFrame(FrameWith(row.status, 0)).Str(), row.text);
}

TEST(FrameDescription, TellsOnlyWhatTheFlagsVouchFor) {
  struct Row {
    VmbFrameFlags_t flags;
    const wchar_t* text;
  };
  const Row rows[] = {{1, L"Frame context id = 17 FrameStatusComplete FrameDimension = 2464x2056"},
                      {2, L"Frame context id = 17 FrameStatusComplete FrameOffset = 8x4"},
                      {4, L"Frame context id = 17 FrameStatusComplete FrameID = 3"},
                      {8, L"Frame context id = 17 FrameStatusComplete Timestamp = 123456789"},
                      {16, L"Frame context id = 17 FrameStatusComplete"},
                      {9,
                       L"Frame context id = 17 FrameStatusComplete FrameDimension = 2464x2056"
                       L" Timestamp = 123456789"}};
  for (const Row& row : rows) EXPECT_EQ(DescribeFrame(FrameWith(0, row.flags)).Str(), row.text);
}

TEST(FrameDescription, TellsEverythingInAFixedOrder) {
  EXPECT_EQ(DescribeFrame(FrameWith(-9, 15)).Str(),
            L"Frame context id = 17unknown FrameStatus FrameDimension = 2464x2056 FrameOffset = 8x4 FrameID = 3"
            L" Timestamp = 123456789");
}

TEST(FrameDescription, PrintsTheHighestNumbersUnsigned) {
  VmbFrame_t frame = FrameWith(0, 15);
  frame.context[1] = Context(std::numeric_limits<std::uint64_t>::max());
  frame.width = frame.height = frame.offsetX = frame.offsetY = std::numeric_limits<std::uint32_t>::max();
  frame.frameID = frame.timestamp = std::numeric_limits<std::uint64_t>::max();

  EXPECT_EQ(DescribeFrame(frame).Str(),
            L"Frame context id = 18446744073709551615 FrameStatusComplete FrameDimension = 4294967295x4294967295"
            L" FrameOffset = 4294967295x4294967295 FrameID = 18446744073709551615 Timestamp = 18446744073709551615");
}

TEST(FrameDescription, TheContextIdIsTheSecondContextValue) { EXPECT_EQ(FrameContextId(FrameWith(0, 0)), 17U); }

}  // namespace
