// engine/frame_override.cpp
// What a frame fault or a delivery by hand changes in a frame.
#include "engine/frame_override.h"

#include <tuple>

namespace Simulator {
namespace {

// The override's members, each with the member of the frame that it replaces.
constexpr auto kMembers = std::make_tuple(std::make_pair(&FrameOverride::status, &VmbFrame_t::receiveStatus),
                                          std::make_pair(&FrameOverride::flags, &VmbFrame_t::receiveFlags),
                                          std::make_pair(&FrameOverride::image_size, &VmbFrame_t::imageSize),
                                          std::make_pair(&FrameOverride::ancillary_size, &VmbFrame_t::ancillarySize),
                                          std::make_pair(&FrameOverride::pixel_format, &VmbFrame_t::pixelFormat),
                                          std::make_pair(&FrameOverride::width, &VmbFrame_t::width),
                                          std::make_pair(&FrameOverride::height, &VmbFrame_t::height),
                                          std::make_pair(&FrameOverride::offset_x, &VmbFrame_t::offsetX),
                                          std::make_pair(&FrameOverride::offset_y, &VmbFrame_t::offsetY),
                                          std::make_pair(&FrameOverride::frame_id, &VmbFrame_t::frameID),
                                          std::make_pair(&FrameOverride::timestamp, &VmbFrame_t::timestamp));

template <class Visit>
void ForEachMember(Visit visit) {
  std::apply([&](const auto&... member) { (visit(member.first, member.second), ...); }, kMembers);
}

}  // namespace

void FrameOverride::MergeFrom(const FrameOverride& other) {
  ForEachMember([&](auto member, auto /*target*/) {
    if (!(this->*member)) this->*member = other.*member;
  });
  for (auto member : {&FrameOverride::context0, &FrameOverride::context1}) {
    if (!(this->*member)) this->*member = other.*member;
  }
  if (!buffer_size) buffer_size = other.buffer_size;
  if (!buffer_shift) buffer_shift = other.buffer_shift;
  buffer_null = buffer_null || other.buffer_null;
  again += other.again;
  delay += other.delay;
  drop = drop || other.drop;
  unplug = unplug || other.unplug;
  if (!replug) replug = other.replug;
}

void FrameOverride::ApplyTo(VmbFrame_t& frame) const {
  ForEachMember([&](auto member, auto target) {
    if (this->*member) frame.*target = *(this->*member);
  });
}

void FrameOverride::Alter(VmbFrame_t& frame) const {
  if (buffer_size) frame.bufferSize = *buffer_size;
  // Nothing but the numbers travels in them.
  const auto as_context = [](std::uint64_t number) {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(number));
  };
  if (context0) frame.context[0] = as_context(*context0);
  if (context1) frame.context[1] = as_context(*context1);
  if (buffer_shift) {
    const auto address = reinterpret_cast<std::uintptr_t>(frame.buffer) + static_cast<std::uintptr_t>(*buffer_shift);
    frame.buffer = reinterpret_cast<void*>(address);
  }
  if (buffer_null) frame.buffer = nullptr;
}

}  // namespace Simulator
