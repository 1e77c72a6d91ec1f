"""The figure of a fit."""

from __future__ import annotations

from typing import Any

from ._fit import Fit


def plot_fit(fit: Fit) -> Any:
    """Data and curves above, residuals below, over the radius."""
    from matplotlib import pyplot

    figure, (data, rest) = pyplot.subplots(
        2, 1, sharex=True, figsize=(6.0, 5.5), gridspec_kw={"height_ratios": [3, 1]},
        constrained_layout=True,
    )
    datasets = fit.datasets
    for number in range(int(fit._counts["sets"])):
        r, curve, residuals = fit.radii(number), fit.curve(number), fit.residuals(number)
        colour = f"C{number % 10}"
        label = datasets[number].name if number < len(datasets) else None
        data.plot(r, curve + residuals, ".", markersize=2.5, color=colour, alpha=0.6, label=label)
        data.plot(r, curve, "-", linewidth=1.2, color=colour)
        rest.plot(r, residuals, ".", markersize=2.0, color=colour)
    data.set_ylabel("signal")
    data.set_title(f"{fit.model}, rms {fit.rms:.4f}")
    if len(datasets) <= 12:
        data.legend(fontsize="x-small", frameon=False, ncol=2)
    rest.axhline(0.0, color="0.4", linewidth=0.8)
    rest.set_ylabel("residual")
    rest.set_xlabel("radius, cm")
    return figure
