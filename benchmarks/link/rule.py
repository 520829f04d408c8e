"""rule.py: the rule of the stream rate, and what it comes to on an ideal link.

Nothing here is the module's code: the rule is written down a second time, from docs/bandwidth.md.

An ideal link carries everything up to its capacity and has no queue. While the cameras that send are faster together, each of
them loses packets, and a frame that has lost a packet is a failed snap. All begin at the same moment, or each when the one
before has ended. A snap takes the exposure, then the time in which the frame is sent, and ends at the next of the moments at
which a waiting snap looks for its frame.
"""
import dataclasses
import fractions
import math

STEP = 100_000
FLOOR = 45_000_000
WEIGHT = 80
FAILURES_UNTIL_RESET = 4
POLL_MS = 10

SUCCESS = 0
INCOMPLETE = 12103
ABORTED = 12109


def quantised(rate):
    """The nearest multiple of 100,000, halves away from zero."""
    steps = (abs(rate) + STEP // 2) // STEP * STEP
    return steps if rate >= 0 else -steps


def clamped(rate, low, high):
    return low if rate < low else min(rate, high)


class Rate:
    """One camera's rate and what it has learned, in bytes per second."""

    def __init__(self, camera_min, camera_max, key_min=None, key_max=None):
        if camera_min < FLOOR < camera_max:
            camera_min = FLOOR
        self.min = camera_min if key_min is None else max(key_min, camera_min)
        self.max = camera_max if key_max is None else min(key_max, camera_max)
        self.now = clamped(quantised((self.min + 2 * self.max) // 3), self.min, self.max)
        self.sum = self.snaps = self.failures = 0

    def learned(self, limit):
        return quantised(int(fractions.Fraction(WEIGHT * limit + self.sum, WEIGHT + self.snaps)))

    def change(self, percent):
        low, high = self.learned(self.min), self.learned(self.max)
        wanted = self.now + int(fractions.Fraction(self.now * percent, 100))
        if 5 * high < 6 * low:
            limited = self.sum // self.snaps if self.snaps else 0
        else:
            limited = clamped(wanted, low, high)
        self.now = clamped(quantised(limited), self.min, self.max) if self.min <= self.max else self.min

    def after(self, good):
        if good:
            self.failures = 0
            self.sum += self.now
            self.snaps += 1
            self.change(2)
            return
        self.failures += 1
        if self.failures == FAILURES_UNTIL_RESET:
            self.sum = self.snaps = self.failures = 0
        self.change(-10)


@dataclasses.dataclass
class Snap:
    """Of one camera: what came of it, at which rate its frame was sent, and when it began and ended."""

    code: int
    rate: int
    begin_ms: float
    end_ms: float


@dataclasses.dataclass
class IdealLink:
    capacity: float
    background: list = dataclasses.field(default_factory=list)

    def background_between(self, begin_ms, end_ms):
        """The most that other traffic takes of it in that time. Times count from the first frame's beginning."""
        most = 0
        for traffic in self.background:
            first, every = traffic.get("from_ms", 0), traffic.get("every_ms", 0)
            rounds = range(int((end_ms - first) // every) + 1) if every and end_ms >= first else [0]
            for one in rounds:
                begin = first + one * every
                if begin < end_ms and begin + traffic.get("for_ms", math.inf) > begin_ms:
                    most = max(most, traffic["rate_bytes_per_s"])
        return most


def run(rates, link, snaps, frame_bytes, exposure_ms, linked, in_turn):
    """The snaps of each round, a list with one of each camera."""
    rounds, now = [], 0.0
    for _ in range(snaps):
        if linked:
            lowest = min(rate.now for rate in rates)
            for rate in rates:
                rate.now = min(rate.now, lowest)
        results = []
        for place, rate in enumerate(rates):
            together = [rate] if in_turn else rates
            begin = now if not in_turn or place == 0 else results[-1].end_ms
            send = begin + exposure_ms
            sent = send + 1000.0 * frame_bytes / rate.now
            others = link.background_between(send - exposure_ms, sent - exposure_ms)
            good = sum(one.now for one in together) + others <= link.capacity
            end = begin + math.ceil((sent - begin) / POLL_MS) * POLL_MS
            results.append(Snap(SUCCESS if good else INCOMPLETE, rate.now, begin, end))
        for rate, snap in zip(rates, results):
            rate.after(snap.code == SUCCESS)
        now = max(snap.end_ms for snap in results)
        rounds.append(results)
    return rounds
