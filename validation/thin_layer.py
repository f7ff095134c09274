"""The wavenumbers of the thin-layer transmitting boundary against the closed-form dispersion
of the layered medium (plane strain, rigid base, free surface)."""
import os
import subprocess

import numpy as np

from varnek.programs import ANALYSIS, find_program

from .harness import Check, Figure, Outcome, Problem

# Layers from the top: thickness (m), Vs (m/s), Poisson's ratio, density (t/m3).
HOMOGENEOUS = [(10.0, 100.0, 0.30, 1.8)]
LAYERED = [(4.0, 100.0, 0.35, 1.7), (8.0, 250.0, 0.30, 2.0)]
CASES = {"homogeneous": HOMOGENEOUS, "layered": LAYERED}
# Sublayer thickness (m) of each interpolation: linear ones four times finer than quadratic
# ones, the same nodes per wavelength as 4-node against 8-node elements twice their size.
SUBLAYERS = {"linear": 0.25, "quadratic": 1.0}
# The largest differences lie at modes close to their cut-on frequency, where the wavenumber
# changes fastest with frequency.
TOLERANCE = {"linear": 0.02, "quadratic": 0.005}


def modes_program():
    """build/validation/thin_layer_modes, beside the analysis program's build folder."""
    return os.path.join(os.path.dirname(find_program(ANALYSIS)), "validation", "thin_layer_modes")


def thin_layer_wavenumbers(layers, interpolation, frequencies):
    """{frequency: real wavenumbers, descending} of the program's thin-layer column."""
    lines = [f"layer {t} {vs} {nu} {rho} 0 {max(1, round(t / SUBLAYERS[interpolation]))} "
             f"{interpolation}" for t, vs, nu, rho in layers]
    lines += ["base rigid"] + [f"frequency {f!r}" for f in frequencies]
    done = subprocess.run([modes_program()], input="\n".join(lines) + "\n", text=True,
                          capture_output=True, check=True)
    table = np.array(done.stdout.split(), dtype=float).reshape(-1, 3)
    found = {}
    for f in frequencies:
        rows = table[table[:, 0] == float(f"{f:.10g}")]
        real = np.abs(rows[:, 2]) < 1e-8 * np.abs(rows[:, 1])
        found[f] = np.sort(np.abs(rows[real, 1]))[::-1]
    return found


def layer_matrices(k, w, vs, nu, rho):
    """d/dy of (U, V, T, S) for u_x = U(y) cos kx, u_y = V(y) sin kx, sigma_xy = T cos kx,
    sigma_yy = S sin kx in a layer in plane strain (y upward), one 4 x 4 matrix per k."""
    mu = rho * vs * vs
    lam = 2.0 * mu * nu / (1.0 - 2.0 * nu)
    m = lam + 2.0 * mu
    a = np.zeros((len(k), 4, 4))
    a[:, 0, 1], a[:, 0, 2] = -k, 1.0 / mu
    a[:, 1, 0], a[:, 1, 3] = lam * k / m, 1.0 / m
    a[:, 2, 0], a[:, 2, 3] = 4.0 * mu * (lam + mu) / m * k * k - rho * w * w, -lam * k / m
    a[:, 3, 1], a[:, 3, 2] = -rho * w * w, k
    return a


def dispersion_determinant(k, w, layers):
    """For each k, det of the surface tractions against the base tractions with the
    displacements held at the rigid base: zero at the wavenumbers of the free waves."""
    k = np.atleast_1d(np.asarray(k, dtype=float))
    propagator = np.broadcast_to(np.eye(4), (len(k), 4, 4))
    for t, vs, nu, rho in reversed(layers):  # from the base up
        values, vectors = np.linalg.eig(layer_matrices(k, w, vs, nu, rho))
        step = (vectors * np.exp(values * t)[:, None, :]) @ np.linalg.inv(vectors)
        propagator = step.real @ propagator
    return np.linalg.det(propagator[:, 2:, 2:])


def exact_wavenumbers(layers, w, steps=4000):
    """The real roots below 1.2 w / Vs_min, descending: sign changes on a fine scan, each
    narrowed by bisection of all brackets at once."""
    top = 1.2 * w / min(vs for _, vs, _, _ in layers)
    grid = top * (np.arange(steps) + 0.5) / steps
    values = dispersion_determinant(grid, w, layers)
    change = np.nonzero(np.sign(values[:-1]) != np.sign(values[1:]))[0]
    a, b, fa = grid[change], grid[change + 1], values[change]
    for _ in range(50):
        c = 0.5 * (a + b)
        fc = dispersion_determinant(c, w, layers)
        same = (fc > 0) == (fa > 0)
        a, fa, b = np.where(same, c, a), np.where(same, fc, fa), np.where(same, b, c)
    return np.sort(0.5 * (a + b))[::-1]


