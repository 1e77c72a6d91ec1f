#!/usr/bin/python3
"""Our fits, limits and statistics beside those of SciPy, for docs/evidence.md.

Simulates scans with quorvane-cli, analyses them with it, reads the points from its JSON, and solves
the same problems again by independent_fit.py. Prints Markdown tables. Usage: solvers.py CLI (run by
scripts/evidence). Needs Debian's python3-numpy and python3-scipy.
"""

import json
import subprocess
import sys
import tempfile
import tomllib
from dataclasses import dataclass, field
from pathlib import Path

from independent_fit import Fit  # first: it keeps NumPy to one thread

import numpy as np
from scipy.stats import f as f_distribution

EXAMPLES = Path(__file__).resolve().parent.parent / "examples"
PRESSES = 20  # of "Fit"; the first ends at an absolute rule, the rest show where it leads


# --- The problems.


@dataclass
class Problem:
    name: str
    job: dict
    truth: dict
    limits: list = field(default_factory=list)  # names of parameters whose limits are compared


def toml_value(value):
    if isinstance(value, bool):
        return str(value).lower()
    if isinstance(value, (str, Path)):
        return json.dumps(str(value))
    if isinstance(value, dict):
        return "{ " + ", ".join(f"{k} = {toml_value(v)}" for k, v in value.items()) + " }"
    if isinstance(value, list):
        return "[" + ", ".join(map(toml_value, value)) + "]"
    return repr(value)


def toml_text(job):
    lines = [f"{k} = {toml_value(v)}" for k, v in job.items() if not isinstance(v, (dict, list))]
    for key, value in job.items():
        tables = value if isinstance(value, list) else [value] if isinstance(value, dict) else []
        for table in tables:
            lines.append(f"[[{key}]]" if isinstance(value, list) else f"[{key}]")
            lines += [f"{k} = {toml_value(v)}" for k, v in table.items()]
    return "\n".join(lines) + "\n"


class Workshop:
    """Runs the command line in a folder of its own."""

    def __init__(self, cli, folder):
        self.cli, self.folder = cli, Path(folder)

    def run(self, *words, may_fail=False):
        done = subprocess.run([self.cli, *map(str, words)], capture_output=True, text=True)
        if done.returncode != 0 and not may_fail:
            sys.exit(f"{words}: {done.stderr}")

    def analyse(self, job, may_fail=False):
        (self.folder / "job.toml").write_text(toml_text(job))
        out = self.folder / "out.json"
        self.run("analyze", self.folder / "job.toml", "--json", out, "--quiet", may_fail=may_fail)
        return json.loads(out.read_text())

    def simulate(self, file, inputs, seed):
        (self.folder / "sim.toml").write_text(toml_text(inputs))
        out = self.folder / "sim.json"
        self.run("simulate", self.folder / "sim.toml", "-o", file, "--json", out, "--seed", seed)
        return json.loads(out.read_text())

    def scans(self, name, common, variants, dataset):
        """Simulated scans, one for each variant of the inputs, as [[load]] and [[dataset]]."""
        job = {"load": [], "dataset": []}
        folder = self.folder / name
        folder.mkdir()
        for k, variant in enumerate(variants, 1):
            inputs = {"save_as": "RA8", "rms": 0.005, "meniscus": 6.85, "base": 7.10}
            inputs |= common | variant
            file = folder / f"{k:05}.RA8"
            self.simulate(file, inputs, 1000 * len(name) + k)
            job["load"].append({"file": file})
            job["dataset"].append({"number": k, **dataset(k, inputs)})
        return job


def example(name):
    job = tomllib.loads((EXAMPLES / name / "job.toml").read_text())
    for load in job["load"]:
        load["file"] = EXAMPLES / name / load["file"]
    if "channels_file" in job:
        job["channels_file"] = EXAMPLES / name / job["channels_file"]
    job.pop("confidence", None)
    return job


