"""The one kind of failure the tool reports to its user: a message and exit status 2."""


class ReportError(Exception):
    """Something the run folder lacks or holds wrong; the message names it."""
