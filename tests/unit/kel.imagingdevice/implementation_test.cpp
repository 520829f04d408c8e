// implementation_test.cpp
// What implementations of cameras share: profile, controls, memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <vector>

#include "../kel.core/ini_file.h"
#include "support/plain_device.h"

namespace {

// Counts itself away.
class CountedControl : public BImagingDeviceControl {
 public:
  CountedControl(int type, int& deletions)
      : BImagingDeviceControl(static_cast<NBoard::CONTROLTYPE>(type)), m_deletions(deletions) {}
  ~CountedControl() override { ++m_deletions; }

  int Value() override { return 0; }
  bool SetValue(int) override { return false; }
  void SetMinValue(int) override {}
  void SetMaxValue(int) override {}
  void SetDefaultValue(int) override {}
  bool GetRange(int&, int&) override { return false; }
  bool SetToDefault() override { return false; }
  bool IsAvailable() const override { return false; }
  WString UnitString() const override { return {}; }
  double ToRealValue(int) const override { return 0.0; }
  int FromRealValue(double) const override { return 0; }

 private:
  int& m_deletions;
};

class Implementation : public testing::Test {
 protected:
  BImagingDeviceControl* Add(int type) {
    auto control = std::make_unique<CountedControl>(type, m_deletions);
    BImagingDeviceControl* plain = control.get();
    m_implementation.SetControl(std::move(control));
    return plain;
  }
  BImagingDeviceControl* At(int type) const { return m_implementation.Control(static_cast<NBoard::CONTROLTYPE>(type)); }

  int m_deletions = 0;
  PlainImplementation m_implementation;
};

TEST_F(Implementation, HasNoControlsAtFirst) {
  for (int type = 0; type < NBoard::kControlTypes; ++type) EXPECT_EQ(At(type), nullptr);
}

TEST_F(Implementation, KeepsEachControlUnderItsType) {
  std::vector<BImagingDeviceControl*> added;
  added.reserve(NBoard::kControlTypes);
  for (int type = 0; type < NBoard::kControlTypes; ++type) added.push_back(Add(type));

  for (int type = 0; type < NBoard::kControlTypes; ++type) EXPECT_EQ(At(type), added[static_cast<std::size_t>(type)]);
  EXPECT_EQ(m_deletions, 0);
}

TEST_F(Implementation, DeletesTheControlThatItReplaces) {
  Add(NBoard::eGain);

  BImagingDeviceControl* second = Add(NBoard::eGain);

  EXPECT_EQ(At(NBoard::eGain), second);
  EXPECT_EQ(m_deletions, 1);
}

TEST_F(Implementation, DeletesAllControls) {
  Add(NBoard::eGain);
  Add(NBoard::eShutter);

  m_implementation.DeleteControls();

  EXPECT_EQ(m_deletions, 2);
  EXPECT_EQ(At(NBoard::eGain), nullptr);
}

TEST_F(Implementation, HasNoControlOfATypeThatIsNone) {
  for (const int type : {std::numeric_limits<int>::min(), -1, NBoard::kControlTypes, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(At(type), nullptr);
  }
}

TEST_F(Implementation, DropsAControlOfATypeThatIsNone) {
  Add(-1);
  Add(NBoard::kControlTypes);
  m_implementation.SetControl(nullptr);

  EXPECT_EQ(m_deletions, 2);
}

TEST_F(Implementation, DeletesItsControlsAndDropsItsProfileWhenItGoes) {
  const IniFile file("");
  const BSmartRef<BCamProfile> profile(new BCamProfile(file.Name()));
  {
    PlainImplementation implementation;
    implementation.SetControl(std::make_unique<CountedControl>(NBoard::eGain, m_deletions));
    EXPECT_TRUE(implementation.Initialize(profile));
    EXPECT_EQ(profile->References(), 2);
    EXPECT_TRUE(implementation.Profile() == profile);
  }
  EXPECT_EQ(profile->References(), 1);
  EXPECT_EQ(m_deletions, 1);
}

TEST_F(Implementation, DropsTheProfileBefore) {
  const IniFile file("");
  const BSmartRef<BCamProfile> first(new BCamProfile(file.Name()));
  m_implementation.Initialize(first);

  m_implementation.Initialize(nullptr);

  EXPECT_EQ(first->References(), 1);
  EXPECT_FALSE(m_implementation.Profile());
}

TEST_F(Implementation, GivesZeroedMemoryThatCanBeWritten) {
  constexpr std::size_t kBytes = 100'001;
  auto* bytes = static_cast<unsigned char*>(m_implementation.AllocateLockedMemory(kBytes));
  ASSERT_NE(bytes, nullptr);
  EXPECT_TRUE(std::all_of(bytes, bytes + kBytes, [](unsigned char byte) { return byte == 0; }));

  constexpr unsigned char kPattern = 0xA5;
  std::fill(bytes, bytes + kBytes, kPattern);

  EXPECT_EQ(bytes[kBytes - 1], kPattern);
  m_implementation.FreeLockedMemory(bytes, kBytes);
}

TEST_F(Implementation, GivesNoMemoryForNoBytesAndWhenThereIsNone) {
  EXPECT_EQ(m_implementation.AllocateLockedMemory(0), nullptr);
  EXPECT_EQ(m_implementation.AllocateLockedMemory(std::numeric_limits<std::size_t>::max() / 2), nullptr);
  m_implementation.FreeLockedMemory(nullptr, 0);
}

}  // namespace
