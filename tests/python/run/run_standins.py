"""Stand-ins for the stages of varnek-run: each appends its name and arguments to
RUNDIR/journal.txt and leaves its result with a record in the programs' format, from a project
of the tiny mixed mesh. STANDIN_FAIL=<name> makes one end with status 3, STANDIN_NOEND the
analysis end with 0 but no a_end.dat, STANDIN_SLEEP=<name> one hang after it has begun to
write (output_ff.partial/ for the free field)."""
import hashlib
import os
import sys
import time

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "..", "python"))
sys.path.insert(0, os.path.join(HERE, ".."))

SITE = """[soil]
g0 = {g0}
wave_factor = 1

[report]
nodes = [1, 3]
"""
ROLES = ("constants", "wave", "nodes", "elements", "materials", "boundary")


def sha(path):
    with open(path, "rb") as f:
        return hashlib.sha256(f.read()).hexdigest()


def write_site(folder, g0=80, report="nodes = [1, 3]"):
    path = os.path.join(folder, "site.toml")
    with open(path, "w") as f:
        f.write(SITE.format(g0=g0).replace("nodes = [1, 3]", report))
    return path


def program_folder(tmp):
    """A folder of stand-ins named as the C++ programs, for VARNEK_BIN."""
    folder = os.path.join(tmp, "bin")
    os.makedirs(folder, exist_ok=True)
    for name in ("varnek", "varnek-selfweight", "varnek-freefield"):
        path = os.path.join(folder, name)
        with open(path, "w") as f:
            f.write(f'#!/bin/sh\nexec /usr/bin/python3 {os.path.abspath(__file__)} {name} "$@"\n')
        os.chmod(path, 0o755)
    return folder


def prepare(site, run_dir, method="k0"):
    """What varnek-prepare leaves, from the stand-in site: project/ of the mixed mesh with side
    treatment 0 and the site's G0 for the gravel."""
    import json
    import tomllib
    from conftest import write_mixed_project
    from varnek.run.stages import site_digest
    with open(site, "rb") as f:
        data = tomllib.load(f)
    project = os.path.join(run_dir, "project")
    write_mixed_project(project, single_step=False)
    with open(os.path.join(project, "c.dat"), "w") as f:
        f.write("10\n0\n0.01\n0.05\n0.65\n3\n0\n")
    with open(os.path.join(project, "mat.dat")) as f:
        materials = f.read()
    with open(os.path.join(project, "mat.dat"), "w") as f:
        f.write(materials.replace("\n80\n", f"\n{data['soil']['g0']}\n", 1))
    with open(os.path.join(run_dir, "config_VARNEK.txt"), "w") as f:
        f.write("project/\n")
    os.makedirs(os.path.join(run_dir, "preparation"), exist_ok=True)
    with open(os.path.join(run_dir, "preparation", "preparation.json"), "w") as f:
        json.dump({"site": site, "selfweight_method": method, "side_treatment": 0,
                   "report": data.get("report", {})}, f)
    with open(os.path.join(run_dir, "preparation", "record.txt"), "w") as f:
        f.write(f"# varnek-prepare 0.9.0\ninput site {site_digest(site)} {site}\n")


def journal(run_dir, *words):
    with open(os.path.join(run_dir, "journal.txt"), "a") as f:
        f.write(" ".join(words) + "\n")


def ran(run_dir):
    """The stages that ran since the journal was last read, in order."""
    path = os.path.join(run_dir, "journal.txt")
    if not os.path.exists(path):
        return []
    with open(path) as f:
        names = [line.split()[0] for line in f if line.strip()]
    os.remove(path)
    return names


def _record(path, program, options, files):
    with open(path, "w") as f:
        f.write(f"# {program} 0.9.0\n")
        f.writelines(f"option {k} {v}\n" for k, v in options)
        f.writelines(f"input {role} {sha(p)} {p}\n" for role, p in files)


def _program(name, args):
    with open("config_VARNEK.txt") as f:
        prefix = f.readline().strip()
    with open(prefix + "input_VARNEK.inp") as f:
        files = dict(zip(ROLES, (prefix + line.strip() for line in f if line.strip())))
    journal(".", name, *args)
    print(f"{name} of {prefix}", flush=True)
    if os.environ.get("STANDIN_FAIL") == name:
        print("stand-in fault: the model is wrong", flush=True)
        sys.exit(3)
    if os.environ.get("STANDIN_SLEEP") == name:
        os.makedirs(prefix + "output_ff.partial", exist_ok=True)
        print("等価線形化計算 1 回目", flush=True)
        time.sleep(60)
    if name == "varnek-selfweight":
        method = args[args.index("--method") + 1]
        used = [(r, files[r]) for r in ("nodes", "elements", "materials", "boundary")]
        with open(prefix + "output0.inp", "w") as f:
            f.write(method + "".join(sha(p) for _, p in used) + "\n")
        _record(prefix + "output0.inp.record", name, [("method", method)], used)
    elif name == "varnek-freefield":
        with open(files["constants"]) as f:
            treatment = f.read().split()[6]
        os.makedirs(prefix + "output_ff", exist_ok=True)
        used = list(files.items()) + [("flags", prefix + "Flag_VARNEK.inp"),
                                      ("selfweight", prefix + "output0.inp")]
        _record(prefix + "output_ff/record.txt", name, [("treatment", treatment)], used)
    elif name == "varnek" and not os.environ.get("STANDIN_NOEND"):
        open("a_start.dat", "w").close()
        open("a_end.dat", "w").close()


def _report(run_dir, args):
    journal(run_dir, "report", *args)
    with open(os.path.join(run_dir, "config_VARNEK.txt")) as f:
        folder = os.path.join(run_dir, f.readline().strip(), "report")
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "report.md"), "w") as f:
        f.write(" ".join(args) + "\n")


def tool_stages(monkeypatch):
    """Puts the stand-ins of prepare and report into the stage table."""
    import dataclasses
    from varnek.run import folder, stages
    me = os.path.abspath(__file__)

    def prepare_command(run):
        return [sys.executable, me, "prepare", run.site, run.run_dir], None

    def report_command(run):
        return [sys.executable, me, "report", run.run_dir,
                *folder.report_arguments(run.report_options()[0])], None

    for name, command in (("prepare", prepare_command), ("report", report_command)):
        monkeypatch.setitem(stages.TABLE, name,
                            dataclasses.replace(stages.TABLE[name], command=command))


if __name__ == "__main__":
    what, rest = sys.argv[1], sys.argv[2:]
    if what == "prepare":
        prepare(*rest)
        journal(rest[1], "prepare")
    elif what == "report":
        _report(rest[0], rest[1:])
    else:
        _program(what, rest)
