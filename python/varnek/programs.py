"""Where the C++ programs lie: varnek, varnek-selfweight and varnek-freefield.

In this order: the folder that the environment variable VARNEK_BIN names; in an installed
package, the folder of the launcher (<prefix>/bin) and then the PATH; in the source tree,
<source root>/build/ as scripts/build.sh leaves it.
"""
import os
import shutil
import sys

from .errors import InputError

ANALYSIS, SELFWEIGHT, FREEFIELD = "varnek", "varnek-selfweight", "varnek-freefield"
PROGRAMS = (ANALYSIS, SELFWEIGHT, FREEFIELD)
BIN_VARIABLE = "VARNEK_BIN"


def source_root():
    """The top folder of the source tree that holds this package, or None when installed."""
    root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
    if os.path.isfile(os.path.join(root, "CMakeLists.txt")) and \
            os.path.isdir(os.path.join(root, "src")):
        return root
    return None


def _launcher_folder():
    launcher = sys.argv[0] if sys.argv and sys.argv[0] not in ("", "-c", "-m") else ""
    return os.path.dirname(os.path.realpath(launcher)) if launcher else None


def find_program(name):
    """The path of one of the programs; InputError (status 2) naming it and how to get it."""
    given = os.environ.get(BIN_VARIABLE)
    if given:
        path = os.path.join(given, name)
        if os.access(path, os.X_OK):
            return path
        raise InputError(f"{name} not found in {given} (the folder {BIN_VARIABLE} names): "
                         f"build it with scripts/build.sh, or set {BIN_VARIABLE} to the "
                         "folder that holds it")
    root = source_root()
    if root is not None:
        path = os.path.join(root, "build", name)
        if os.access(path, os.X_OK):
            return path
        raise InputError(f"{name} not found in {os.path.join(root, 'build')}: build it with "
                         f"{os.path.join(root, 'scripts', 'build.sh')}")
    folder = _launcher_folder()
    if folder and os.access(os.path.join(folder, name), os.X_OK):
        return os.path.join(folder, name)
    found = shutil.which(name)
    if found:
        return found
    raise InputError(f"{name} not found beside the launcher ({folder or 'unknown folder'}) "
                     f"nor on the PATH: install the varnek package again, or set {BIN_VARIABLE} "
                     "to the folder that holds the programs")
