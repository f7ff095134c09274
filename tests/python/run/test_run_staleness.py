"""Which stages varnek-run runs again after which change: a stage whose inputs changed and the
stages after it that depend on it, nothing when nothing changed. Stand-ins play the stages."""
import io
import os

import pytest

import run_standins as si
from varnek.run import Settings, resolve, run_chain
from varnek.run.display import PlainView

ALL = ["prepare", "varnek-selfweight", "varnek-freefield", "varnek", "report"]


@pytest.fixture
def site(tmp_path, monkeypatch):
    monkeypatch.setenv("VARNEK_BIN", si.program_folder(str(tmp_path)))
    si.tool_stages(monkeypatch)
    return si.write_site(str(tmp_path))


def go(site, settings=None, **how):
    out = io.StringIO()
    status = run_chain(resolve(site, settings=settings or Settings()), PlainView(out), **how)
    assert status == 0, out.getvalue()
    return si.ran(os.path.splitext(site)[0])


def append(path, text):
    with open(path, "a") as f:
        f.write(text)


CASES = [
    # what changed; what to do to the site or the run folder; what to ask; what runs again
    ("nothing", None, {}, []),
    ("a material of the site", lambda site, run: si.write_site(os.path.dirname(site), g0=90),
     {}, ALL),
    ("a report option of the site",
     lambda site, run: si.write_site(os.path.dirname(site), report="nodes = [2]"), {},
     ["report"]),
    ("a report option on the command line", None,
     {"settings": Settings(report={"nodes": [2]})}, ["report"]),
    ("the wave, by hand", lambda site, run: append(os.path.join(run, "project", "wave.csv"),
                                                   "0.21,5\n"),
     {}, ["varnek-freefield", "varnek", "report"]),
    ("the self-weight method", None, {"settings": Settings(selfweight_method="gravity")},
     ["varnek-selfweight", "varnek-freefield", "varnek", "report"]),
    ("the ranks of the analysis", None, {"settings": Settings(ranks=2)}, []),
    ("the end marker gone", lambda site, run: os.remove(os.path.join(run, "a_end.dat")), {},
     ["varnek", "report"]),
    ("the report gone", lambda site, run: os.remove(
        os.path.join(run, "project", "report", "report.md")), {}, ["report"]),
    ("--only freefield", None, {"only": "freefield"}, ["varnek-freefield"]),
    ("--from analysis", None, {"from_stage": "analysis"}, ["varnek", "report"]),
    ("--force", None, {"force": True}, ALL),
]


@pytest.mark.parametrize("what, change, ask, again", CASES, ids=[c[0] for c in CASES])
def test_a_change_runs_again_the_stages_that_depend_on_it(site, what, change, ask, again):
    run_dir = os.path.splitext(site)[0]
    assert go(site) == ALL
    if change:
        change(site, run_dir)
    assert go(site, **ask) == again
    settings = ask.get("settings")
    assert go(site, settings) == [], "a second run finds everything current"


def test_the_options_of_the_command_line_go_over_those_of_the_site(site):
    run_dir = os.path.splitext(site)[0]
    go(site, Settings(report={"nodes": [4, 5]}))
    with open(os.path.join(run_dir, "project", "report", "report.md")) as f:
        assert f.read().split() == ["--nodes=4,5"]
    with open(os.path.join(run_dir, "logs", "report.record")) as f:
        assert "\noption nodes 4,5\n" in f.read()
