"""varnek-run: the whole chain from a site description or a run folder to the report, each
stage run when what it was computed from has changed, with progress and a log per stage.

    from varnek.run import Settings, resolve, run_chain
    from varnek.run.display import PlainView
    status = run_chain(resolve("valley.toml", settings=Settings(ranks=4)), PlainView())
"""
from .chain import resolve, run_chain
from .folder import Settings
from .stages import STAGES

__all__ = ["STAGES", "Settings", "resolve", "run_chain"]
