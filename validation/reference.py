"""Closed-form one-dimensional response of horizontal damped layers, for the comparisons.

Vertically travelling shear waves in layers over a rigid base or an elastic half-space
(Kramer 1996, section 7.2): in each layer an upgoing and a downgoing wave of amplitudes A, B,
equal at the free surface, carried down through the interfaces by continuity of displacement
and shear stress. The complex modulus is the program's, G* = G (1 - 2 h^2 + 2 i h sqrt(1 - h^2)),
so that the comparison sees the discretisation alone.
"""
import numpy as np


def complex_modulus(g, h):
    h = np.asarray(h, dtype=float)
    return g * (1.0 - 2.0 * h * h + 2.0j * h * np.sqrt(1.0 - h * h))


def layer_waves(thickness, modulus, density, damping, base, frequencies):
    """Wave amplitudes (A, B) at the top of every layer and of the base (rows), per frequency
    (columns), for A = B = 1/2 at the surface (unit surface displacement). base: None (rigid)
    or (modulus, density, damping) of the half-space."""
    w = 2.0 * np.pi * np.asarray(frequencies, dtype=float)
    props = [(complex_modulus(g, h), r) for g, r, h in zip(modulus, density, damping)]
    props.append((complex_modulus(base[0], base[2]), base[1]) if base else props[-1])
    a = np.full(len(w), 0.5 + 0j)
    b = a.copy()
    amplitudes = [(a, b)]
    for m, h in enumerate(thickness):
        (g, rho), (g_next, rho_next) = props[m], props[m + 1]
        k = w * np.sqrt(rho / g)
        ratio = np.sqrt(rho * g) / np.sqrt(rho_next * g_next)
        up, down = a * np.exp(1j * k * h), b * np.exp(-1j * k * h)
        a = 0.5 * up * (1.0 + ratio) + 0.5 * down * (1.0 - ratio)
        b = 0.5 * up * (1.0 - ratio) + 0.5 * down * (1.0 + ratio)
        amplitudes.append((a, b))
    return amplitudes


def surface_transfer(thickness, modulus, density, damping, base, frequencies):
    """Surface motion over the input motion: over the base motion itself on a rigid base
    (base None), over the outcrop motion of the half-space (twice its upgoing wave)
    otherwise."""
    a, b = layer_waves(thickness, modulus, density, damping, base, frequencies)[-1]
    return 1.0 / (a + b) if base is None else 1.0 / (2.0 * a)


def strain_transfer(thickness, modulus, density, damping, base, frequencies):
    """Shear strain at the middle of every layer (rows) per unit input displacement, and the
    surface displacement per unit input displacement, per frequency (columns); the input as
    in surface_transfer. Frequencies above 0."""
    waves = layer_waves(thickness, modulus, density, damping, base, frequencies)
    a, b = waves[-1]
    unit = 1.0 / (a + b) if base is None else 1.0 / (2.0 * a)
    w = 2.0 * np.pi * np.asarray(frequencies, dtype=float)
    strains = []
    for (a, b), h, g, rho, d in zip(waves, thickness, modulus, density, damping):
        k = w * np.sqrt(rho / complex_modulus(g, d))
        strains.append(1j * k * (a * np.exp(0.5j * k * h) - b * np.exp(-0.5j * k * h)) * unit)
    return np.array(strains), unit


def log_interp(strain, table_strain, values):
    """A curve read at a strain, linear in the logarithm of the strain, flat beyond its ends."""
    return np.interp(np.log(strain), np.log(table_strain), values)


def equivalent_linear(thickness, modulus, density, curves, damping, base, acc, time_step,
                      padded, lines, strain_ratio=0.65, tolerance=1e-4, limit=50):
    """The equivalent-linear iteration of a layered column (SHAKE; Schnabel et al. 1972):
    each pass solves the column with the current moduli and damping, takes each layer's peak
    strain at its middle, and reads new values at strain_ratio times it from the layer's curve
    (strain, G/G0, damping; None: the layer stays linear with its damping). The input
    acceleration acc is zero-padded to `padded` samples and its lines 0 .. lines - 1 are
    solved, as the program does; beyond them the column moves with its input. Stops when the
    mean relative change of the moduli falls below the tolerance, or after `limit` passes;
    then, as in the program, the last values read stand unused by the solution. Returns a
    dict: modulus_ratio and damping (the values standing), peak_strain of each layer and
    surface (the acceleration history over the record) of the last solution, and errors (the
    mean change of each pass)."""
    spectrum = np.fft.rfft(np.asarray(acc, dtype=float), padded)
    solved = np.arange(len(spectrum)) < lines
    f = np.arange(len(spectrum)) / (padded * time_step)
    w = 2.0 * np.pi * f[1:]
    ratio = np.ones(len(thickness))
    d = np.array([c.damping[0] if c is not None else h for c, h in zip(curves, damping)])
    errors = []
    for _ in range(limit):
        g = np.asarray(modulus) * ratio
        strains, unit = strain_transfer(thickness, g, density, d, base, f[1:])
        displacement = np.where(solved[1:], -spectrum[1:] / (w * w), 0.0)  # of the input
        histories = np.fft.irfft(np.concatenate([np.zeros((len(thickness), 1)),
                                                 strains * displacement], axis=1), padded)
        peak = np.max(np.abs(histories), axis=1)
        new_ratio, new_d = ratio.copy(), d.copy()
        for i, c in enumerate(curves):
            if c is not None:
                effective = strain_ratio * peak[i]
                new_ratio[i] = log_interp(effective, c.strain, c.modulus_ratio)
                new_d[i] = log_interp(effective, c.strain, c.damping)
        moving = [i for i, c in enumerate(curves) if c is not None]
        if not moving:
            break
        error = float(np.mean(np.abs(new_ratio - ratio)[moving] / new_ratio[moving]))
        errors.append(error)
        if error < tolerance:
            break
        ratio, d = new_ratio, new_d
    # The absolute motion: the input itself beyond the cut-off, where the program solves no
    # relative motion.
    surface = np.fft.irfft(np.concatenate([[spectrum[0]], spectrum[1:] *
                                           np.where(solved[1:], unit, 1.0)]), padded)
    return {"modulus_ratio": ratio, "damping": d, "peak_strain": peak,
            "surface": surface[:len(acc)], "errors": errors}


def column_response(section, wave, analysis):
    """equivalent_linear for the column of a section as the program runs it with these
    analysis settings (sections.Analysis): one layer per row of elements from the surface
    down, on the section's base, the wave padded and cut off as the program does; a linear
    analysis is one pass with the small-strain values. Adds "depth": the middle of each
    layer."""
    soils = [section.soils[s] for s in reversed(section.row_soils())]
    heights = list(reversed(section.row_heights()))
    padded = 1 << (len(wave.acc_gal) - 1).bit_length()
    lines = min(int(np.floor(analysis.cutoff * padded * wave.time_step)) + 1, padded // 2 + 1)
    base = section.base
    eql = analysis.equivalent_linear
    result = equivalent_linear(
        heights, [s.shear_modulus for s in soils], [s.density for s in soils],
        [s.curve if eql else None for s in soils],
        [s.damping if s.curve is None else s.curve.damping[0] for s in soils],
        None if base is None else (base.shear_modulus, base.density, base.damping),
        np.asarray(wave.acc_gal) / 100.0, wave.time_step, padded, lines,
        analysis.strain_ratio, analysis.tolerance, analysis.iteration_limit if eql else 1)
    result["depth"] = np.cumsum(heights) - np.array(heights) / 2.0
    return result