def run(short, work):
    frequencies = np.arange(2.0, 20.01, 3.0 if short else 0.5)
    out = Outcome()
    curves = {}
    for name, layers in CASES.items():
        exact = {f: exact_wavenumbers(layers, 2.0 * np.pi * f, 1500 if short else 4000)
                 for f in frequencies}
        curves[name, "exact"] = exact
        vs_min = min(vs for _, vs, _, _ in layers)
        for interpolation in SUBLAYERS:
            found = thin_layer_wavenumbers(layers, interpolation, frequencies)
            curves[name, interpolation] = found
            worst, compared, skipped = 0.0, 0, 0
            for f in frequencies:
                if len(found[f]) != len(exact[f]):
                    skipped += 1  # a mode at its cut-on frequency in one of the two
                    continue
                if not len(exact[f]):
                    continue  # below the first cut-on: nothing travels
                scale = 2.0 * np.pi * f / vs_min
                worst = max(worst, np.max(np.abs(found[f] - exact[f])) / scale)
                compared += 1
            out.checks.append(Check(
                f"{name} column, {interpolation} sublayers of {SUBLAYERS[interpolation]:g} m: "
                f"largest difference of the real wavenumbers over w / Vs_min, {compared} "
                f"frequencies from {frequencies[0]:g} to {frequencies[-1]:g} Hz"
                + (f" ({skipped} with a mode at its cut-on left out)" if skipped else ""),
                worst, TOLERANCE[interpolation]))
    out.notes.append(
        "The differences grow with the frequency as the sublayers take fewer of a mode's "
        "vertical wavelengths, four times as fast for linear as for quadratic sublayers, and "
        "are largest for a mode close to its cut-on frequency, where its wavenumber changes "
        "fastest with the frequency. A frequency at which one of the two counts a mode the "
        "other does not yet (a cut-on between them) is left out. Damped soil, whose modes all "
        "have complex wavenumbers, is checked by the boundary's agreement with a long strip of "
        "elements in the C++ tests (`tests/fem/thin_layer_test.cpp`).")
    out.figures.append(Figure(
        "thin-layer", "Real wavenumbers of the plane-strain modes of a homogeneous layer and "
        "of two layers on a rigid base: roots of the closed-form dispersion determinant (lines) "
        "and the thin-layer column of the transmitting boundary (markers).",
        lambda fig: draw(fig, curves, frequencies), (9.0, 4.5)))
    return out


def draw(fig, curves, frequencies):
    axes = fig.subplots(1, 2)
    for ax, name in zip(axes, CASES):
        exact = curves[name, "exact"]
        points = [(f, k) for f in frequencies for k in exact[f]]
        if points:
            f, k = np.array(points).T
            ax.plot(k, f, "k.", ms=3, label="closed form")
        for interpolation, marker in zip(SUBLAYERS, "ox"):
            points = [(f, k) for f in frequencies for k in curves[name, interpolation][f]]
            f, k = np.array(points).T
            ax.plot(k, f, marker, ms=4, mfc="none", alpha=0.7,
                    label=f"thin layer, {interpolation}")
        layers = CASES[name]
        ax.set_title(f"{name}: " + ", ".join(f"{t:g} m of Vs {vs:g}" for t, vs, _, _ in layers))
        ax.set_xlabel("wavenumber k (1/m)")
        ax.set_ylabel("frequency (Hz)")
        ax.grid(alpha=0.3)
        ax.legend(fontsize=8)


PROBLEM = Problem(
    key="thin-layer",
    title="Thin-layer wavenumbers against the closed-form dispersion",
    reference="The transmitting side boundary of treatment 0 stands on the modes of the layered "
              "soil beyond the edge, found by the thin-layer method (Lysmer and Waas 1972) as "
              "the eigenvalues of the discretised column. Their real wavenumbers (the waves "
              "that travel in undamped soil) are compared with the roots of the exact "
              "dispersion relation of plane-strain waves in the same layers between a rigid "
              "base and a free surface, found from the layers' exact transfer matrices: a "
              "homogeneous layer (10 m, Vs 100 m/s, nu 0.30) and two layers (4 m of Vs "
              "100 m/s over 8 m of 250 m/s). The wavenumbers come from the free-field "
              "program's own column through the helper `build/validation/thin_layer_modes`.",
    source="Closed form: the transfer (propagator) matrix of an elastic layer, e.g. Kausel, E. "
           "(2006), Fundamental Solutions in Elastodynamics, Cambridge University Press; "
           "computed in `validation/thin_layer.py`.",
    run=run)
