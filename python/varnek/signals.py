"""Response spectra, Fourier amplitudes and their smoothing."""
import numpy as np

DAMPING = 0.05
KONNO_OHMACHI_B = 40.0


def spectrum_periods(shortest=0.01, longest=10.0, count=200):
    return np.geomspace(shortest, longest, count)


def _recurrence(omega, zeta, dt):
    """Coefficients of the exact step of a damped oscillator under a ground acceleration that is
    linear between samples (Nigam and Jennings, 1969):
        [u, v](i+1) = A [u, v](i) + B [a(i), a(i+1)]
    for u'' + 2 zeta omega u' + omega^2 u = -a, u relative displacement, v relative velocity.
    Every argument but dt may be an array."""
    root = np.sqrt(1.0 - zeta * zeta)
    wd = omega * root
    e = np.exp(-zeta * omega * dt)
    s, c = np.sin(wd * dt), np.cos(wd * dt)
    k = zeta / root
    a11 = e * (k * s + c)
    a12 = e * s / wd
    a21 = -omega / root * e * s
    a22 = e * (c - k * s)
    w2, w3 = omega * omega, omega ** 3
    p = (2 * zeta * zeta - 1) / (w2 * dt)
    q = 2 * zeta / (w3 * dt)
    sdot = wd * s + zeta * omega * c  # the time derivative of -e*c, over e
    b11 = e * ((p + zeta / omega) * s / wd + (q + 1 / w2) * c) - q
    b12 = -e * (p * s / wd + q * c) - 1 / w2 + q
    b21 = e * ((p + zeta / omega) * (c - k * s) - (q + 1 / w2) * sdot) + 1 / (w2 * dt)
    b22 = -e * (p * (c - k * s) - q * sdot) - 1 / (w2 * dt)
    return a11, a12, a21, a22, b11, b12, b21, b22


def response_spectrum(acc, dt, periods, damping=DAMPING):
    """Pseudo-acceleration response spectrum, omega^2 max|u| over the record, in the unit of
    acc; acc (..., samples) gives (..., periods)."""
    acc = np.asarray(acc, dtype=float)
    omega = 2 * np.pi / np.asarray(periods, dtype=float)
    a11, a12, a21, a22, b11, b12, b21, b22 = _recurrence(omega, damping, dt)
    shape = acc.shape[:-1] + omega.shape
    ui, vi, peak = np.zeros(shape), np.zeros(shape), np.zeros(shape)
    g = acc[..., None, :]
    for i in range(acc.shape[-1] - 1):
        g0, g1 = g[..., i], g[..., i + 1]
        ui, vi = (a11 * ui + a12 * vi + b11 * g0 + b12 * g1,
                  a21 * ui + a22 * vi + b21 * g0 + b22 * g1)
        np.maximum(peak, np.abs(ui), out=peak)
    return omega * omega * peak


def fourier_amplitude(acc, dt, length):
    """Frequencies (Hz) and Fourier amplitudes |X(f)| dt of records zero-padded to `length`."""
    spectrum = np.fft.rfft(np.asarray(acc, dtype=float), n=length, axis=-1)
    return np.fft.rfftfreq(length, dt), np.abs(spectrum) * dt


def konno_ohmachi(freqs, amplitude, centres, b=KONNO_OHMACHI_B):
    """Konno-Ohmachi smoothing of amplitude (..., freqs) at the centre frequencies:
    W(f, fc) = [sin(b log10(f/fc)) / (b log10(f/fc))]^4, weights normalised to 1."""
    freqs = np.asarray(freqs, dtype=float)
    centres = np.asarray(centres, dtype=float)
    keep = freqs > 0
    f, amp = freqs[keep], np.asarray(amplitude, dtype=float)[..., keep]
    x = b * np.log10(f[None, :] / centres[:, None])
    with np.errstate(invalid="ignore", divide="ignore"):
        w = np.where(np.abs(x) < 1e-6, 1.0, (np.sin(x) / x)) ** 4
    w /= w.sum(axis=1, keepdims=True)
    return amp @ w.T


def amplification(base, records, dt, length, highest, lowest=0.1, b=KONNO_OHMACHI_B, count=300):
    """Ratios of the smoothed Fourier amplitudes of records (..., samples) to that of the base
    record, at log-spaced frequencies from `lowest` (or the first line above 0, if higher) up to
    `highest` (Hz). Only lines at or below `highest` enter the smoothing: above it the analysis
    solved nothing. Below 0.1 Hz the window of b = 40 spans fewer lines than a record of
    ordinary length gives, and the ratio of near-zero amplitudes says nothing."""
    freqs, base_amp = fourier_amplitude(base, dt, length)
    _, amps = fourier_amplitude(records, dt, length)
    inside = freqs <= highest * (1 + 1e-12)
    freqs, base_amp, amps = freqs[inside], base_amp[inside], amps[..., inside]
    centres = np.geomspace(max(freqs[1], min(lowest, freqs[-1])), freqs[-1], count)
    smooth_base = konno_ohmachi(freqs, base_amp, centres, b)
    smooth = konno_ohmachi(freqs, amps, centres, b)
    with np.errstate(invalid="ignore", divide="ignore"):
        return centres, smooth / smooth_base
