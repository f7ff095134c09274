"""The report's pictures, drawn with matplotlib's Agg backend (no display)."""
import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt  # noqa: E402
import numpy as np  # noqa: E402
from matplotlib.collections import PolyCollection  # noqa: E402
from matplotlib.ticker import FuncFormatter, MaxNLocator  # noqa: E402
from matplotlib.tri import Triangulation  # noqa: E402

from .. import mesh  # noqa: E402

DPI = 100
# Width and height in pixels of each picture.
SIZES = {"acceleration": (1400, 1000), "amplification": (1400, 800), "spectra": (1400, 800),
         "peaks": (1400, 1000)}
STYLES = ("-", "--", ":", "-.")  # curves that coincide stay apart
COLOURS = ("black", "tab:red", "tab:blue", "tab:green", "tab:orange", "tab:purple", "tab:brown",
           "tab:pink", "tab:olive", "tab:cyan")
plt.rcParams.update({"font.size": 12, "axes.titlesize": 13, "axes.labelsize": 12,
                     "legend.fontsize": 11, "axes.grid": True, "grid.alpha": 0.35})


def _figure(name, **kwargs):
    w, h = SIZES[name]
    return plt.subplots(figsize=(w / DPI, h / DPI), dpi=DPI, layout="constrained", **kwargs)


def _plain_log_axis(ax):
    """Decades written 0.1, 1, 10 rather than as powers of ten."""
    ax.xaxis.set_major_formatter(FuncFormatter(lambda v, _: f"{v:g}"))


def _save(fig, path):
    fig.savefig(path, dpi=DPI)
    plt.close(fig)
    return path


def acceleration(path, title, times, series):
    """Stacked time histories (gal), one panel each, sharing both axes; series is a list of
    (label, acc) with the input first. The peak of each is marked and written beside it."""
    fig, axes = _figure("acceleration", nrows=len(series), sharex=True, sharey=True)
    axes = np.atleast_1d(axes)
    for k, (ax, (label, acc)) in enumerate(zip(axes, series)):
        colour = COLOURS[k % len(COLOURS)]
        ax.plot(times[:len(acc)], acc, color=colour, lw=0.8)
        i = int(np.argmax(np.abs(acc)))
        ax.plot(times[i], acc[i], "o", ms=7, mfc="none", mec=colour, mew=2)
        ax.annotate(f"peak {abs(acc[i]):.1f} gal at {times[i]:.2f} s", (times[i], acc[i]),
                    xytext=(10, 0), textcoords="offset points", va="center", fontsize=11,
                    bbox=dict(boxstyle="round,pad=0.2", fc="white", ec=colour, alpha=0.85))
        ax.set_title(label, loc="left", fontsize=12)
        ax.set_ylabel("acc. (gal)")
        ax.axhline(0.0, color="grey", lw=0.5)
    axes[-1].set_xlabel("Time (s)")
    axes[-1].set_xlim(times[0], times[-1])
    fig.suptitle(title, fontsize=14)
    return _save(fig, path)


def amplification(path, freqs, ratios, labels, cutoff, b):
    fig, ax = _figure("amplification")
    for k, (ratio, label) in enumerate(zip(ratios, labels)):
        i = int(np.nanargmax(ratio))
        ax.semilogx(freqs, ratio, color=COLOURS[(k + 1) % len(COLOURS)], lw=1.8,
                    ls=STYLES[k % len(STYLES)],
                    label=f"{label}: peak {ratio[i]:.2f} at {freqs[i]:.2f} Hz")
    ax.axhline(1.0, color="grey", lw=1, ls="--")
    ax.set_xlim(freqs[0], freqs[-1])
    ax.set_ylim(bottom=0)
    _plain_log_axis(ax)
    ax.set_xlabel("Frequency (Hz)")
    ax.set_ylabel("Fourier amplitude ratio, node / input")
    ax.set_title(f"Amplification, smoothed (Konno-Ohmachi, b = {b:g}), up to the cut-off "
                 f"frequency {cutoff:g} Hz")
    ax.grid(True, which="both")
    ax.legend(loc="upper left")
    return _save(fig, path)


def spectra(path, periods, curves, labels, damping):
    fig, ax = _figure("spectra")
    for k, (psa, label) in enumerate(zip(curves, labels)):
        i = int(np.argmax(psa))
        ax.semilogx(periods, psa, color=COLOURS[k % len(COLOURS)], lw=1.8 if k else 2.2,
                    ls=STYLES[(k - 1) % len(STYLES)] if k else "-",
                    label=f"{label}: peak {psa[i]:.0f} gal at {periods[i]:.2f} s")
    ax.set_xlim(periods[0], periods[-1])
    ax.set_ylim(bottom=0)
    _plain_log_axis(ax)
    ax.set_xlabel("Period (s)")
    ax.set_ylabel("Pseudo-spectral acceleration (gal)")
    ax.set_title(f"Response spectra, {100 * damping:g} % damping")
    ax.grid(True, which="both")
    ax.legend(loc="upper right")
    return _save(fig, path)


