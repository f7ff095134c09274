"""The validation manual: the problems VARNEK is checked against, each with its reference, its
figures and its measured differences. `validation/make_manual.py` runs them and writes
docs/validation.md; tests/python/validation/ runs their short setting."""
from . import (benchmark_equivalent_linear, benchmark_linear, column_transfer,
               equivalent_linear, self_weight, thin_layer)

PROBLEMS = [
    column_transfer.PROBLEM,
    benchmark_linear.PROBLEM,
    benchmark_equivalent_linear.PROBLEM,
    equivalent_linear.PROBLEM,
    self_weight.PROBLEM,
    thin_layer.PROBLEM,
]
