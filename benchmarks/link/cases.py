"""cases.py: the rigs of the study: cameras, links, and the ways in which their rates are found."""
import dataclasses

# The simulated camera: 2464 x 2056 pixels of 8 bits, and the range of its StreamBytesPerSecond.
FRAME_BYTES = 2464 * 2056
CAMERA_MIN = 1_000_000
CAMERA_MAX = 124_000_000
EXPOSURE_MS = 5

# What Ethernet leaves of a link's bits for packets of 8 KiB, with room for the answers of the cameras.
GIGABIT = 115_000_000
TWO_AND_A_HALF_GIGABIT = 290_000_000
FIVE_GIGABIT = 575_000_000
# Shared by the ports of a small switch.
SWITCH_BUFFER_BYTES = 131_072

WAYS = ("fixed", "unlinked", "linked")


@dataclasses.dataclass(frozen=True)
class Case:
    name: str
    title: str
    cameras: int
    capacity: int = GIGABIT
    highest: int = CAMERA_MAX
    receiver: int = 0
    background: tuple = ()
    in_turn: bool = False

    @property
    def usable(self):
        return min(self.capacity, self.receiver or self.capacity)

    def keys(self, way):
        """Of the profile. Where both limits are the same number, the rate stays there."""
        keys = {}
        if self.highest < CAMERA_MAX:
            keys["BYTEPERSECOND"] = str(self.highest)
        if way == "fixed":
            keys["MIN_BYTEPERSECOND"] = str(self.highest)
        return keys

    def rig(self, way, seed, snaps):
        """For bench_link."""
        link = {"capacity": self.capacity, "buffer_bytes": SWITCH_BUFFER_BYTES}
        if self.receiver:
            link["receiver"] = {"capacity": self.receiver, "buffer_bytes": SWITCH_BUFFER_BYTES}
        if self.background:
            link["background"] = list(self.background)
        cameras = [
            {"id": f"DEV_{i + 1}", "serial": str(i + 1), "scene": "none", "noise": False, "seed": 1000 * seed + i,
             "features": {"ExposureTimeAbs": 1000 * EXPOSURE_MS}}
            for i in range(self.cameras)
        ]
        return {
            "simulator": {"link": link, "cameras": cameras},
            "profile": self.keys(way),
            "linked": way == "linked",
            "in_turn": self.in_turn,
            "snaps": snaps,
        }


# A second camera of another program, or a copy over the network: five seconds of every twenty.
COMES_AND_GOES = ({"rate_bytes_per_s": 40_000_000, "from_ms": 5000, "for_ms": 5000, "every_ms": 20000},)

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
    Case("two-in-turn", "two cameras, gigabit, triggered in turn", 2, in_turn=True),
)
