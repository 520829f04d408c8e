// device_life.h
// One life of a host: it lists, creates two partners, reads, sets and switches everything, takes pictures, releases.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/profile_file.h"

namespace Memory {

// The profiles of a life.
class World {
 public:
  World();

  const ProfileFile& ColourProfile() const { return m_colour_profile; }
  const ProfileFile& MonoProfile() const { return m_mono_profile; }

 private:
  ProfileFile m_colour_profile;
  ProfileFile m_mono_profile;
};

// What was not as documented; empty: everything was.
using Findings = std::vector<std::string>;

// Every step may run out of memory. `before_release` is called once, before the first device is released.
Findings Live(const World& world, const std::function<void()>& before_release);

// A short life in which nothing may fail.
Findings LiveInPlenty(const World& world);

// What the library, the file system and this process have of a life that is over.
Findings WhatIsLeft(const World& world, std::size_t threads, std::size_t descriptors);
// Whether any camera acquires pictures now.
bool IsAnyCameraRunning();
std::size_t CountThreads();
std::size_t CountDescriptors();

}  // namespace Memory
