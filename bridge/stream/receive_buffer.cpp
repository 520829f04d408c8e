// stream/receive_buffer.cpp
// The system's buffer for packets that have arrived and not been read.
#include "stream/receive_buffer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <charconv>
#include <filesystem>
#include <string>
#include <system_error>
#include <tuple>

namespace Bridge {
namespace {

bool IsUdpSocketOf(int descriptor, std::uint16_t port) {
  int type = 0;
  socklen_t length = sizeof type;
  if (getsockopt(descriptor, SOL_SOCKET, SO_TYPE, &type, &length) != 0 || type != SOCK_DGRAM) return false;
  sockaddr_in address{};
  length = sizeof address;
  return getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &length) == 0 &&
         address.sin_family == AF_INET && ntohs(address.sin_port) == port;
}

}  // namespace

void EnlargeReceiveBuffer(std::uint16_t port) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
    const std::string name = entry.path().filename().string();
    int descriptor = -1;
    if (std::from_chars(name.data(), name.data() + name.size(), descriptor).ec != std::errc()) continue;
    if (!IsUdpSocketOf(descriptor, port)) continue;
    std::ignore = setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &kReceiveBufferBytes, sizeof kReceiveBufferBytes);
    return;
  }
}

}  // namespace Bridge
