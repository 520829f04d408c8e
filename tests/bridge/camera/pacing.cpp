// camera/pacing.cpp
// The pause between the packets of a frame, which a camera of Aravis has a register for and does not keep by itself.
#include "camera/pacing.h"

#include <gio/gio.h>
#include <pthread.h>
#include <sched.h>
#include <sys/prctl.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <tuple>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::duration_cast;
using std::chrono::nanoseconds;

// Of the GigE Vision bootstrap registers: where the host listens, and the pause in ticks.
constexpr guint32 kStreamPortRegister = 0x0d00;
constexpr guint32 kPauseRegister = 0x0d08;
// The camera of Aravis counts its time in these.
constexpr double kTicksPerSecond = 1e9;

// Besides what is sent come IP, UDP and Ethernet headers, check sum, preamble and gap (20 + 8 + 14 + 4 + 8 + 12 bytes).
constexpr double kHeaderBytes = 66.0;
constexpr double kCableBytesPerS = 125e6;
// A thread that got the processor late sends at once what is due, but of no more than this time: as much as a camera's
// own buffer for what goes out may hold.
constexpr std::chrono::microseconds kMostDelay{250};

std::atomic<ArvFakeCamera*> s_camera{nullptr};

guint32 Read(guint32 address) {
  guint32 value = 0;
  arv_fake_camera_read_register(s_camera, address, &value);
  return value;
}

bool IsStreamPacket(GSocketAddress* to) {
  return G_IS_INET_SOCKET_ADDRESS(to) &&
         g_inet_socket_address_get_port(G_INET_SOCKET_ADDRESS(to)) == (Read(kStreamPortRegister) & 0xffff);
}

nanoseconds TimeOf(gsize bytes) {
  const double s =
      (static_cast<double>(bytes) + kHeaderBytes) / kCableBytesPerS + Read(kPauseRegister) / kTicksPerSecond;
  return duration_cast<nanoseconds>(std::chrono::duration<double>(s));
}

// A camera does not wait for the processor of the host.
void KeepTime() {
  // Otherwise the system adds 50 us to each wait.
  prctl(PR_SET_TIMERSLACK, 1);
  // Refused to all but root.
  const sched_param priority{.sched_priority = 1};
  std::ignore = pthread_setschedparam(pthread_self(), SCHED_FIFO, &priority);
}

// Of the one thread that sends frames.
void AwaitTurn(gsize bytes) {
  static Clock::time_point s_next = [] {
    KeepTime();
    return Clock::now();
  }();
  const Clock::time_point begin = std::max(s_next, Clock::now() - kMostDelay);
  std::this_thread::sleep_until(begin);
  s_next = begin + TimeOf(bytes);
}

// waits_for_triggers.xml leaves the camera acquiring. It would take the next host's acquisition for the last one's, and
// send the frames to the last one.
void StopWithoutHost() {
  if (arv_fake_camera_get_control_channel_privilege(s_camera) == 0) {
    arv_fake_camera_write_register(s_camera, ARV_FAKE_CAMERA_REGISTER_ACQUISITION, 0);
  }
}

}  // namespace

void PacePackets(ArvFakeCamera* camera) { s_camera = camera; }

// Takes the place of GLib's function of this name, for Aravis too: a program's own symbols come before those of its
// libraries.
[[gnu::visibility("default")]] gssize g_socket_send_to(GSocket* socket, GSocketAddress* address, const gchar* buffer,
                                                       gsize size, GCancellable* cancellable, GError** error) {
  if (s_camera.load()) IsStreamPacket(address) ? AwaitTurn(size) : StopWithoutHost();
  GOutputVector vector{buffer, size};
  return g_socket_send_message(socket, address, &vector, 1, nullptr, 0, G_SOCKET_MSG_NONE, cancellable, error);
}
