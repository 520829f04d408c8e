// system_facts_posix.cpp
// What Linux says of itself, of its network, and of the way to a camera.
#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

#include "base/system_facts.h"

namespace Kelcam {
namespace {

constexpr std::int64_t kBitsPerMegabit = 1'000'000;
// Nothing is sent to it: the number only completes the address.
constexpr std::uint16_t kAnyPort = 9;

std::string Variable(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

std::optional<std::int64_t> NumberIn(const std::string& file) {
  std::int64_t number = 0;
  std::ifstream stream(file);
  return stream >> number ? std::optional(number) : std::nullopt;
}

// "Debian GNU/Linux 12 (bookworm)"; empty where the system does not have the usual file.
std::string Distribution() {
  constexpr std::string_view kName = "PRETTY_NAME=";
  std::ifstream file("/etc/os-release");
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(kName)) continue;
    line.erase(0, kName.size());
    std::erase(line, '"');
    return line;
  }
  return {};
}

class Socket {
 public:
  Socket() : m_descriptor(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
  ~Socket() {
    if (m_descriptor >= 0) close(m_descriptor);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  int Descriptor() const { return m_descriptor; }

 private:
  const int m_descriptor;
};

in_addr AddressOf(const sockaddr* address) { return reinterpret_cast<const sockaddr_in*>(address)->sin_addr; }

// The adapter with this own address, and whether the other address is in its subnet.
void DescribeAdapter(in_addr own, in_addr other, Route& route) {
  ifaddrs* first = nullptr;
  if (getifaddrs(&first) != 0) return;
  const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> adapters(first, &freeifaddrs);
  for (const ifaddrs* adapter = first; adapter; adapter = adapter->ifa_next) {
    const bool has_address = adapter->ifa_addr && adapter->ifa_addr->sa_family == AF_INET;
    if (!has_address || AddressOf(adapter->ifa_addr).s_addr != own.s_addr) continue;
    route.adapter = adapter->ifa_name;
    if (!adapter->ifa_netmask) continue;
    const in_addr_t mask = AddressOf(adapter->ifa_netmask).s_addr;
    route.is_in_subnet = (own.s_addr & mask) == (other.s_addr & mask);
    return;
  }
}

}  // namespace

std::string SystemName() {
  utsname name{};
  if (uname(&name) != 0) return Distribution();
  const std::string distribution = Distribution();
  return distribution + (distribution.empty() ? "" : ", ") + name.sysname + " " + name.release + " " + name.machine;
}

std::string HomeFolder() { return Variable("HOME"); }

std::string UserName() { return Variable("USER"); }

std::optional<std::int64_t> ReceiveBufferLimitBytes() { return NumberIn("/proc/sys/net/core/rmem_max"); }

// Two lines begin with "Udp:": the names of the columns and their values.
std::optional<std::uint64_t> DatagramsDropped() {
  constexpr std::string_view kTable = "Udp:";
  std::ifstream file("/proc/net/snmp");
  std::string names;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with(kTable)) continue;
    if (names.empty()) {
      names = line;
      continue;
    }
    std::istringstream columns(names), values(line);
    for (std::string column, value; columns >> column && values >> value;) {
      if (column == "RcvbufErrors") return std::strtoull(value.c_str(), nullptr, 10);
    }
  }
  return std::nullopt;
}

std::optional<Route> RouteTo(const std::string& address) {
  sockaddr_in camera{};
  camera.sin_family = AF_INET;
  camera.sin_port = htons(kAnyPort);
  if (inet_pton(AF_INET, address.c_str(), &camera.sin_addr) != 1) return std::nullopt;
  // The system looks up the way as soon as a datagram's socket has an address to send to.
  const Socket socket;
  if (connect(socket.Descriptor(), reinterpret_cast<const sockaddr*>(&camera), sizeof camera) != 0) return std::nullopt;
  Route route;
  int mtu = 0;
  socklen_t length = sizeof mtu;
  if (getsockopt(socket.Descriptor(), IPPROTO_IP, IP_MTU, &mtu, &length) == 0) route.mtu_bytes = mtu;
  sockaddr_in own{};
  length = sizeof own;
  if (getsockname(socket.Descriptor(), reinterpret_cast<sockaddr*>(&own), &length) != 0) return route;
  DescribeAdapter(own.sin_addr, camera.sin_addr, route);
  const std::optional<std::int64_t> speed = NumberIn("/sys/class/net/" + route.adapter + "/speed");
  // An adapter without a fixed speed has -1 there.
  if (speed && *speed > 0) route.link_bits_per_s = *speed * kBitsPerMegabit;
  return route;
}

}  // namespace Kelcam
