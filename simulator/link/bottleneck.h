// link/bottleneck.h
// A queue of limited length in front of what carries so many bytes a second.
#pragma once

#include "link/period.h"

namespace Simulator {

// Arithmetic of a constant inflow. The caller keeps the length of the queue, the backlog.
struct Bottleneck {
  double capacity_bytes_per_s;
  double buffer_bytes;

  // How long the inflow lasts until the queue becomes full or empty; kNever: it stays as it is or already is so.
  Seconds UntilTurn(double backlog_bytes, double inflow_bytes_per_s) const {
    const double growth_bytes_per_s = inflow_bytes_per_s - capacity_bytes_per_s;
    if (growth_bytes_per_s > 0.0 && backlog_bytes < buffer_bytes)
      return Seconds((buffer_bytes - backlog_bytes) / growth_bytes_per_s);
    if (growth_bytes_per_s < 0.0 && backlog_bytes > 0.0) return Seconds(backlog_bytes / -growth_bytes_per_s);
    return kNever;
  }

  // The next four hold until the queue turns.
  double BacklogAfter(Seconds time, double backlog_bytes, double inflow_bytes_per_s) const {
    // Rounding leaves less than this of a queue that has turned.
    constexpr double kRoundingBytes = 1e-6;
    if (UntilTurn(backlog_bytes, inflow_bytes_per_s) == kNever) return backlog_bytes;
    const double bytes = backlog_bytes + (inflow_bytes_per_s - capacity_bytes_per_s) * time.count();
    if (bytes < kRoundingBytes) return 0.0;
    return bytes > buffer_bytes - kRoundingBytes ? buffer_bytes : bytes;
  }
  // The part of the inflow for which a full queue has no room, 0 to 1.
  double LostShare(double backlog_bytes, double inflow_bytes_per_s) const {
    if (inflow_bytes_per_s <= capacity_bytes_per_s || backlog_bytes < buffer_bytes) return 0.0;
    return (inflow_bytes_per_s - capacity_bytes_per_s) / inflow_bytes_per_s;
  }
  double Outflow(double backlog_bytes, double inflow_bytes_per_s) const {
    return backlog_bytes > 0.0 ? capacity_bytes_per_s : std::min(inflow_bytes_per_s, capacity_bytes_per_s);
  }
  // The capacity that nothing uses.
  double Free(double backlog_bytes, double inflow_bytes_per_s) const {
    return capacity_bytes_per_s - Outflow(backlog_bytes, inflow_bytes_per_s);
  }
};

}  // namespace Simulator
