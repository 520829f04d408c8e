// intervals.cpp
// The time from one frame to the next.
#include "check/intervals.h"

#include <algorithm>
#include <chrono>
#include <numeric>

namespace Kelcam {
namespace {

constexpr double kMillisecondsPerSecond = 1000.0;

// None when the camera's clock cannot tell them.
std::optional<std::vector<double>> TimesByCamera(const std::vector<FrameArrival>& arrivals, std::int64_t ticks_per_s) {
  std::vector<double> times_ms;
  std::optional<std::uint64_t> first, last;
  for (const FrameArrival& arrival : arrivals) {
    if (!arrival.is_complete || arrival.is_refused) continue;
    if (!arrival.timestamp || (last && *arrival.timestamp <= *last)) return std::nullopt;
    if (!first) first = arrival.timestamp;
    last = arrival.timestamp;
    times_ms.push_back(static_cast<double>(*last - *first) / static_cast<double>(ticks_per_s) * kMillisecondsPerSecond);
  }
  return times_ms;
}

std::vector<double> TimesHere(const std::vector<FrameArrival>& arrivals) {
  std::vector<double> times_ms;
  for (const FrameArrival& arrival : arrivals) {
    if (!arrival.is_complete || arrival.is_refused) continue;
    times_ms.push_back(std::chrono::duration<double, std::milli>(arrival.time - arrivals.front().time).count());
  }
  return times_ms;
}

double MedianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

std::optional<Intervals> IntervalsOf(const std::vector<double>& times_ms) {
  if (times_ms.size() < 2) return std::nullopt;
  std::vector<double> intervals_ms(times_ms.size());
  std::adjacent_difference(times_ms.begin(), times_ms.end(), intervals_ms.begin());
  intervals_ms.erase(intervals_ms.begin());
  const auto [least, most] = std::minmax_element(intervals_ms.begin(), intervals_ms.end());
  Intervals intervals{.count = intervals_ms.size(), .least_ms = *least, .most_ms = *most};
  intervals.mean_ms = (times_ms.back() - times_ms.front()) / static_cast<double>(intervals.count);
  const double longest_ms = MedianOf(intervals_ms) * Intervals::kGap;
  intervals.gaps = static_cast<std::size_t>(std::count_if(
      intervals_ms.begin(), intervals_ms.end(), [&](double interval_ms) { return interval_ms > longest_ms; }));
  return intervals;
}

std::optional<Intervals> IntervalsOf(const std::vector<FrameArrival>& arrivals,
                                     std::optional<std::int64_t> ticks_per_s) {
  const bool has_ticks = ticks_per_s && *ticks_per_s > 0;
  const auto by_camera = has_ticks ? TimesByCamera(arrivals, *ticks_per_s) : std::nullopt;
  std::optional<Intervals> intervals = IntervalsOf(by_camera ? *by_camera : TimesHere(arrivals));
  if (intervals) intervals->by_camera_clock = by_camera.has_value();
  return intervals;
}

}  // namespace Kelcam
