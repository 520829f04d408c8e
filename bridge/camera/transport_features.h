// camera/transport_features.h
// Features of the network side: packet size, rate, heartbeat.
#pragma once

#include <arv.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "camera/acquisition_state.h"
#include "camera/feature.h"
#include "camera/native_feature.h"

namespace Bridge {

// A whole number that is a register of the GigE Vision bootstrap block.
class Register final : public Feature {
 public:
  Register(ArvDevice* device, std::uint64_t address, VimbaLibrary::IntegerRange range)
      : m_device(device), m_address(address), m_range(range) {}

  VmbError_t GetInteger(std::int64_t& value) const override;
  VmbError_t SetInteger(std::int64_t value) override;
  VmbError_t IntegerRangeOf(VimbaLibrary::IntegerRange& range) const override;

 private:
  ArvDevice* const m_device;
  const std::uint64_t m_address;
  const VimbaLibrary::IntegerRange m_range;
};

// How fast a camera sends: its limit of the link's throughput, or the pause that it makes between two packets.
class StreamRate {
 public:
  static constexpr VimbaLibrary::IntegerRange kRange{1'000'000, 124'000'000, 1};

  // Null when the camera offers neither.
  static std::shared_ptr<StreamRate> Of(ArvDevice* device);
  virtual ~StreamRate() = default;

  virtual VmbError_t Get(std::int64_t& bytes_per_s) const = 0;
  // Within the range.
  virtual VmbError_t Set(std::int64_t bytes_per_s) = 0;
  virtual VmbError_t Range(VimbaLibrary::IntegerRange& range) const = 0;
  // What was set means another pause from now on.
  virtual void PacketSizeChanged() {}
};

class StreamBytesPerSecond final : public Feature {
 public:
  explicit StreamBytesPerSecond(std::shared_ptr<StreamRate> rate) : m_rate(std::move(rate)) {}

  VmbError_t GetInteger(std::int64_t& value) const override { return m_rate->Get(value); }
  VmbError_t SetInteger(std::int64_t value) override;
  VmbError_t IntegerRangeOf(VimbaLibrary::IntegerRange& range) const override { return m_rate->Range(range); }

 private:
  const std::shared_ptr<StreamRate> m_rate;
};

// The packet size, which Aravis reads once, when it makes a stream.
class PacketSize final : public Feature {
 public:
  // `rate` may be null.
  PacketSize(std::unique_ptr<NativeFeature> native, const AcquisitionState& state, std::shared_ptr<StreamRate> rate);

  VmbError_t GetInteger(std::int64_t& value) const override { return m_native->GetInteger(value); }
  VmbError_t SetInteger(std::int64_t value) override;
  VmbError_t IntegerRangeOf(VimbaLibrary::IntegerRange& range) const override {
    return m_native->IntegerRangeOf(range);
  }

 private:
  const std::unique_ptr<NativeFeature> m_native;
  const AcquisitionState& m_state;
  const std::shared_ptr<StreamRate> m_rate;
};

// A real number that is worked out and cannot be set.
class ComputedFloat final : public Feature {
 public:
  explicit ComputedFloat(std::function<VmbError_t(double&)> compute) : m_compute(std::move(compute)) {}

  VmbError_t GetFloat(double& value) const override { return m_compute(value); }
  VmbError_t SetFloat(double /*value*/) override { return VmbErrorInvalidAccess; }
  VmbError_t FloatRangeOf(VimbaLibrary::FloatRange& range) const override;

 private:
  const std::function<VmbError_t(double&)> m_compute;
};

// A whole number that is worked out and cannot be set.
class ComputedInteger final : public Feature {
 public:
  explicit ComputedInteger(std::function<std::int64_t()> compute) : m_compute(std::move(compute)) {}

  VmbError_t GetInteger(std::int64_t& value) const override;
  VmbError_t SetInteger(std::int64_t /*value*/) override { return VmbErrorInvalidAccess; }
  VmbError_t IntegerRangeOf(VimbaLibrary::IntegerRange& range) const override;

 private:
  const std::function<std::int64_t()> m_compute;
};

}  // namespace Bridge
