// engine/acquisition.cpp
// The sensor of one opened camera: when frames are exposed, and how they reach the queue.
#include "engine/acquisition.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

#include "link/lost_packets.h"

namespace Simulator {

Acquisition::Acquisition(SensorParts parts, CaptureQueue& frames)
    : m_parts(std::move(parts)), m_frames(frames), m_random(m_parts.seed), m_thread([this] { Run(); }) {}

Acquisition::~Acquisition() { Close(); }

void Acquisition::Close() {
  {
    const BMutexLock lock(m_mutex);
    m_closing = true;
    m_running = false;
    AbandonTransfer();
    m_changed.NotifyAll();
  }
  if (m_thread.joinable()) m_thread.join();
}

bool Acquisition::OnThread() const { return std::this_thread::get_id() == m_thread_id; }

void Acquisition::Apply(const CaptureSettings& settings) {
  const BMutexLock lock(m_mutex);
  if (!settings.trigger.SameSource(m_settings.trigger)) {
    m_triggers.clear();
    m_armed = Clock::now();
  }
  m_settings = settings;
  m_changed.NotifyAll();
}

void Acquisition::Start() {
  const BMutexLock lock(m_mutex);
  if (m_running || m_closing) return;
  m_running = true;
  ++m_activity;
  ++m_acquisition;
  m_next_frame_id = 0;
  m_frames_done = 0;
  m_frame_limit = m_settings.frame_limit;
  m_triggers.clear();
  m_armed = Clock::now();
  m_last_start = m_armed - m_settings.trigger.period;
  m_changed.NotifyAll();
}

void Acquisition::Stop() {
  const BMutexLock lock(m_mutex);
  m_running = false;
  m_triggers.clear();
  m_changed.NotifyAll();
}

void Acquisition::Abort() {
  Stop();
  const BMutexLock lock(m_mutex);
  ++m_aborts;
  AbandonTransfer();
  m_changed.NotifyAll();
}

bool Acquisition::Running() const {
  const BMutexLock lock(m_mutex);
  return m_running;
}

void Acquisition::Wake() {
  const BMutexLock lock(m_mutex);
  m_changed.NotifyAll();
}

void Acquisition::AddTrigger() {
  if (!m_running) return;
  ++m_activity;
  m_triggers.push_back(Clock::now());
  m_changed.NotifyAll();
}

void Acquisition::SoftwareTrigger() {
  const BMutexLock lock(m_mutex);
  if (m_settings.trigger.start == FrameStart::kSoftware) AddTrigger();
}

void Acquisition::InputEdge(int line, bool rising) {
  const BMutexLock lock(m_mutex);
  m_level_high[static_cast<std::size_t>(line)] = rising;
  m_changed.NotifyAll();
  const TriggerSettings& trigger = m_settings.trigger;
  if (trigger.start != FrameStart::kLine || trigger.line != line) return;
  if (trigger.edge == Edge::kAny || trigger.edge == (rising ? Edge::kRising : Edge::kFalling)) AddTrigger();
}

bool Acquisition::LevelHolds() const {
  const TriggerSettings& trigger = m_settings.trigger;
  if (trigger.start != FrameStart::kLine) return false;
  return trigger.edge == (m_level_high[static_cast<std::size_t>(trigger.line)] ? Edge::kLevelHigh : Edge::kLevelLow);
}

// Whether something asks for a frame, now or later.
bool Acquisition::Wanted() const {
  if (!m_running) return false;
  if (m_settings.trigger.IsPeriodic() || !m_triggers.empty()) return true;
  if (m_settings.trigger.start != FrameStart::kFreerun && !LevelHolds()) return false;
  // Without exposure and stream time a free run would spin, so that it waits for queued frames.
  return !m_settings.instant || m_frames.HasQueued();
}

bool Acquisition::Idle() const {
  const BMutexLock lock(m_mutex);
  if (m_exposing || !m_arriving.empty()) return false;
  return !Wanted() || (m_settings.trigger.IsPeriodic() && m_last_start + m_settings.trigger.period > Clock::now());
}

void Acquisition::Run() {
  m_thread_id = std::this_thread::get_id();
  BMutexLock lock(m_mutex);
  while (!m_closing) {
    Clock::time_point start;
    if (!NextStart(lock, start)) continue;
    m_exposing = true;
    Expose(lock, BeginExposure(start));
    m_exposing = false;
  }
}

// False after a wait: everything may have changed, so that the caller looks again.
bool Acquisition::NextStart(BMutexLock& lock, Clock::time_point& start) {
  if (!Wanted()) {
    Await(lock, Clock::time_point::max());
    return false;
  }
  start = std::max(m_armed, m_ready);
  if (!m_triggers.empty()) start = std::max(start, m_triggers.front() + m_settings.trigger.delay);
  if (m_settings.trigger.IsPeriodic()) start = std::max(start, m_last_start + m_settings.trigger.period);
  if (start > Clock::now()) {
    Await(lock, start);
    return false;
  }
  if (!m_triggers.empty()) m_triggers.pop_front();
  m_last_start = start;
  return true;
}

Acquisition::Exposure Acquisition::BeginExposure(Clock::time_point start) {
  ++m_activity;
  Exposure exposure{m_settings, start, m_parts.next_faults(), m_next_frame_id++, m_acquisition, m_aborts};
  exposure.settings.shot.frame_number = m_parts.counters.exposed++;
  exposure.settings.shot.time = m_parts.clock.TimeAt(start);
  return exposure;
}

void Acquisition::Await(BMutexLock& lock, Clock::time_point moment) {
  // What the caller looked at may have changed while a frame was handed over.
  if (HandOverArrived(lock)) return;
  if (!m_arriving.empty()) moment = std::min(moment, m_arriving.front().due);
  if (moment == Clock::time_point::max()) {
    m_changed.Wait(lock);
  } else {
    m_changed.WaitUntil(lock, moment);
  }
}

bool Acquisition::WaitUntil(BMutexLock& lock, Clock::time_point moment, const Exposure& exposure) {
  while (!m_closing && m_aborts == exposure.aborts && Clock::now() < moment) Await(lock, moment);
  return !m_closing && m_aborts == exposure.aborts;
}

void Acquisition::Expose(BMutexLock& lock, const Exposure& exposure) {
  const CaptureSettings& settings = exposure.settings;
  const Clock::time_point exposed = exposure.start + settings.exposure;
  const Clock::time_point sending = std::max(exposed, m_last_arrival);
  const Clock::time_point sent = sending + std::max(settings.readout, settings.stream);
  Arrival frame{exposure, {m_parts.scene.get(), std::move(m_scratch), {}}, nullptr, sent};
  frame.content.rendered.clear();
  if (Send(lock, {sending, sent, settings.BytesPerSecondSent()}, frame)) {
    FinishFrame(std::max(sent, Clock::now()), exposure);
    Receive(std::move(frame));
    std::ignore = HandOverArrived(lock);
  } else {
    m_scratch = std::move(frame.content.rendered);
  }
}

void Acquisition::Receive(Arrival frame) {
  const bool has_buffer = m_arriving.size() < m_frames.Count().queued;
  // With none before it the capture queue decides. A fault that unplugs the camera needs no buffer.
  if (has_buffer || m_arriving.empty() || frame.exposure.faults.unplug) {
    m_arriving.push_back(std::move(frame));
  } else {
    ++m_parts.counters.dropped;
  }
}

bool Acquisition::Send(BMutexLock& lock, const Link::Transfer& transfer, Arrival& frame) {
  const CaptureSettings& settings = frame.exposure.settings;
  if (!settings.instant) m_transfer = m_parts.link.Begin(transfer);
  if (!WaitUntil(lock, transfer.start, frame.exposure)) return false;
  if (!settings.instant) {
    const BMutexUnlock unlocked(m_mutex, lock);
    // Rendering takes place while the frame is sent, so that it costs no time of its own.
    if (frame.content.scene && m_frames.HasQueued()) frame.content.Render(settings);
  }
  if (!WaitUntil(lock, transfer.end, frame.exposure)) return false;
  std::vector<Link::Loss> losses;
  if (m_transfer) losses = m_parts.link.Judge(*m_transfer);
  m_transfer.reset();
  LosePackets(transfer, losses, frame);
  return WaitUntil(lock, transfer.end + frame.exposure.faults.delay, frame.exposure);
}

void Acquisition::AbandonTransfer() {
  if (m_transfer) m_parts.link.Abandon(*m_transfer, Clock::now());
  m_transfer.reset();
}

void Acquisition::LosePackets(const Link::Transfer& transfer, const std::vector<Link::Loss>& losses, Arrival& frame) {
  const CaptureSettings& settings = frame.exposure.settings;
  const LinkSettings& link = m_parts.link.Settings();
  const auto packet_bytes = static_cast<double>(settings.packet_bytes);
  const double packets = static_cast<double>(settings.image_bytes) / packet_bytes;
  LostPackets& lost = frame.content.lost;
  lost = PacketsLostBy(losses, packets, m_random);
  LoseAtRandom(lost, m_parts.packet_loss, packets, m_random);
  if (settings.instant) return;
  const bool too_large = static_cast<std::int64_t>(settings.packet_bytes) + kPacketHeaderBytes > link.mtu_bytes;
  if (too_large) lost.assign(static_cast<std::size_t>(std::ceil(packets)), true);
  if (lost.empty()) return;
  frame.due = transfer.end + ClockDuration(link.frame_timeout);
  if (!link.resends || too_large) return;
  const auto lost_packets = static_cast<double>(std::count(lost.begin(), lost.end(), true));
  frame.resend = m_parts.link.Request(lost_packets * packet_bytes, transfer.bytes_per_s, transfer.end);
  frame.due = m_parts.link.ArrivalOf(frame.resend, transfer.end).moment;
}

bool Acquisition::HandOverArrived(BMutexLock& lock) {
  bool any = false;
  while (!m_arriving.empty() && HasArrived(m_arriving.front())) {
    any = true;
    // Its place in the line is kept until it has been handed over: somebody may ask whether the acquisition is idle.
    Arrival frame = std::move(m_arriving.front());
    if (frame.exposure.aborts == m_aborts) {
      const BMutexUnlock unlocked(m_mutex, lock);
      HandOver(frame);
    }
    m_scratch = std::move(frame.content.rendered);
    m_arriving.pop_front();
  }
  return any;
}

// Or was dropped.
bool Acquisition::HasArrived(Arrival& frame) {
  if (frame.exposure.aborts != m_aborts) return true;
  if (frame.due > Clock::now()) return false;
  if (!frame.resend) return true;
  const auto [moment, complete] = m_parts.link.ArrivalOf(frame.resend, frame.due);
  frame.due = moment;
  if (frame.due > Clock::now()) return false;
  if (complete) frame.content.lost.clear();
  return true;
}

void Acquisition::HandOver(Arrival& frame) {
  const Exposure& exposure = frame.exposure;
  const CaptureSettings& settings = exposure.settings;
  FrameContent& content = frame.content;
  if (exposure.faults.unplug) {
    m_parts.unplug(exposure.faults.replug);
  } else if (exposure.faults.drop) {
    ++m_parts.counters.dropped;
  } else {
    if (settings.automatic && content.scene && content.rendered.empty()) content.Render(settings);
    Deliver(exposure, content);
    if (settings.automatic && content.scene) m_parts.measured(MeansOf(settings.shot, content.rendered.data()));
  }
}

// Runs before the frame is handed over, because its callback may start the next acquisition.
void Acquisition::FinishFrame(Clock::time_point arrived, const Exposure& exposure) {
  const CaptureSettings& settings = exposure.settings;
  const Seconds since_last = arrived - m_last_arrival;
  m_parts.counters.frames_per_s = since_last > Seconds::zero() ? Seconds(1.0) / since_last : 0.0;
  m_last_arrival = arrived;
  // The next exposure may overlap this stream, as long as it does not end before.
  m_ready = std::max(exposure.start + settings.exposure, arrived - settings.exposure);
  if (exposure.acquisition != m_acquisition) return;
  if (++m_frames_done == m_frame_limit) {
    m_running = false;
    m_triggers.clear();
  }
}

std::optional<std::uint64_t> Acquisition::Deliver(const Exposure& exposure, FrameContent& content) {
  const CaptureQueue::Filling filling = m_frames.Take();
  if (!filling) {
    ++m_parts.counters.dropped;
    return std::nullopt;
  }
  const FillResult result = FillFrame(exposure.settings, content, CaptureQueue::BufferOf(filling));
  m_parts.counters.packets_received += result.packets_received;
  m_parts.counters.packets_lost += result.packets_lost;
  ++m_parts.counters.delivered;
  VmbFrame_t frame = DescribeFilled(exposure.settings, result);
  frame.frameID = exposure.frame_id;
  frame.timestamp = m_parts.clock.TicksAt(exposure.start);
  exposure.faults.ApplyTo(frame);
  return m_frames.Complete(
      filling, frame, {[&](VmbFrame_t& announced) { exposure.faults.Alter(announced); }, 1 + exposure.faults.again});
}

bool Acquisition::DeliverNow(const FrameOverride& override) {
  Exposure exposure;
  {
    const BMutexLock lock(m_mutex);
    exposure = {m_settings, Clock::now(), override, m_next_frame_id++, m_acquisition, m_aborts};
    exposure.settings.shot.frame_number = m_parts.counters.exposed++;
    exposure.settings.shot.time = m_parts.clock.TimeAt(exposure.start);
  }
  FrameContent content{m_parts.scene.get(), {}, {}};
  const std::optional<std::uint64_t> number = Deliver(exposure, content);
  if (number) m_frames.WaitForCallback(*number);
  return number.has_value();
}

}  // namespace Simulator