def one_component(k, inputs):
    values = {"ext_coeff": float(inputs["ext_coeff"]), "ref_conc": 2e-6}
    return values | {"meniscus": 6.85, "base": 7.10}


def linked_pair(k, inputs):
    values = {"ext_coeff": float(inputs["ext_coeff"]), "ext_coeff_b": float(inputs["ext_coeff_b"])}
    values |= {"meniscus": 6.85, "base": 7.10, "ref_conc": 2e-6, "ref_conc_b": 2e-6}
    return values if k % 2 else values | {"link_to": k - 1}


def loads_and_speeds(loads, speeds):
    return [{"load": str(load), "speed": speed} for load in loads for speed in speeds]


def mixtures(pairs, speeds):
    lights = [(280, 44000, 11000), (230, 160000, 110000)]
    return [
        {"load": str(a), "load_b": str(b), "speed": speed, "wavelength": light}
        | {"ext_coeff": eps_a, "ext_coeff_b": eps_b}
        for a, b in pairs
        for speed in speeds
        for light, eps_a, eps_b in lights
    ]


def simulated(shop, name, caption, common, variants, dataset, model, starts, truth, limits):
    job = shop.scans(name.replace(" ", "_"), {"model": caption} | common, variants, dataset)
    job["fit"] = {"model": model, "parameters": starts}
    return Problem(name, job, truth, limits)


def problems(shop):
    speeds = [14000, 18000, 24000]
    loads = [3e-6, 9e-6, 24e-6]
    one = {"mw": 30000, "ext_coeff": 40000}
    two = {"mw": 40000, "mw_b": 16000}
    pairs = mixtures([(6e-6, 8e-6), (4e-6, 12e-6)], [12000, 16000, 20000])
    start = lambda value, fit=True: {"start": value, "fit": fit}
    mw = {"MW": start(7000.0)}
    yield Problem("example monomer-dimer", example("monomer-dimer"),
                  {"MW": 8100, "LnK1": 11.5}, ["MW", "LnK1"])
    yield Problem("example hetero, mass conservation", example("hetero"),
                  {"MWA": 10800, "MWB": 4320, "LnK1": 12.5}, ["LnK1"])
    yield simulated(shop, "one species", "Ideal", one, loads_and_speeds(loads, speeds),
                    one_component, "Ideal", mw, {"MW": 8100}, ["MW"])
    yield simulated(shop, "monomer-trimer, N fitted", "Mon-Nmer",
                    one | {"n1": 3, "lnk1": 23}, loads_and_speeds(loads, speeds), one_component,
                    "Monomer-Nmer", mw | {"N1": start(2.6), "LnK1": start(22.0)},
                    {"MW": 8100, "N": 3, "LnK1": 23}, [])
    yield simulated(shop, "isodesmic", "Isodesmic Association", one | {"lnk1": 10},
                    loads_and_speeds([2e-6, 5e-6, 12e-6], [12000, 15000, 19000]), one_component,
                    "Isodesmic Self-association", mw | {"LnK1": start(9.5)}, {"MWA": 8100, "LnKi": 10}, ["MWA", "LnKi"])
    yield simulated(shop, "incompetent monomer", "Inc.Mon.- Mon.-Nmer",
                    one | {"n1": 2, "lnk1": 12.5, "alpha": 0.2}, loads_and_speeds(loads, speeds),
                    one_component, "Inc.Monomer & Monomer-Nmer",
                    mw | {"N1": start(2.0, False), "LnK1": start(12.0), "Alpha": start(0.1)},
                    {"MW": 8100, "LnK1": 12.5, "Alpha": 0.2}, [])
    yield simulated(shop, "nonideal", "Nonideal", one | {"nonid": 0.1},
                    loads_and_speeds(loads, speeds), lambda k, i: one_component(k, i)
                    | {"fit_baseline": False}, "Nonideal", mw | {"VirialC": start(0.05)},
                    {"MW": 8100, "VirialC": 0.1}, [])
    yield simulated(shop, "A + B, linked pairs", "A+B<>AB", two | {"lnk1": 12.5}, pairs,
                    linked_pair, "A+B<>AB",
                    {"MW": start(9500.0), "MWB": start(4800.0), "LnK1": start(12.0)},
                    {"MWA": 10800, "MWB": 4320, "LnK1": 12.5}, ["LnK1"])
    yield simulated(shop, "A + 2 B, linked pairs", "A+B<>AB+B<>AB2",
                    two | {"lnk2": 11.5}, pairs, linked_pair, "A+B<>AB+B<>AB2",
                    {"MW": start(10800.0, False), "MWB": start(4320.0, False),
                     "LnK1": start(12.0), "LnK2": start(11.0)},
                    {"LnK1": 11.5, "LnK2": 11.5}, ["LnK1"])


