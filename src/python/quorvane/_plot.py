"""The figure of a fit."""

from __future__ import annotations

from typing import Any, List

from ._dataset import Dataset
from ._fit import Fit


def _labels(datasets: List[Dataset]) -> List[str]:
    """Datasets in words; by their names where the words are the same."""
    words = []
    for d in datasets:
        channel = f", channel {d.channel}" if d.channel else ""
        words.append(f"{d.speed:,} rpm" + channel)
    return words if len(set(words)) == len(words) else [d.name for d in datasets]


def plot_fit(fit: Fit) -> Any:
    """Data and curves above, residuals below, over the radius."""
    from matplotlib import pyplot

    figure, (data, rest) = pyplot.subplots(
        2, 1, sharex=True, figsize=(6.0, 5.5), gridspec_kw={"height_ratios": [3, 1]},
        constrained_layout=True,
    )
    datasets = [d for d in fit.datasets if not d.is_blank]
    labels = _labels(datasets)
    for number in range(int(fit._counts["sets"])):
        r, curve, residuals = fit.radii(number), fit.curve(number), fit.residuals(number)
        colour = f"C{number % 10}"
        label = labels[number] if number < len(labels) else None
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
