import numpy as np
import pytest

from varnek import signals

SINE_PERIOD, SINE_AMPLITUDE, DT = 1.0, 100.0, 0.005


def ramped_sine(duration=80.0, ramp=30.0):
    """A sine whose amplitude rises smoothly over `ramp` seconds: the oscillators follow it
    without a start-up transient, so that their peak is the steady-state amplitude."""
    t = np.arange(0.0, duration, DT)
    envelope = np.where(t < ramp, 0.5 * (1 - np.cos(np.pi * t / ramp)), 1.0)
    return SINE_AMPLITUDE * envelope * np.sin(2 * np.pi * t / SINE_PERIOD)


@pytest.mark.parametrize("period", [0.2, 0.5, 1.0, 2.0, 5.0])
@pytest.mark.parametrize("damping", [0.02, 0.05, 0.2])
def test_spectrum_of_a_sine_is_the_steady_state_of_the_damped_oscillator(period, damping):
    psa = signals.response_spectrum(ramped_sine(), DT, [period], damping)[0]
    w, f = 2 * np.pi / period, 2 * np.pi / SINE_PERIOD
    steady = w * w * SINE_AMPLITUDE / np.hypot(w * w - f * f, 2 * damping * w * f)
    assert psa == pytest.approx(steady, rel=2e-3)


def record(seed=0, n=1500):
    rng = np.random.default_rng(seed)
    return np.convolve(rng.normal(size=n), np.hanning(9), mode="same")


@pytest.mark.parametrize("make_output, expected", [
    (lambda a: a, 1.0),                 # the output is the input
    (lambda a: 2.5 * a, 2.5),           # a plain gain
    (lambda a: -a, 1.0),                # a reversed sign changes no amplitude
    (lambda a: np.roll(a, 40), 1.0),    # nor does a delay
])
def test_amplification_of_an_unchanged_output(make_output, expected):
    base = record()
    base[-60:] = 0.0  # room for the delay inside the record
    out = np.array([make_output(base), make_output(base)])
    freqs, ratio = signals.amplification(base, out, 0.01, 2048, highest=20.0)
    assert ratio.shape == (2, freqs.size)
    assert freqs[0] == pytest.approx(0.1) and freqs[-1] <= 20.0 + 1e-9
    np.testing.assert_allclose(ratio, expected, rtol=1e-9)


def test_amplification_stops_at_the_highest_frequency_line():
    base = record(1)
    freqs, ratio = signals.amplification(base, base[None, :], 0.01, 2048, highest=7.5)
    assert freqs[-1] == pytest.approx(np.floor(7.5 * 20.48) / 20.48)
    assert np.all(np.isfinite(ratio))


def test_konno_ohmachi_window_vanishes_where_b_log10_of_the_ratio_is_pi():
    # b log10(f / fc) = pi: with b = 40 a line at 5 Hz has no weight at 5 * 10^(pi / 40) Hz.
    freqs = np.linspace(0, 50, 20001)
    spike = np.where(np.abs(freqs - 5.0) < 1e-9, 1.0, 0.0)
    centres = np.array([5.0, 5.0 * 10 ** (np.pi / 40), 5.0 * 10 ** (np.pi / 80)])
    at_line, at_zero, between = signals.konno_ohmachi(freqs, spike, centres)
    assert at_line > between > 1e3 * abs(at_zero)
