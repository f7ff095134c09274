"""VARNEK's Python tools: the project readers they share, and one module per tool (report)."""
__version__ = "0.9.0"
