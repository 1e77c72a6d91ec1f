#!/usr/bin/env python3
"""The monomer-dimer example from Python, a cell after the other as in a notebook.

    python3 analyse.py [FOLDER]     writes figure.png and report.html to the folder, by default here
"""

# %% The scans: three speeds, three channels each.
import pathlib
import sys

import quorvane as qv

example = pathlib.Path(__file__).resolve().parents[1] / "monomer-dimer"
folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".")
scans = qv.load(sorted(example.glob("*.RA1")), centerpiece="6 channels")
for scan in scans:
    scan.ext_coeff = 40000.0  # signal per mol/l
    print(scan)

# %% One species, and a monomer with its dimer.
ideal = qv.fit(scans, "Ideal", start={"MW": 8000.0}, vbar=0.73, density=1.0)
dimer = qv.fit(scans, "Monomer-Nmer", start={"MW": 7000.0, "LnK1": 11.0}, vbar=0.73, density=1.0)
for fit in (ideal, dimer):
    print(f"{fit.model}: rms {fit.rms:.5f}, at rest: {fit.at_rest}")

# %% Which of them do the data favour?
comparison = qv.compare([ideal, dimer])
for fit in comparison["fits"]:
    print(f"{fit['file']:14} AICc {fit['aicc']:10.1f}  weight {fit['aicc_weight']:.3f}")
print(*comparison["remarks"], sep="\n")

# %% The weight, and the constant with its limits.
weight = dimer["MW"]
print(f"M = {weight.value / (1 - 0.73):.0f} Da, standard error {weight.sd / (1 - 0.73):.0f}")
constant = dimer.intervals(["LnK1"])["LnK1"]
print(f"ln K = {constant.value:.2f}, 95 % between {constant.lower:.2f} and {constant.upper:.2f}")
for row in dimer.quality():
    print(f"{row['name']:16} rms {row['rms']:.5f}  runs Z {row['runs_z']:5.2f}")

# %% The figure, where matplotlib is installed, and the report.
try:
    import matplotlib
except ImportError:
    print("matplotlib is not installed: no figure")
else:
    if not hasattr(sys, "ps1"):
        matplotlib.use("Agg")  # no window
    dimer.plot().savefig(folder / "figure.png", dpi=150)
dimer.report(folder / "report.html")
