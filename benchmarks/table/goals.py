"""What is measured, and what it should be: the one place for goals."""

import dataclasses


@dataclasses.dataclass(frozen=True)
class Goal:
    """One line of the table. One of the three limits: ours by the bare thing, the figure at most, the figure at least."""

    name: str
    ratio: float = None
    most: float = None
    least: float = None
    on_wish: bool = False  # only where it is asked for

    def text(self):
        if self.ratio is not None:
            return f"<= {self.ratio:g} of it"
        return f"<= {self.most:g}" if self.most is not None else f">= {self.least:g}"

    def is_met(self, row):
        if self.ratio is not None:
            return ratio(row) <= self.ratio
        return row["ours"] <= self.most if self.most is not None else row["ours"] >= self.least


def ratio(row):
    """None without the bare thing."""
    return row["ours"] / row["bare"] if row.get("bare") else None


LINE_USE = [f"line use, {speed} bit/s, {what}" for speed in (1200, 9600, 19200)
            for what in ("statuses", "texts of 25", "texts of 100")]

GOALS = [
    Goal("log record, files", ratio=1.1),
    Goal("log record, server", ratio=1.1),
    Goal("log reload, files", ratio=1.2),
    Goal("log reload, server", ratio=1.2),
    Goal("look-up by number", most=1),
    Goal("look-up by callsign", most=1),
    Goal("directory opened", ratio=1.2),
    Goal("a key typed into an address, longest", most=16),
    *[Goal(f"log window search for a {what}, {engine}", ratio=1.3) for engine in ("files", "server") for what in ("word", "number")],
    Goal("start to the first painted window", ratio=1.3),
    Goal("memory at the first painted window", ratio=1.3),
    Goal("idle, link probed", most=0.2),
    Goal("messages a second, stored and shown", least=2000),
    Goal("frame to painted line, p99", most=8),
    *[Goal(name, least=98) for name in LINE_USE],
    Goal("round trips, what reads or adds", most=3),
    Goal("round trips, what others may change", most=3),
    Goal("a change seen by all consoles, p99", most=100),
    Goal("veltorkyn-radio of one core", most=100),
    Goal("build from nothing", most=240, on_wish=True),
    Goal("./test", most=360, on_wish=True),
]
