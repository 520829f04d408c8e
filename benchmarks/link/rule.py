"""rule.py: the rule of the stream rate, and what it comes to on an ideal link.

Nothing here is the module's code: the rule is written down a second time, from docs/bandwidth.md.

An ideal link carries everything up to its capacity and has no queue. While the cameras that send are faster together, each of
them loses packets, and a frame that has lost a packet is a failed snap. All begin at the same moment, or each when the one
before has ended. A snap takes the exposure, then the time in which the frame is sent, for a lost frame also the time-out of
the library, and ends at the next of the moments at which a waiting snap looks for its frame. Of partners that lose their
frames at the same moment one reports its loss, and that aborts the others.
"""
import dataclasses
import fractions
import math
import random

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


@dataclasses.dataclass
class IdealRig:
    """Cameras of one size of frames that snap together or in turn, and what the link adds to the time of a snap."""

    link: IdealLink
    rates: list
    frame_bytes: int
    exposure_ms: float
    timeout_ms: float
    linked: bool = False
    in_turn: bool = False
    joins_after: int = 0
    host_rate: int = 0
    # Probability that the last camera loses a frame by itself.
    loss: float = 0.0
    seed: int = 1

    def run(self, count):
        """The snaps of each round, a list with one of each camera; None of one that has not joined yet."""
        chance, now, rounds = random.Random(self.seed), 0.0, []
        for number in range(1, count + 1):
            present = self.rates[:1] if number <= self.joins_after else self.rates
            if self.in_turn:
                snaps = []
                for rate in present:
                    snaps += self.together([rate], present, snaps[-1].end_ms if snaps else now, chance)
            else:
                snaps = self.together(present, present, now, chance)
            now = snaps[-1].end_ms if self.in_turn else max(snap.end_ms for snap in snaps)
            rounds.append(snaps + [None] * (len(self.rates) - len(snaps)))
        return rounds

    def together(self, rates, partners, begin, chance):
        for rate in rates:
            rate.now = self.host_rate or rate.now
        if self.linked:
            lowest = min(rate.now for rate in partners)
            for rate in rates:
                rate.now = min(rate.now, lowest)
        snaps = []
        for rate in rates:
            sent = begin + self.exposure_ms + 1000.0 * self.frame_bytes / rate.now
            others = self.link.background_between(begin, sent - self.exposure_ms)
            overloaded = sum(one.now for one in rates) + others > self.link.capacity
            good = not overloaded and not (rate is self.rates[-1] and chance.random() < self.loss)
            aborted = overloaded and self.linked and snaps
            arrived = sent if good else sent + self.timeout_ms
            code = SUCCESS if good else ABORTED if aborted else INCOMPLETE
            snaps.append(Snap(code, rate.now, begin, begin + math.ceil((arrived - begin) / POLL_MS) * POLL_MS))
        for rate, snap in zip(rates, snaps):
            rate.after(snap.code == SUCCESS)
        return snaps
