// camera/acquisition_features.h
// Features of which the camera's own meaning, or Aravis', needs something added: start and stop, format, trigger.
#pragma once

#include <arv.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "camera/acquisition_state.h"
#include "camera/feature.h"
#include "camera/native_feature.h"

namespace Bridge {

// Format and size, which cannot be changed while the camera sends. Some cameras would take the change.
class HeldWhileAcquiring final : public Feature {
 public:
  HeldWhileAcquiring(std::unique_ptr<Feature> feature, const AcquisitionState& state);

  VmbError_t GetInteger(std::int64_t& value) const override { return m_feature->GetInteger(value); }
  VmbError_t SetInteger(std::int64_t value) override;
  VmbError_t IntegerRangeOf(VimbaLibrary::IntegerRange& range) const override {
    return m_feature->IntegerRangeOf(range);
  }
  VmbError_t GetEnum(const char*& value) const override { return m_feature->GetEnum(value); }
  VmbError_t SetEnum(std::string_view value) override;
  VmbError_t EnumValueOf(std::string_view entry, std::int64_t& value) const override {
    return m_feature->EnumValueOf(entry, value);
  }

 private:
  const std::unique_ptr<Feature> m_feature;
  const AcquisitionState& m_state;
};

// Starts and stops the camera. What its frames will be is read before; the camera is told to lock what it locks
// meanwhile.
class AcquisitionControl {
 public:
  AcquisitionControl(ArvDevice* device, AcquisitionState& state);

  // Whether the camera has both commands.
  bool Complete() const { return m_start && m_stop; }
  VmbError_t Start();
  VmbError_t Stop();

 private:
  VmbError_t ReadLayout(FrameLayout& layout) const;
  void SetLocked(bool locked);

  ArvDevice* const m_device;
  AcquisitionState& m_state;
  const std::unique_ptr<NativeFeature> m_start;
  const std::unique_ptr<NativeFeature> m_stop;
  // Null on cameras that have none.
  const std::unique_ptr<NativeFeature> m_locked;
};

// A command of this library. Done when it returns.
class Command final : public Feature {
 public:
  explicit Command(std::function<VmbError_t()> run) : m_run(std::move(run)) {}

  VmbError_t Run() override { return m_run(); }
  VmbError_t IsDone(bool& done) const override;

 private:
  const std::function<VmbError_t()> m_run;
};

// The free-running source of cameras that call it "trigger off". While it is chosen, setting TriggerMode has no effect
// on the camera: "On" comes with the next other source.
class FreeRunningTrigger {
 public:
  static constexpr char kEntry[] = "Freerun";

  // The camera's features, to be used through these two alone from now on.
  FreeRunningTrigger(std::unique_ptr<NativeFeature> mode, std::unique_ptr<NativeFeature> source);

  VmbError_t GetMode(const char*& value) const;
  VmbError_t SetMode(std::string_view value);
  VmbError_t GetSource(const char*& value) const;
  VmbError_t SetSource(std::string_view value);

  const NativeFeature& Mode() const { return *m_mode; }
  const NativeFeature& Source() const { return *m_source; }

 private:
  const std::unique_ptr<NativeFeature> m_mode;
  const std::unique_ptr<NativeFeature> m_source;
  bool m_free_running = false;
  // What TriggerMode was set to meanwhile.
  std::string m_wanted_mode;
};

class TriggerMode final : public Feature {
 public:
  explicit TriggerMode(std::shared_ptr<FreeRunningTrigger> trigger) : m_trigger(std::move(trigger)) {}

  VmbError_t GetEnum(const char*& value) const override { return m_trigger->GetMode(value); }
  VmbError_t SetEnum(std::string_view value) override { return m_trigger->SetMode(value); }
  VmbError_t EnumValueOf(std::string_view entry, std::int64_t& value) const override {
    return m_trigger->Mode().EnumValueOf(entry, value);
  }

 private:
  const std::shared_ptr<FreeRunningTrigger> m_trigger;
};

class TriggerSource final : public Feature {
 public:
  explicit TriggerSource(std::shared_ptr<FreeRunningTrigger> trigger) : m_trigger(std::move(trigger)) {}

  VmbError_t GetEnum(const char*& value) const override { return m_trigger->GetSource(value); }
  VmbError_t SetEnum(std::string_view value) override { return m_trigger->SetSource(value); }
  VmbError_t EnumValueOf(std::string_view entry, std::int64_t& value) const override;

 private:
  const std::shared_ptr<FreeRunningTrigger> m_trigger;
};

}  // namespace Bridge
