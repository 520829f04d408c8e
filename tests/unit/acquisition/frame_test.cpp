// frame_test.cpp
// A frame's private copy, and the memory that such copies are made in.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <future>
#include <limits>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include "VimbaC.h"
#include "acquisition/frame_blocks.h"
#include "acquisition/frame_queue.h"

namespace {

using BFrame = BFrameQueue::BFrame;

constexpr std::size_t kMebibyte = 1U << 20U;
constexpr std::chrono::seconds kDeadline{30};

TEST(Frame, CarriesWhatItWasMadeFrom) {
  constexpr std::uint64_t kId = std::numeric_limits<std::uint64_t>::max();
  BFrame frame(5, VmbPixelFormatBayerRG8, kId, L"DEV_000F31");
  for (std::uint8_t i = 0; i < 5; ++i) frame.Data()[i] = i;

  EXPECT_EQ(frame.PixelFormat(), static_cast<std::uint32_t>(VmbPixelFormatBayerRG8));
  EXPECT_EQ(frame.Id(), kId);
  EXPECT_EQ(frame.CameraId().Str(), L"DEV_000F31");
  EXPECT_EQ(std::vector<std::uint8_t>(frame.Data(), frame.Data() + 5), (std::vector<std::uint8_t>{0, 1, 2, 3, 4}));
}

TEST(Frame, ItsPixelFormatCanBeChanged) {
  BFrame frame(1, VmbPixelFormatMono8, 0, L"");

  frame.SetPixelFormat(VmbPixelFormatYuv422);

  EXPECT_EQ(frame.PixelFormat(), static_cast<std::uint32_t>(VmbPixelFormatYuv422));
}

TEST(Frame, OfNoBytesCanBeMade) {
  const BFrame frame(0, VmbPixelFormatMono8, 3, L"DEV");
  EXPECT_EQ(frame.Id(), 3U);
}

TEST(Frame, EverythingButItsDestructorIsTheHosts) {
  const BFrame frame(16, VmbPixelFormatMono8, 0, L"DEV");
  const BSmartObj plain;

  EXPECT_EQ(frame.AllocatedMemory(), plain.AllocatedMemory());
  EXPECT_EQ(frame.ArchiveName().Str(), plain.ArchiveName().Str());
  EXPECT_EQ(frame.Properties().Str(), plain.Properties().Str());
  EXPECT_EQ(frame.Version(), plain.Version());
  EXPECT_TRUE(frame.VerifyObj());
}

TEST(Frame, GivesItsBlockBackWhenItGoes) {
  const auto blocks = std::make_shared<FrameBlocks>();
  const std::uint8_t* first = nullptr;
  {
    const BFrame frame(100, 0, 0, L"", blocks);
    first = frame.Data();
    EXPECT_EQ(blocks->IdleBytes(), 0U);
  }
  EXPECT_EQ(blocks->IdleBytes(), 100U);

  EXPECT_EQ(BFrame(100, 0, 0, L"", blocks).Data(), first);
}

TEST(Frame, MayOutliveEveryOtherOwnerOfItsMemory) {
  auto blocks = std::make_shared<FrameBlocks>();
  const std::weak_ptr<FrameBlocks> watch = blocks;
  BSmartRef<BFrame> frame(new BFrame(64, 0, 0, L"", blocks));
  blocks.reset();

  frame->Data()[63] = 1;
  EXPECT_FALSE(watch.expired());
  frame = nullptr;

  EXPECT_TRUE(watch.expired());
}

// Takes and gives back this many blocks of a size.
void Circulate(FrameBlocks& blocks, std::size_t count, std::size_t size) {
  std::vector<FrameBlocks::Block> taken;
  for (std::size_t i = 0; i < count; ++i) taken.push_back(blocks.Take(size));
  for (FrameBlocks::Block& block : taken) blocks.Return(std::move(block), size);
}

TEST(FrameBlocks, KeepAsManyIdleBlocksAsTheRingHasFramesWhileAnAcquisitionRuns) {
  FrameBlocks blocks;
  blocks.SetRunning(true);

  Circulate(blocks, FrameBlocks::kRunningBlocks + 2, kMebibyte);

  EXPECT_EQ(blocks.IdleBytes(), FrameBlocks::kRunningBlocks * kMebibyte);
}

TEST(FrameBlocks, KeepSixMebibytesAtMostBetweenAcquisitions) {
  const std::pair<std::size_t, std::size_t> kept_of_size[] = {
      {1, 10}, {kMebibyte, 6}, {2 * kMebibyte, 3}, {4 * kMebibyte, 1}, {6 * kMebibyte, 1}, {6 * kMebibyte + 1, 0}};
  for (const auto& [size, kept] : kept_of_size) {
    FrameBlocks blocks;
    Circulate(blocks, 12, size);
    EXPECT_EQ(blocks.IdleBytes(), kept * size) << size;
  }
}

TEST(FrameBlocks, AreGivenUpWhenAnAcquisitionEnds) {
  FrameBlocks blocks;
  blocks.SetRunning(true);
  Circulate(blocks, 10, 2 * kMebibyte);

  blocks.SetRunning(false);

  EXPECT_EQ(blocks.IdleBytes(), 6 * kMebibyte);
}

TEST(FrameBlocks, AreUsedAgain) {
  FrameBlocks blocks;
  FrameBlocks::Block block = blocks.Take(32);
  const std::uint8_t* const first = block.get();
  blocks.Return(std::move(block), 32);

  EXPECT_EQ(blocks.Take(32).get(), first);
  EXPECT_EQ(blocks.IdleBytes(), 0U);
}

TEST(FrameBlocks, OfAnotherSizeAreNotKept) {
  FrameBlocks blocks;
  FrameBlocks::Block small = blocks.Take(32);
  Circulate(blocks, 2, 32);
  EXPECT_EQ(blocks.IdleBytes(), 64U);

  FrameBlocks::Block large = blocks.Take(1000);
  EXPECT_EQ(blocks.IdleBytes(), 0U);
  blocks.Return(std::move(small), 32);
  EXPECT_EQ(blocks.IdleBytes(), 0U);
  blocks.Return(std::move(large), 1000);

  EXPECT_EQ(blocks.IdleBytes(), 1000U);
}

// Takes that many blocks of a size, and one more, which has to wait until one is returned.
void ExpectAsManyInUse(std::size_t count, std::size_t size) {
  FrameBlocks blocks;
  std::vector<FrameBlocks::Block> taken;
  for (std::size_t i = 0; i < count; ++i) taken.push_back(blocks.Take(size));
  std::future<FrameBlocks::Block> taker = std::async(std::launch::async, [&] { return blocks.Take(size); });
  const auto deadline = std::chrono::steady_clock::now() + kDeadline;
  while (blocks.Waiting() == 0) {
    ASSERT_EQ(taker.wait_for(std::chrono::seconds(0)), std::future_status::timeout) << "it did not wait";
    ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "nobody waits";
  }

  blocks.Return(std::move(taken.back()), size);

  ASSERT_EQ(taker.wait_for(kDeadline), std::future_status::ready);
  EXPECT_NE(taker.get(), nullptr);
  EXPECT_EQ(blocks.Waiting(), 0U);
}

TEST(FrameBlocks, MakeATakerWaitOnceHalfAGibibyteIsInUse) { ExpectAsManyInUse(512, kMebibyte); }

TEST(FrameBlocks, MakeATakerWaitOnceTwoRingsAreInUseHoweverLargeTheyAre) {
  constexpr std::size_t kTwoRings = 20;
  EXPECT_EQ(FrameBlocks::kLeastUsedBlocks, kTwoRings);
  ExpectAsManyInUse(kTwoRings, 27 * kMebibyte);
}

TEST(FrameBlocks, OfASizeOfWhichMoreFitTheBoundMayAllBeTaken) {
  constexpr std::size_t kSize = FrameBlocks::kUsedBytes / (4 * FrameBlocks::kLeastUsedBlocks);
  FrameBlocks blocks;
  std::vector<FrameBlocks::Block> taken;
  for (std::size_t i = 0; i < 4 * FrameBlocks::kLeastUsedBlocks; ++i) taken.push_back(blocks.Take(kSize));
  EXPECT_EQ(blocks.Waiting(), 0U);
  for (FrameBlocks::Block& block : taken) blocks.Return(std::move(block), kSize);
}

TEST(FrameBlocks, MayBeTakenAndGivenBackByManyThreads) {
  FrameBlocks blocks;
  blocks.SetRunning(true);
  std::vector<std::thread> threads;
  for (std::uint8_t mark = 1; mark <= 8; ++mark) {
    threads.emplace_back([&blocks, mark] {
      for (int i = 0; i < 500; ++i) {
        FrameBlocks::Block block = blocks.Take(64);
        block[0] = mark;
        EXPECT_EQ(mark, block[0]);
        blocks.Return(std::move(block), 64);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  EXPECT_LE(blocks.IdleBytes(), FrameBlocks::kRunningBlocks * 64);
}

}  // namespace
