"""What a validation problem is and what it returns.

Each problem runs the programs on projects of its own (in a scratch folder it is given),
compares them with its reference and returns its checks (a measured difference against the
tolerance it is held to) and its figures (drawn only when the manual is written). The short
form, run by the test suite, takes a coarse and short setting of the same problem and holds
it to the same tolerances.
"""
from dataclasses import dataclass, field
from typing import Callable


@dataclass(frozen=True)
class Check:
    what: str  # the quantity measured, in words
    measured: float
    tolerance: float
    at_least: bool = False  # the measured value must reach the tolerance (a check that a
    # poorer treatment is seen to be poorer), instead of staying at or below it
    percent: bool = True  # shown as a percentage (the values are fractions)

    @property
    def passed(self):
        if self.at_least:
            return self.measured >= self.tolerance
        return self.measured <= self.tolerance

    def shown(self, value):
        return f"{100.0 * value:.3g} %" if self.percent else f"{value:.3g}"

    @property
    def bound(self):
        return ("≥ " if self.at_least else "≤ ") + self.shown(self.tolerance)


@dataclass(frozen=True)
class Figure:
    name: str  # file stem under the manual's image folder
    caption: str
    draw: Callable  # draw(matplotlib figure)
    size: tuple = (8.0, 4.5)  # inches


@dataclass
class Outcome:
    checks: list = field(default_factory=list)
    figures: list = field(default_factory=list)
    notes: list = field(default_factory=list)  # Markdown paragraphs or tables for the manual


@dataclass(frozen=True)
class Problem:
    key: str  # short name: file names, test ids
    title: str
    reference: str  # what VARNEK is compared with (Markdown)
    source: str  # where the reference comes from (Markdown)
    run: Callable  # run(short, work) -> Outcome
