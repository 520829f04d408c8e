"""idle_time.py: how much of the machine nobody has used, as idle_time.h."""


class IdleTime:
    """From its construction on."""

    def __init__(self):
        self.begin = self.read()

    def share(self):
        idle, everything = (now - before for now, before in zip(self.read(), self.begin))
        return idle / everything if everything else 1.0

    def was_enough(self):
        """Whether the processors had nothing to do for a tenth of the time at least."""
        return self.share() >= 0.1

    @staticmethod
    def read():
        # The first line: user, nice, system, idle, waiting for input and output, interrupts, ...
        with open("/proc/stat", encoding="ascii") as file:
            ticks = [int(word) for word in file.readline().split()[1:9]]
        return ticks[3] + ticks[4], sum(ticks)
