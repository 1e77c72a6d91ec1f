#!/usr/bin/python3
"""Bad starts of a fit of nine real scans: one press of "Fit", twenty, and the fit from the rest.

Usage: bad_starts.py CLI FOLDER (run by scripts/evidence); FOLDER holds 00019.RA2, 00032.RA2 and
00043.RA2, late scans of a six-channel cell at 10,000, 14,000 and 20,000 rpm. Prints a Markdown
table. Needs Debian's python3-numpy and python3-scipy.
"""

import sys
import tempfile
from pathlib import Path

import numpy as np

from independent_fit import Fit
from solvers import Table, Workshop

COLUMNS = [[5.88, 6.07], [6.39, 6.58], [6.91, 7.10]]  # of channels A, B and C, cm
DEFAULT_WEIGHT, DEFAULT_LN_K = 7500.0, 14.0  # of the page
STARTS = [(DEFAULT_WEIGHT, ln_k) for ln_k in (DEFAULT_LN_K, 0.0, 3.0)]
STARTS += [(500.0, 8.0), (3000.0, 8.0), (50000.0, 8.0), (3000.0, -5.0), (3000.0, 30.0)]


def job_of(folder, weight, ln_k, repeat):
    scans = [name + ".RA2" for name in ("00019", "00032", "00043")]
    loads = [{"file": folder / scan, "kind": "IP,RA", "centerpiece": "6 channels"}
             for scan in scans]
    sets = [{"number": k + 1, "delete_outside": COLUMNS[k % 3]} for k in range(9)]
    start = lambda value: {"start": value, "fit": True}
    fit = {"model": "Monomer-Nmer", "repeat": repeat,
           "parameters": {"MW": start(weight), "N1": {"start": 2.0, "fit": False},
                          "LnK1": start(ln_k)}}
    return {"load": loads, "dataset": sets, "fit": fit}


def off_scipy(job, result):
    """Of the fit from the rest: its sum over SciPy's less 1, values in standard errors."""
    fit = Fit(job, result)
    ours = np.array([p["value"] for p in fit.parameters])
    best, least = fit.solve(ours)
    se = np.sqrt(np.diag(fit.covariance(best, least)))
    return result["fit"]["chi_squared"] / least - 1, np.abs((ours - best)[fit.free] / se).max()


def main():
    table = Table("Bad starts:", "MW", "ln K", "rms, 1 press", "at rest", "rms, 20 presses",
                  "at rest", "rms, rest", "MW", "ln K", "Sum over SciPy's", "Values, sd")
    with tempfile.TemporaryDirectory() as place:
        shop = Workshop(sys.argv[1], place)
        for weight, ln_k in STARTS:
            cells = [f"{weight:g}", f"{ln_k:g}"]
            for repeat in (1, 20):
                fit = shop.analyse(job_of(Path(sys.argv[2]), weight, ln_k, repeat),
                                   may_fail=True)["fit"]
                if "error" in fit:
                    cells += [fit["error"], "-"]
                else:
                    said = {True: "yes", False: "no", None: "not known"}[fit["rest"]["at_rest"]]
                    cells += [f"{fit['rms']:.6f}", said]
            job = job_of(Path(sys.argv[2]), weight, ln_k, "rest")
            result = shop.analyse(job, may_fail=True)
            fit = result["fit"]
            if "error" in fit:
                cells += [fit["error"], "-", "-", "-", "-"]
            else:
                values = {p["name"]: p["value"] for p in fit["parameters"]}
                high, off = off_scipy(job, result)
                cells += [f"{fit['rms']:.6f}", f"{values['MW']:.0f}", f"{values['LnK1']:.3f}",
                          f"{high:+.1e}", f"{off:.4f}"]
            table.add(*cells)
    table.print()


if __name__ == "__main__":
    main()
