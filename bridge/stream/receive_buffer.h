// stream/receive_buffer.h
// The system's buffer for packets that have arrived and not been read.
#pragma once

#include <cstdint>

namespace Bridge {

// What is asked for. The system gives at most what its setting net.core.rmem_max allows; docs/bridge.md says how to
// raise it.
inline constexpr int kReceiveBufferBytes = 16 << 20;

// Sets it for the socket of this process that is bound to the UDP port. Aravis does so itself, but only after the first
// packet, of which a large frame's have overflowed the buffer by then.
void EnlargeReceiveBuffer(std::uint16_t port);

}  // namespace Bridge
