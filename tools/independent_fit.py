"""A fit by the formulae of docs/models.md in NumPy and SciPy, sharing no code with Quorvane.

For the tools that lay our numbers beside independent ones. Needs Debian's python3-numpy and
python3-scipy.
"""

import os
from dataclasses import dataclass

os.environ.setdefault("OPENBLAS_NUM_THREADS", "1")  # the matrices are small

import numpy as np
from scipy.optimize import brentq, least_squares

GAS_CONSTANT = 8.314e7  # erg/(mol K)


# --- Signals: docs/models.md in NumPy. Every function takes complex parameters, so that derivatives
# --- come by complex steps, exact to rounding.


@dataclass
class Scan:
    r: np.ndarray
    y: np.ndarray
    eps: tuple[float, float]
    w: float  # omega^2 / (R T)
    r0: float
    ends: tuple[float, float]  # meniscus and base
    loads: tuple[float, float]
    owner: int  # place of the scan whose reference concentrations it has

    def x(self, r=None):
        return ((self.r if r is None else r) ** 2 - self.r0**2) / 2


def species_of(model, p):
    """Molecules of A, of B, and ln K of each species."""
    single = (1, 0, 0.0)
    if model == "Ideal":
        return [single]
    if model in ("Monomer-Nmer", "Inc.Monomer & Monomer-Nmer"):
        return [single, (p["N"], 0, p["LnK1"])]
    pair = [single, (0, 1, 0.0), (1, 1, p["LnK1"])]
    if model == "A+B<>AB":
        return pair
    if model == "A+B<>AB+B<>AB2":
        return pair + [(1, 2, p["LnK1"] + p["LnK2"])]
    raise ValueError(model)


def masses(p):
    return p.get("MW", p.get("MWA")), p.get("MWB", 0.0)


def species_sum(model, p, c, scan, weights, r=None):
    """Sum over the species of weights (one for each A, one for each B) times concentration."""
    s = masses(p)
    total = 0
    for a, b, ln_k in species_of(model, p):
        rate = (a * s[0] + b * s[1]) * scan.w
        amount = np.exp(a * c[0] + b * c[1] + ln_k + rate * scan.x(r))
        total = total + (a * weights[0] + b * weights[1]) * amount
    return total


def incompetent_monomer(p, scan, c):
    """Signal of the part that cannot associate: Alpha of all mass in the column."""
    nodes, weights = np.polynomial.legendre.leggauss(40)
    top, base = (end**2 for end in scan.ends)
    r = np.sqrt((base + top) / 2 + (base - top) / 2 * nodes)
    mean = weights @ species_sum("Monomer-Nmer", p, c, scan, (1, 0), r) / 2
    shape = weights @ np.exp(p["MW"] * scan.w * scan.x(r)) / 2
    at_r0 = p["Alpha"] / (1 - p["Alpha"]) * mean / shape
    return scan.eps[0] * at_r0 * np.exp(p["MW"] * scan.w * scan.x())


def signal(model, p, offset, c, scan, constants):
    eps = scan.eps[0]
    if model == "Nonideal":
        c0 = np.exp(c[0])
        molar_mass = p["MW"] / (1 - constants["vbar"] * constants["density"])
        push = 2 * p["VirialC"] * molar_mass * ((scan.y - offset) / eps - c0)
        return eps * c0 * np.exp(p["MW"] * scan.w * scan.x() - push) + offset
    if model == "Isodesmic Self-association":
        u = np.exp(c[0] + p["MWA"] * scan.w * scan.x())
        return eps * u / (1 - np.exp(p["LnKi"]) * u) ** 2 + offset
    y = species_sum(model, p, c, scan, scan.eps) + offset
    if model == "Inc.Monomer & Monomer-Nmer":
        y = y + incompetent_monomer(p, scan, c)
    return y


def mass_residuals(model, p, c, scan, tolerance):
    """What soft mass conservation adds; the column of the examples is as wide as its radius."""
    target = (scan.y[-1] - scan.y[0]) / tolerance
    for k in (0, 1):
        total = species_sum(model, p, c, scan, (1, 0) if k == 0 else (0, 1))
        yield target * (1 - trapezoid_mean(total, scan.r) / scan.loads[k])


def trapezoid_mean(c, r):
    widths = (r[1:] + r[:-1]) * np.diff(r)
    return np.sum(widths * (c[1:] + c[:-1]) / 2) / np.sum(widths)


# --- A problem as least squares.


