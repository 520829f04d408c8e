// system_facts_windows.cpp
// What Windows says of itself, of its network, and of the way to a camera.
#include <winsock2.h>
#include <ws2tcpip.h>

#include <windows.h>

#include <iphlpapi.h>

#include <cstdlib>
#include <vector>

#include "base/system_facts.h"
#include "base/utf8.h"

namespace Kelcam {
namespace {

std::string Variable(const wchar_t* name) {
  const wchar_t* const value = _wgetenv(name);
  return value ? Utf8(WString(value)) : std::string();
}

std::optional<MIB_IFROW> AdapterOf(DWORD index) {
  MIB_IFROW row{};
  row.dwIndex = index;
  return GetIfEntry(&row) == NO_ERROR ? std::optional(row) : std::nullopt;
}

std::optional<bool> IsInSubnet(DWORD address, DWORD adapter) {
  ULONG size = 0;
  if (GetIpAddrTable(nullptr, &size, FALSE) != ERROR_INSUFFICIENT_BUFFER) return std::nullopt;
  std::vector<std::max_align_t> memory(size / sizeof(std::max_align_t) + 1);
  auto* const table = reinterpret_cast<MIB_IPADDRTABLE*>(memory.data());
  if (GetIpAddrTable(table, &size, FALSE) != NO_ERROR) return std::nullopt;
  std::optional<bool> is_in_subnet;
  for (DWORD i = 0; i < table->dwNumEntries; ++i) {
    const MIB_IPADDRROW& own = table->table[i];
    if (own.dwIndex != adapter) continue;
    is_in_subnet = is_in_subnet.value_or(false) || (own.dwAddr & own.dwMask) == (address & own.dwMask);
  }
  return is_in_subnet;
}

}  // namespace

// GetVersion reports an old version to programs that do not name the new ones.
std::string SystemName() {
  const auto get = reinterpret_cast<LONG(WINAPI*)(OSVERSIONINFOW*)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof version;
  if (!get || get(&version) != 0) return "Windows";
  return "Windows " + std::to_string(version.dwMajorVersion) + "." + std::to_string(version.dwMinorVersion) + "." +
         std::to_string(version.dwBuildNumber);
}

std::string HomeFolder() { return Variable(L"USERPROFILE"); }

std::string UserName() { return Variable(L"USERNAME"); }

std::optional<std::int64_t> ReceiveBufferLimitBytes() { return std::nullopt; }

std::optional<std::uint64_t> DatagramsDropped() { return std::nullopt; }

std::optional<Route> RouteTo(const std::string& address) {
  in_addr camera{};
  if (inet_pton(AF_INET, address.c_str(), &camera) != 1) return std::nullopt;
  DWORD index = 0;
  if (GetBestInterface(camera.s_addr, &index) != NO_ERROR) return std::nullopt;
  const std::optional<MIB_IFROW> adapter = AdapterOf(index);
  if (!adapter) return std::nullopt;
  Route route;
  route.adapter.assign(reinterpret_cast<const char*>(adapter->bDescr), adapter->dwDescrLen);
  while (!route.adapter.empty() && route.adapter.back() == '\0') route.adapter.pop_back();
  route.mtu_bytes = adapter->dwMtu;
  if (adapter->dwSpeed > 0) route.link_bits_per_s = adapter->dwSpeed;
  route.is_in_subnet = IsInSubnet(camera.s_addr, index);
  return route;
}

}  // namespace Kelcam
