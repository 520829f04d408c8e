"""plots.py: each camera's rate over the snaps of a case, one panel for each way."""
import matplotlib

matplotlib.use("Agg")
# The same file from the same figures.
matplotlib.rcParams["svg.hashsalt"] = "link"
import matplotlib.pyplot as plt  # noqa: E402
import PIL.Image  # noqa: E402

import rule  # noqa: E402

MEGA = 1e6
LOWEST, HIGHEST = 20, 130


def draw(case, rounds, ideals, path):
    """As PATH.svg and PATH.png; both by the way's name."""
    figure, panels = plt.subplots(len(rounds), 1, figsize=(8, 1.9 * len(rounds)), sharex=True, sharey=True)
    for panel, (way, results) in zip(panels, rounds.items()):
        numbers = range(1, len(results) + 1)
        for camera in range(case.cameras):
            panel.plot(numbers, [snaps[camera].rate / MEGA if snaps[camera] else float("nan") for snaps in results],
                       linewidth=0.7)
        if ideals[way]:
            panel.plot(numbers, [snaps[0].rate / MEGA for snaps in ideals[way]], color="black", linewidth=0.5,
                       linestyle=":")
        bad = [i for i, snaps in zip(numbers, results) if any(snap.code != rule.SUCCESS for snap in snaps if snap)]
        panel.plot(bad, [LOWEST + 2] * len(bad), "|", color="black", markersize=4, markeredgewidth=0.3)
        panel.axhline(case.usable / case.cameras / MEGA, color="black", linestyle="--", linewidth=0.6)
        panel.set_ylim(LOWEST, HIGHEST)
        panel.set_ylabel(f"{way}\n10⁶ bytes/s")
    panels[0].set_title(f"{case.title}\neach camera's rate; dotted: on an ideal link; dashed: the fair share; strokes: "
                        "failed snaps", fontsize=8)
    panels[-1].set_xlabel("snap")
    panels[-1].set_xlim(0, len(next(iter(rounds.values()))))
    figure.tight_layout()
    figure.savefig(f"{path}.svg", metadata={"Date": None})
    figure.savefig(f"{path}.png", dpi=110)
    plt.close(figure)
    # A few colours do, and take a third of the room.
    with PIL.Image.open(f"{path}.png") as image:
        image.quantize(64).save(f"{path}.png", optimize=True)