# --- Tables.


class Table:
    def __init__(self, title, *heads):
        self.title, self.heads, self.rows = title, heads, []

    def add(self, *cells):
        self.rows.append(cells)

    def print(self):
        print(f"\n{self.title}\n\n| " + " | ".join(self.heads) + " |")
        print("|" + "---|" * len(self.heads))
        for row in self.rows:
            print("| " + " | ".join(str(cell) for cell in row) + " |")


class Comparison:
    """All that is compared; `worst` are the greatest differences over all problems."""

    def __init__(self, shop):
        self.shop = shop
        self.sums = Table(
            "Sums of squares, all parameters:", "Problem", "Points", "Fitted", "Sum, SciPy",
            "Sum, 1 press", f"Sum, {PRESSES} presses", "Values, 1 press",
            f"Values, {PRESSES} presses", "Standard errors")
        self.rests = Table(
            "At rest:", "Problem", "Sum, rest", "Values, rest", "1 press at rest by SciPy",
            "by its verdict", "Sum fall of 1 press", "Its largest move", "Moved",
            "repeat = rest at rest")
        self.shared = Table(
            f"Shared parameters ({PRESSES} presses):", "Problem", "Parameter", "Truth", "Quorvane",
            "SciPy", "Difference / sd", "sd, Quorvane", "sd, SciPy")
        self.limits = Table(
            "Confidence limits:", "Problem", "Parameter", "Method", "Level %", "Quorvane", "SciPy",
            "Differences / sd", "SciPy, exact F")
        self.alone = Table(
            "Limits of one parameter alone, by error analysis:", "Problem", "Parameter", "Level %",
            "Quorvane", "SciPy", "Differences / sd")
        self.quantiles = Table(
            "F quantiles:", "n", "m", "P", "Quorvane", "SciPy", "Difference %")
        self.worst = {"runs Z": 0.0, "Durbin-Watson": 0.0, "rms of a dataset": 0.0,
                      "correlation coefficient": 0.0}
        self.counts = dict.fromkeys(self.worst, 0)

    def note(self, what, difference):
        self.worst[what] = max(self.worst[what], float(np.max(np.abs(difference))))
        self.counts[what] += int(np.size(difference))

    def run(self, problem):
        job = problem.job | {"cross_correlation": {"critical": 0.95}}
        pressed = {n: self.shop.analyse(job | {"fit": job["fit"] | {"repeat": n}})
                   for n in (1, PRESSES, "rest")}
        result = pressed[PRESSES]
        fit = Fit(job, result)
        best, least = fit.solve(fit.start)
        covariance = fit.covariance(best, least)
        se = np.zeros(len(best))
        se[fit.free] = np.sqrt(np.diag(covariance))
        self.compare_fits(problem, fit, pressed, best, least, se)
        self.compare_statistics(fit, result, covariance)
        self.compare_alone(problem, fit, best, least, se)
        for name in problem.limits:
            self.compare_limits(problem, fit, best, least, se, name)

    def compare_fits(self, problem, fit, pressed, best, least, se):
        off = {}
        sums = {}
        for n, result in pressed.items():
            ours = np.array([p["value"] for p in result["fit"]["parameters"]])
            off[n] = ((ours - best) / np.where(fit.free, se, 1))[fit.free]
            sums[n] = result["fit"]["chi_squared"] / least - 1
        sd = np.array([p["sd"] for p in fit.parameters])
        ratio = sd[fit.free] / se[fit.free] - 1
        self.sums.add(problem.name, len(fit.residuals(best)), int(fit.free.sum()), f"{least:.9g}",
                      f"{sums[1]:+.1e}", f"{sums[PRESSES]:+.1e}", f"{np.abs(off[1]).max():.4f}",
                      f"{np.abs(off[PRESSES]).max():.4f}", f"{np.abs(ratio).max():.1e}")
        self.add_rest(problem.name, pressed, sums, off)
        for l in range(len(best) - fit.shared(), len(best)):
            if not fit.free[l]:
                continue
            value = fit.parameters[l]["value"]
            self.shared.add(problem.name, fit.names[l], problem.truth.get(fit.names[l], "-"),
                            f"{value:.8g}", f"{best[l]:.8g}", f"{(value - best[l]) / se[l]:+.4f}",
                            f"{sd[l]:.5g}", f"{se[l]:.5g}")

    def add_rest(self, name, pressed, sums, off):
        """Off SciPy's minimum, and whether that makes one press a fit at rest."""
        said = {True: "yes", False: "no", None: "not known"}
        once = pressed[1]["fit"]["rest"]
        by_scipy = sums[1] <= 1e-6 and np.abs(off[1]).max() <= 0.01
        self.rests.add(name, f"{sums['rest']:+.1e}", f"{np.abs(off['rest']).max():.4f}",
                       said[bool(by_scipy)], said[once["at_rest"]], f"{once['sum_fall']:.1e}",
                       f"{once['largest_move']:.4f}", once["moved"],
                       said[pressed["rest"]["fit"]["rest"]["at_rest"]])

    def compare_statistics(self, fit, result, covariance):
        sd = np.sqrt(np.diag(covariance))
        ours = np.array(result["cross_correlation"]["matrix"])[np.ix_(fit.free, fit.free)]
        self.note("correlation coefficient", ours - covariance / np.outer(sd, sd))
        for curve, quality in zip(result["fit"]["curves"], result["quality"]["datasets"]):
            e = np.array(curve["y"]) - np.array(curve["y_calc"])
            signs = e[e != 0] > 0
            p, n = np.sum(signs), np.sum(~signs)
            expected = 2 * p * n / (p + n) + 1
            variance = (expected - 1) * (expected - 2) / (p + n - 1)
            runs = 1 + np.sum(signs[1:] != signs[:-1])
            self.note("runs Z", quality["runs_z"] - (runs - expected) / np.sqrt(variance))
            durbin = np.sum(np.diff(e) ** 2) / np.sum(e**2)
            self.note("Durbin-Watson", quality["durbin_watson"] - durbin)
            self.note("rms of a dataset", quality["rms"] - np.sqrt(np.mean(e**2)))

    def compare_limits(self, problem, fit, best, least, se, name):
        for method, percent in ((2, 68.27), (2, 95.46), (1, 68.27)):
            found = self.search(problem.job, name, method, percent)
            interval = found["intervals"][0]
            l = fit.names.index(name)
            freedom = len(fit.residuals(best)) - int(fit.free.sum())
            exact = exact_ratio(method, percent, int(fit.free.sum()), freedom)
            ours = [interval["lower"], interval["upper"]]
            theirs = [fit.limit(best, least, l, found["ratio"], se[l], s) for s in (-1, 1)]
            by_f = [fit.limit(best, least, l, exact, se[l], s) for s in (-1, 1)]
            self.limits.add(problem.name, name, method, percent, span(ours), span(theirs),
                            ", ".join("-" if b is None else f"{(a - b) / se[l]:+.4f}"
                                      for a, b in zip(ours, theirs)), span(by_f))

    def compare_alone(self, problem, fit, best, least, se):
        levels = [68.27, 95.45]
        found = self.shop.analyse(problem.job | {"errors": {"levels": levels}})["errors"]
        freedom = len(fit.residuals(best)) - int(fit.free.sum())
        for parameter in found["parameters"]:
            l = fit.names.index(parameter["name"])
            for profile in parameter["profile"]:
                exact = 1 + f_distribution.ppf(profile["level"] / 100, 1, freedom) / freedom
                ours = [profile.get("lower"), profile.get("upper")]
                theirs = [fit.limit(best, least, l, exact, se[l], s) for s in (-1, 1)]
                self.alone.add(problem.name, parameter["name"], profile["level"], span(ours),
                               span(theirs), ", ".join(
                                   "-" if a is None or b is None else f"{(a - b) / se[l]:+.4f}"
                                   for a, b in zip(ours, theirs)))

    def search(self, job, name, method, percent):
        key = {"MWA": "MW", "N": "N1", "LnKi": "LnK1"}.get(name, name)
        search = {"percent": percent, "method": method, "parameters": [key]}
        fit = job["fit"] | {"repeat": PRESSES}
        return self.shop.analyse(job | {"fit": fit, "confidence": search})["confidence"]

    def compare_quantiles(self, problem):
        """F at a few degrees of freedom: the same scans cut down to ever fewer points."""
        for points in (15, 30, 100, 600):
            job = few_points(problem.job, points)
            for method, percent in ((2, 68.27), (2, 95.46), (2, 99.0), (1, 68.27), (1, 95.46)):
                level = {"percent": percent, "method": method}
                # So few points set no limits, and the search may fail; the ratio stands all the same.
                result = self.shop.analyse(job | {"confidence": level}, may_fail=True)
                n, m = result["fit"]["fitted_parameters"], result["fit"]["degrees_of_freedom"]
                ratio = result["confidence"]["ratio"]
                ours = ratio if method == 1 else (ratio - 1) * m / n
                exact = f_distribution.ppf(percent / 100, m if method == 1 else n, m)
                self.quantiles.add(m if method == 1 else n, m, f"{percent:g} %", f"{ours:.5f}",
                                   f"{exact:.5f}", f"{100 * (ours / exact - 1):+.2f}")

    def print(self):
        for table in (self.sums, self.rests, self.shared, self.limits, self.alone, self.quantiles):
            table.print()
        table = Table("Greatest differences:", "Statistic", "Compared", "Greatest difference")
        for what, worst in self.worst.items():
            table.add(what, self.counts[what], f"{worst:.1e}")
        table.print()


def few_points(job, points):
    """The job with its first scan alone, or its first three, thinned to about `points` points."""
    scans = 3 if points > 100 else 1
    job = job | {"load": job["load"][:scans], "dataset": [dict(d) for d in job["dataset"][:scans]]}
    for d in job["dataset"]:
        d["delete_outside"] = [7.0951 - 0.001 * points / scans, 7.0951]
    return job


def exact_ratio(method, percent, fitted, freedom):
    if method == 1:
        return f_distribution.ppf(percent / 100, freedom, freedom)
    return 1 + fitted / freedom * f_distribution.ppf(percent / 100, fitted, freedom)


def span(limits):
    return ", ".join("none" if x is None or x == 0 else f"{x:.6g}" for x in limits)


def main():
    with tempfile.TemporaryDirectory() as folder:
        shop = Workshop(sys.argv[1], folder)
        comparison = Comparison(shop)
        for problem in problems(shop):
            comparison.run(problem)
            if problem.name == "one species":
                comparison.compare_quantiles(problem)
        comparison.print()


if __name__ == "__main__":
    main()
