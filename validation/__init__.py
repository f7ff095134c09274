"""The validation manual: the problems VARNEK is checked against, each with its reference, its
figures and its measured differences. `validation/make_manual.py` runs them and writes
docs/validation.md; tests/python/validation/ runs their short setting."""
from . import (benchmark_equivalent_linear, benchmark_linear, column_transfer,
               equivalent_linear, free_field, self_weight, thin_layer, valley)

PROBLEMS = [
    column_transfer.PROBLEM,
    benchmark_linear.PROBLEM,
    benchmark_equivalent_linear.PROBLEM,
    equivalent_linear.PROBLEM,
    self_weight.PROBLEM,
    free_field.PROBLEM,
    thin_layer.PROBLEM,
    valley.PROBLEM,
]
