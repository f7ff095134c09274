"""The console of a real analysis (the tiny mixed mesh with two iterations, recorded from
build/varnek with standard error into standard output) as varnek-run keeps it in the log and
tells it in plain progress lines."""
import codecs
import io
import os
import re

import pytest

from varnek.run.console import ConsoleText, Totals
from varnek.run.display import PlainView

with open(os.path.join(os.path.dirname(__file__), "mixed-analysis-console.txt"), "rb") as f:
    RECORDED = f.read()

LOG_LINES = [
    "section/", "Input GAL", "FFT用にデータを2のべき乗に変更します21から32個へ変更します",
    "SeismicTime = 0.320000", " Seismic data : fmin = 3.12\tfmax = 50.00",
    "Calculate 9.38 Hz : ωs = 58.90 FFTSpc 0.003", "等価線形化計算 1 回目",
    "ERROR = 0.000578675\tTOL=0.0001",
    "Calculate 9.38 Hz : ωs = 58.90 FFTSpc 0.003", "等価線形化計算 2 回目",
    "ERROR = 5.89003e-07\tTOL=0.0001", "",
    "変位計算終了", "応答加速度終了", "時刻歴ファイル出力終了(Disp and Acc)\t\t\t",
    "応力ひずみ計算終了", "時刻歴ファイル出力終了(Stress and Strain)\t\t\t", "最大値分布出力終了",
    "節点加速度データファイル出力終了\t\t\t\t\t", "要素応力データファイル出力終了\t\t\t\t\t",
]

PLAIN = """\
[4/5] analysis: asked for; console in logs/analysis.log
  analysis: frequency lines 1/3
  analysis: frequency lines 3/3, 1.0 lines/s, 0 s left
  analysis: iteration 1 of 3: ERROR 0.000578675 against TOL 0.0001
  analysis: frequency lines 1/3
  analysis: frequency lines 3/3, 1.0 lines/s, 0 s left
  analysis: iteration 2 of 3: ERROR 5.89003e-07 against TOL 0.0001
  analysis: output: displacement histories
  analysis: output: acceleration histories
  analysis: output: step files, displacements and accelerations 1/21
  analysis: output: step files, displacements and accelerations 21/21
  analysis: output: stress and strain histories
  analysis: output: step files, stresses, batch 1/1 1/21
  analysis: output: step files, stresses, batch 1/1 21/21
  analysis: output: step files, strains, batch 1/1 1/21
  analysis: output: step files, strains, batch 1/1 21/21
  analysis: output: maxima
  analysis: output: node acceleration histories 1/13
  analysis: output: node acceleration histories 3/13
  analysis: output: node acceleration histories 5/13
  analysis: output: node acceleration histories 7/13
  analysis: output: node acceleration histories 9/13
  analysis: output: node acceleration histories 11/13
  analysis: output: node acceleration histories 13/13
  analysis: output: element stress histories 1/3
  analysis: output: element stress histories 3/3
  analysis: done in 3 s
"""


def read_in_pieces(size):
    """The recording as the pipe may hand it over: pieces of `size` bytes, characters cut."""
    decoder = codecs.getincrementaldecoder("utf-8")()
    text, segments, lines = ConsoleText(), [], []
    for i in range(0, len(RECORDED), size):
        s, l = text.feed(decoder.decode(RECORDED[i:i + size]))
        segments += s
        lines += l
    return segments, lines + text.close()


@pytest.mark.parametrize("size", [1, 7, 1 << 16])
def test_the_log_keeps_each_rewritten_line_as_its_last_state(size):
    assert read_in_pieces(size)[1] == LOG_LINES


@pytest.mark.parametrize("size", [1, 1 << 16])
def test_plain_lines_tell_the_iterations_the_frequency_lines_and_the_output_steps(size):
    out = io.StringIO()
    seconds = [0.0]  # one second a closed segment
    view = PlainView(out, clock=lambda: seconds[0], interval=2)
    view.start("analysis", 4, 5, "asked for", "logs/analysis.log",
               Totals(lines=3, iteration_limit=3, steps=21, elements=3, nodes=13))
    for segment, closed in read_in_pieces(size)[0]:
        seconds[0] += closed
        view.segment(segment, closed)
    view.end("analysis", 0, 3.2)
    if size > len(RECORDED):
        assert out.getvalue() == PLAIN
    else:
        # An output step already written but not yet closed counts as reached, so the counts
        # shown may differ; frequency lines count only when closed, once.
        def uncounted(text):
            return [line for line in text.splitlines() if not re.search(r"output: .* \d+/", line)]
        assert uncounted(out.getvalue()) == uncounted(PLAIN)


def test_the_progress_line_of_the_python_tools_reads_as_a_count_against_its_total():
    from varnek.progress import Progress as ToolProgress
    from varnek.run.console import Progress
    said = io.StringIO()
    tool = ToolProgress("writing ParaView files", 250, "steps", stream=said, clock=lambda: 0.0)
    shown = Progress(Totals())
    for _ in range(250):
        tool.advance()
    texts = []
    for line in said.getvalue().splitlines():
        shown.take(line, True, 0.0)
        texts.append(shown.phase_text())
    assert texts == [f"writing ParaView files (steps) {n}/250" for n in (100, 200, 250)]


@pytest.mark.parametrize("console, says", [
    (["Calculate 1 Hz", "等価線形化計算 1 回目", "ERROR = 0.5\tTOL=0.02", "Calculate 1 Hz"],
     "iteration 2 of 2, last ERROR 0.5 against TOL 0.02"),
    (["等価線形化計算 1 回目", "ERROR = 0.5\tTOL=0.02", "等価線形化計算 2 回目",
      "ERROR = 0.1\tTOL=0.02"], "iteration limit 2 reached: ERROR 0.1 against TOL 0.02"),
    (["等価線形化計算 1 回目", "ERROR = 0.01\tTOL=0.02"],
     "converged in 1 iteration: ERROR 0.01 below TOL 0.02"),
    (["Free-field column, left edge (x = 0): 3 layers", "等価線形化計算 1 回目",
      "ERROR = 0.02\tTOL=0.02"], "left column, iteration 2 of 2, last ERROR 0.02 against TOL 0.02"),
])
def test_the_panel_tells_the_iteration_against_its_limit(console, says):
    from varnek.run.console import Progress
    shown = Progress(Totals(iteration_limit=2))
    for segment in console:
        shown.take(segment, True, 0.0)
    assert shown.iteration_text() == says