class Fit:
    """The least squares of a finished analysis, from its points, flags and held values."""

    def __init__(self, job, result):
        self.model = result["fit"]["model"]
        self.constants = result["constants"]
        self.conserved = job["fit"].get("use_mass_conservation", False)
        self.parameters = result["fit"]["parameters"]
        self.names = [p["name"] for p in self.parameters]
        self.free = np.array([p["fitted"] for p in self.parameters])
        self.links = {d["number"]: d["link_to"] for d in job["dataset"] if "link_to" in d}
        self.scans = [self.scan(d, result["datasets"]) for d in result["datasets"]]
        self.start = self.first_guess(job)

    def scan(self, d, all_sets):
        good = np.array(d["good"])
        kelvin = self.constants["temperature"] + 273.15
        owner = self.links.get(d["number"], d["number"]) - 1
        return Scan(
            r=np.array(d["r"])[good],
            y=np.array(d["c"])[good],
            eps=(d["ext_coeff"], d["ext_coeff_b"]),
            w=(d["speed"] * np.pi / 30) ** 2 / (GAS_CONSTANT * kelvin),
            r0=all_sets[owner]["ref_radius"],
            ends=(d["meniscus"], d["base"]),
            loads=(d["load_a"], d["load_b"]),
            owner=owner,
        )

    def first_guess(self, job):
        """The job's start values; baselines of 0; concentrations from the signal at R0."""
        n = len(self.scans)
        start = np.zeros(len(self.names))
        own = job["fit"]["parameters"]
        for k, scan in enumerate(self.scans):
            y0 = max(np.interp(scan.r0, scan.r, scan.y), 0.02)
            share = 3 if self.two_components() else 2
            start[n + k] = np.log(y0 / share / scan.eps[0])
            if self.two_components():
                start[2 * n + k] = np.log(y0 / share / scan.eps[1])
        for l in range(len(self.names) - self.shared(), len(self.names)):
            key = {"MWA": "MW", "N": "N1", "LnKi": "LnK1"}.get(self.names[l], self.names[l])
            start[l] = own[key]["start"]
        return start

    def two_components(self):
        return "MWB" in self.names

    def shared(self):
        return sum("(" not in name for name in self.names)

    def residuals(self, values):
        n = len(self.scans)
        p = dict(zip(self.names[-self.shared() :], values[-self.shared() :]))
        parts = []
        for k, scan in enumerate(self.scans):
            c = (values[n + scan.owner], values[2 * n + scan.owner] if self.two_components() else 0)
            parts.append(scan.y - signal(self.model, p, values[k], c, scan, self.constants))
            if self.conserved:
                tolerance = self.constants["mc_tolerance"]
                parts.append(np.array(list(mass_residuals(self.model, p, c, scan, tolerance))))
        return np.concatenate(parts)

    def jacobian(self, values, free):
        columns = []
        for l in np.flatnonzero(free):
            moved = values.astype(complex)
            moved[l] += 1e-40j
            columns.append(self.residuals(moved).imag / 1e-40)
        return np.array(columns).T

    def solve(self, start, free=None):
        """Least squares over the free parameters; values, sum of squares."""
        free = self.free if free is None else free

        def full(z):
            values = start.copy()
            values[free] = z
            return values

        solution = least_squares(
            lambda z: self.residuals(full(z)),
            start[free],
            jac=lambda z: self.jacobian(full(z), free),
            x_scale="jac",
            method="lm",
            xtol=1e-15,
            ftol=1e-15,
            gtol=1e-15,
            max_nfev=2000,
        )
        return full(solution.x), 2 * solution.cost

    def covariance(self, values, total):
        j = self.jacobian(values, self.free)
        scale = np.linalg.norm(j, axis=0)
        inverse = np.linalg.inv((j / scale).T @ (j / scale)) / np.outer(scale, scale)
        return inverse * total / (j.shape[0] - j.shape[1])

    def limit(self, best, least, l, ratio, se, sign):
        """Where the sum of squares, everything else fitted anew, has grown by `ratio`."""
        free = self.free.copy()
        free[l] = False
        last = best.copy()

        def excess(t):
            nonlocal last
            trial = last.copy()
            trial[l] = best[l] + sign * t * se
            last, total = self.solve(trial, free)
            return total / least - ratio

        far = 1.0
        while excess(far) < 0:
            far += 1.0
            if far > 60:
                return None
        return best[l] + sign * se * brentq(excess, far - 1.0, far, xtol=1e-6)
