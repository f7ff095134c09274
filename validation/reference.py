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
