// system_facts.h
// What the operating system says of itself, of its network, and of the way to a camera.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Kelcam {

// "Debian GNU/Linux 12 (bookworm), Linux 6.1.0 x86_64"; without the computer's name.
std::string SystemName();

// As the environment has them, in UTF-8; empty: it does not.
std::string HomeFolder();
std::string UserName();

// The most that a program may ask for as the buffer of a socket that receives. None: the system has no such limit.
std::optional<std::int64_t> ReceiveBufferLimitBytes();

// How many datagrams the system has thrown away since it was started because no program took them in time. None: it
// does not say.
std::optional<std::uint64_t> DatagramsDropped();

// By which adapter packets go to an address, and what that one says of itself.
struct Route {
  std::string adapter;                          // "eth0"; empty: not known
  std::optional<std::int64_t> mtu_bytes;        // the largest packet
  std::optional<std::int64_t> link_bits_per_s;  // none: the adapter has no fixed speed, or does not report it
  std::optional<bool> is_in_subnet;             // whether the address is in the adapter's own subnet
};

// Sends nothing. The address is that of a camera: "169.254.76.101". None: there is no way to it, or it is no address.
std::optional<Route> RouteTo(const std::string& address);

}  // namespace Kelcam
