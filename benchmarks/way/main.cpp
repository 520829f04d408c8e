// main.cpp
// Where the time of a frame goes between the library's callback and the host's picture, step by step, and what it would
// cost to take new memory for each.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "VimbaC.h"
#include "acquisition/frame_blocks.h"
#include "acquisition/frame_queue.h"
#include "acquisition/module_threads.h"
#include "acquisition/ring_size.h"
#include "bcolorconverter.h"
#include "bimagergb.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kFrames = 400;
constexpr int kWarmUp = 50;

constexpr std::array<BSize, 4> kSizes{{{640, 480}, {1292, 964}, {2464, 2056}, {4096, 3000}}};

enum Step { kThread, kBlock, kCopy, kQueue, kConversion, kSteps };
constexpr std::array<const char*, kSteps> kNames{"start of the worker", "memory for the copy", "copy", "queue",
                                                 "conversion to RGB"};

// The moments between the steps. The worker writes its own before it pushes; the queue's lock hands them over.
using Moments = std::array<Clock::time_point, kSteps + 1>;
// Microseconds of each step, in the median.
using Way = std::array<double, kSteps>;

class Course {
 public:
  // Blocks are used again, as the device does it, or new for each frame.
  Course(const BSize& size, bool recycled)
      : m_payload(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height)),
        m_ring(kRingFrames, std::vector<std::uint8_t>(m_payload, 90)),
        m_converter(size, BColorConverter::eRGGB),
        m_image(size) {
    if (!recycled) return;
    m_blocks = std::make_shared<FrameBlocks>();
    m_blocks->SetRunning(true);
  }

  Way Run() {
    std::array<std::vector<double>, kSteps> times;
    for (int i = 0; i < kWarmUp + kFrames; ++i) {
      const Moments moments = RunOne(m_ring[static_cast<std::size_t>(i) % kRingFrames]);
      if (i < kWarmUp) continue;
      for (std::size_t step = 0; step < kSteps; ++step) {
        times[step].push_back(std::chrono::duration<double, std::micro>(moments[step + 1] - moments[step]).count());
      }
    }
    Way way{};
    for (std::size_t step = 0; step < kSteps; ++step) {
      const auto middle = times[step].begin() + kFrames / 2;
      std::nth_element(times[step].begin(), middle, times[step].end());
      way[step] = *middle;
    }
    return way;
  }

 private:
  // What the callback, the worker and the host do, without messages and hand-back. The host asks all the time, so that
  // the device's pauses between two looks into the queue do not count.
  Moments RunOne(const std::vector<std::uint8_t>& source) {
    Moments moments;
    moments[0] = Clock::now();
    ModuleThreads().Start([this, &source, &moments] {
      moments[1] = Clock::now();
      BSmartRef<BFrameQueue::BFrame> copy(
          new BFrameQueue::BFrame(m_payload, VmbPixelFormatBayerRG8, 1, WString(L"DEV_BENCH"), m_blocks));
      moments[2] = Clock::now();
      std::memcpy(copy->Data(), source.data(), m_payload);
      moments[3] = Clock::now();
      m_queue.Push(std::move(copy), BError());
    });
    BSmartRef<BFrameQueue::BFrame> frame;
    while (m_queue.Pop(frame, 0).IsError()) std::this_thread::yield();
    moments[4] = Clock::now();
    m_converter.ConvertRawToRGB(frame->Data(), m_image);
    moments[5] = Clock::now();
    frame = nullptr;
    ModuleThreads().WaitForAll();
    return moments;
  }

  std::size_t m_payload;
  std::vector<std::vector<std::uint8_t>> m_ring;
  std::shared_ptr<FrameBlocks> m_blocks;
  BFrameQueue m_queue;
  BColorConverter m_converter;
  BImageRgb m_image;
};

void PrintTable(const char* title, const std::vector<Way>& ways) {
  std::printf("\n%s\n\n| µs |", title);
  for (const BSize& size : kSizes) std::printf(" %d × %d |", size.width, size.height);
  std::printf("\n|---|---:|---:|---:|---:|\n");
  for (std::size_t step = 0; step < kSteps; ++step) {
    std::printf("| %s |", kNames[step]);
    for (const Way& way : ways) std::printf(" %.0f |", way[step]);
    std::printf("\n");
  }
  std::printf("| together |");
  for (const Way& way : ways) {
    double sum = 0;
    for (const double step : way) sum += step;
    std::printf(" %.0f |", sum);
  }
  std::printf("\n");
}

void MeasureAll(const char* title, bool recycled) {
  std::vector<Way> ways;
  for (const BSize& size : kSizes) ways.push_back(Course(size, recycled).Run());
  PrintTable(title, ways);
}

}  // namespace

int main() {
  MeasureAll("Memory used again, as the device does it", true);
  MeasureAll("New memory for each frame", false);
  return 0;
}
