"""The two kinds of failure the tools report to their user, each one message and an exit status.

InputError: something a file, key or line the user gave lacks or holds wrong (status 2).
OutputError: a result that cannot be written (status 1).
The message names the file and the line or key, and the fault.
"""


class VarnekError(Exception):
    status = 2


class InputError(VarnekError):
    """Input that the tool cannot take; the message names where and what."""
    status = 2


class OutputError(VarnekError):
    """A file or folder that cannot be written; the message names it and the system's reason."""
    status = 1