def _frame(ax, nodes, title):
    ax.set_aspect("equal")
    ax.set_title(title, pad=16)
    ax.set_xlabel("x (m)")
    ax.set_ylabel("y (m)")
    pad = 0.03 * max(np.ptp(nodes[:, 0]), np.ptp(nodes[:, 1]))
    ax.set_xlim(nodes[:, 0].min() - pad, nodes[:, 0].max() + pad)
    ax.set_ylim(nodes[:, 1].min() - pad, nodes[:, 1].max() + pad)
    ax.grid(False)


def _grid(nodes, panels):
    """Rows and columns of the panels that draw the section largest in the picture."""
    width, height = SIZES["peaks"]
    extent = np.ptp(nodes, axis=0) + 1e-12

    def scale(rows_cols):
        rows, cols = rows_cols
        # Room for the axis labels and the colour bar beside each panel, the titles above and
        # the axis labels below; a near tie goes to the layout with fewer rows.
        fit = min((width / cols - 220) / extent[0], (height / rows - 130) / extent[1])
        return fit * (1.1 if cols > rows else 1.0)

    shapes = [(r, panels // r) for r in range(1, panels + 1) if panels % r == 0]
    return max(shapes, key=scale)


def _node_map(fig, ax, nodes, elements, values, title, unit, marked):
    tri = Triangulation(nodes[:, 0], nodes[:, 1], mesh.triangles(elements))
    # Filled contours interpolate the values themselves; a Gouraud shading would blend the
    # colours and show hues that are not on the scale.
    levels = np.linspace(values.min(), values.max(), 41) if np.ptp(values) > 0 else 1
    image = ax.tricontourf(tri, values, levels=levels, cmap="viridis")
    ax.add_collection(PolyCollection(mesh.outlines(nodes, elements), facecolors="none",
                                     edgecolors="white", linewidths=0.3, alpha=0.6))
    for n in marked:
        ax.plot(*nodes[n], "v", ms=9, mfc="tab:red", mec="white", clip_on=False)
        ax.annotate(str(n + 1), nodes[n], xytext=(0, 8), textcoords="offset points",
                    ha="center", fontsize=10, color="tab:red", annotation_clip=False)
    _frame(ax, nodes, title)
    return fig.colorbar(image, ax=ax, label=unit, ticks=MaxNLocator(7))


def _element_map(fig, ax, nodes, elements, values, title, unit, cmap="viridis"):
    cells = PolyCollection(mesh.outlines(nodes, elements), array=np.asarray(values),
                           cmap=cmap, edgecolors="white", linewidths=0.3)
    ax.add_collection(cells)
    _frame(ax, nodes, title)
    return fig.colorbar(cells, ax=ax, label=unit)


def peaks(path, nodes, elements, node_acc, shear_stress, shear_strain=None, modulus_ratio=None,
          marked=()):
    """Maps over the section: peak x acceleration at the nodes and peak shear stress per element;
    with the strain and G/G0 of the elements also those two."""
    four = shear_strain is not None
    rows, cols = _grid(nodes, 4 if four else 2)
    fig, axes = _figure("peaks", nrows=rows, ncols=cols)
    axes = np.ravel(axes)
    bars = [_node_map(fig, axes[0], nodes, elements, node_acc,
                      "Peak horizontal acceleration (absolute)", "gal", marked),
            _element_map(fig, axes[1], nodes, elements, shear_stress,
                         "Peak shear stress |τxy| (total, dyn/femsig)", "kPa", "magma")]
    if four:
        bars += [_element_map(fig, axes[2], nodes, elements, 100.0 * shear_strain,
                              "Peak shear strain |γxy|", "%", "plasma"),
                 _element_map(fig, axes[3], nodes, elements, modulus_ratio,
                              "Final stiffness ratio G/G0", "G/G0", "cividis")]
    fig.suptitle("Peak values over the section", fontsize=14)
    _fit_colour_bars(fig, axes, bars)
    return _save(fig, path)


def _fit_colour_bars(fig, axes, bars):
    """Colour bars as high as the section they belong to: the layout is drawn once, frozen,
    and each bar is set beside its panel as the equal aspect has shrunk it."""
    fig.canvas.draw()
    fig.set_layout_engine("none")
    for ax, bar in zip(axes, bars):
        a, c = ax.get_position(), bar.ax.get_position()
        bar.ax.set_position([a.x1 + 0.012, a.y0, c.width, a.height])
