"""cases.py: the rigs of the study: cameras, links, and the ways in which their rates are found."""
import dataclasses

# The simulated camera: 2464 x 2056 pixels of 8 bits, the range of its StreamBytesPerSecond, what a packet of it carries.
FRAME_BYTES = 2464 * 2056
CAMERA_MIN = 1_000_000
CAMERA_MAX = 124_000_000
PACKET_BYTES = 8192

# What Ethernet leaves of a link's bits for packets of 8 KiB, with room for the answers of the cameras.
GIGABIT = 115_000_000
TWO_AND_A_HALF_GIGABIT = 290_000_000
FIVE_GIGABIT = 575_000_000
# Shared by the ports of a small switch.
SWITCH_BUFFER_BYTES = 131_072
# How long the library waits for packets that may still come.
FRAME_TIMEOUT_MS = 100

WAYS = ("fixed", "unlinked", "linked")


@dataclasses.dataclass(frozen=True, eq=False)
class Case:
    name: str
    title: str
    cameras: int
    capacity: int = GIGABIT
    highest: int = CAMERA_MAX
    receiver: int = 0
    background: tuple = ()
    # "together", "in turn" or each at its "own" pace.
    pace: str = "together"
    resends: bool = False
    # Of each camera, the last one for the others, too.
    exposures_ms: tuple = (5,)
    # All but the first camera begin after so many of its snaps.
    joins_after: int = 0
    # Part of the packets that the last camera loses by itself.
    loss: float = 0.0
    # What the host sets before each snap.
    host_rate: int = 0

    @property
    def usable(self):
        return min(self.capacity, self.receiver or self.capacity)

    def exposure_ms(self, camera):
        return self.exposures_ms[min(camera, len(self.exposures_ms) - 1)]

    def keys(self, way):
        """Of the profile. Where both limits are the same number, the rate stays there."""
        keys = {}
        if self.highest < CAMERA_MAX:
            keys["BYTEPERSECOND"] = str(self.highest)
        if way == "fixed":
            keys["MIN_BYTEPERSECOND"] = str(self.highest)
        return keys

    def rig(self, way, seed, snaps, buffer_bytes):
        """For bench_link."""
        link = {"capacity": self.capacity, "buffer_bytes": buffer_bytes,
                "frameTimeout_ms": FRAME_TIMEOUT_MS, "resends": self.resends}
        if self.receiver:
            link["receiver"] = {"capacity": self.receiver, "buffer_bytes": buffer_bytes}
        if self.background:
            link["background"] = list(self.background)
        cameras = [
            {"id": f"DEV_{i + 1}", "serial": str(i + 1), "scene": "none", "noise": False, "seed": 1000 * seed + i,
             "features": {"ExposureTimeAbs": 1000 * self.exposure_ms(i)}}
            for i in range(self.cameras)
        ]
        cameras[-1]["packetLoss"] = self.loss
        return {
            "simulator": {"link": link, "cameras": cameras},
            "profile": self.keys(way),
            "linked": way == "linked",
            "pace": self.pace,
            "joins_after": self.joins_after,
            "host_rate_bytes_per_s": self.host_rate,
            "snaps": snaps,
        }


# A second camera of another program, or a copy over the network: five seconds of every twenty.
COMES_AND_GOES = ({"rate_bytes_per_s": 20_000_000, "from_ms": 5000, "for_ms": 5000, "every_ms": 20000},)

CASES = (
    Case("one", "one camera, gigabit", 1),
    Case("two", "two cameras, gigabit", 2),
    Case("three", "three cameras, gigabit", 3),
    Case("four", "four cameras, gigabit", 4),
    Case("four-2.5g", "four cameras, 2.5 gigabit", 4, TWO_AND_A_HALF_GIGABIT),
    Case("eight-5g", "eight cameras, 5 gigabit", 8, FIVE_GIGABIT),
    Case("two-57m", "two cameras, gigabit, BYTEPERSECOND=57000000", 2, highest=57_000_000),
    Case("two-background", "two cameras, gigabit, other traffic comes and goes", 2, background=COMES_AND_GOES),
    Case("two-receiver", "two cameras, gigabit, a receiver of 90,000,000 bytes/s", 2, receiver=90_000_000),
    Case("two-receiver-45m", "two cameras, a receiver of 90,000,000 bytes/s, BYTEPERSECOND=45000000", 2,
         highest=45_000_000, receiver=90_000_000),
    Case("two-in-turn", "two cameras, gigabit, triggered in turn", 2, pace="in turn"),
    Case("two-resends", "two cameras, gigabit, lost packets are sent again", 2, resends=True),
    Case("two-own-pace", "two cameras, gigabit, each at its own pace", 2, pace="own", exposures_ms=(5, 12)),
    Case("two-joining", "a second camera, gigabit, after 200 snaps of the first", 2, joins_after=200),
    Case("two-one-bad", "two cameras, gigabit, one loses packets by itself", 2, loss=0.0005),
    Case("three-in-turn", "three cameras, gigabit, triggered in turn", 3, pace="in turn"),
    Case("three-by-host", "three cameras, gigabit, the host sets 38,000,000 before each snap", 3, host_rate=38_000_000),
)
