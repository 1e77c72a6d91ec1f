#!/usr/bin/python3
"""How long SciPy takes for fits and errors of the sizes of bench/fit_bench, for docs/performance.md.

Usage: peer_speed.py FIT_BENCH (run by scripts/evidence). Prints a Markdown table of both programs.
The peer is what one would write in Python: scipy.optimize.least_squares (MINPACK), model and exact
derivatives over all points at once in NumPy, limits by bracketing and brentq, each fit begun at its
neighbour's solution. One process on one core. Needs Debian's python3-numpy and python3-scipy.
"""

import json
import subprocess
import sys
from time import perf_counter

from solvers import Table  # first: it keeps NumPy to one thread

import numpy as np
from scipy.optimize import brentq, least_squares
from scipy.stats import f as f_distribution

NOISE = 0.005
LEVELS = [68.27, 95.45]
AXIS_LEVEL = 99.73  # of the axes of a surface
REPLICATES, TIMED_REPLICATES = 1000, 20
SIDE = 41  # points of a surface


class Problem:
    """Species (molecules of A, of B, which ln K they hold) at `sets` scans of `points` points.

    Parameters: baselines, ln reference concentrations of A (and of B), weights, ln K.
    """

    def __init__(self, species, sets, points, shared, conserved):
        self.species, self.sets, self.conserved = species, sets, conserved
        self.components = 1 + any(b for _, b, _ in species)
        d = np.arange(sets)
        self.of = np.repeat(d, points)
        r = np.linspace(6.4, 6.6, points)
        x = (r**2 - (6.4 + 0.4 / 3) ** 2) / 2
        self.wx = np.outer((10000 + 4000 * (d % 3)) ** 2 * 1.319007e-10 / 293.15, x).ravel()
        weights = np.gradient(r) * r  # of a mean over the column
        self.mean_weights = weights / weights.sum()
        self.eps = (1.0, 0.7)
        concentrations = [np.log(0.21 + 0.01 * d), np.log(0.17 + 0.02 * d)][: self.components]
        self.truth = np.concatenate([np.full(sets, 0.01), *concentrations, shared])
        self.first_shared = len(self.truth) - len(shared)
        self.y = np.zeros(sets * points)
        self.targets = np.zeros(2 * sets if conserved else 0)
        self.loads = np.ones(len(self.targets))
        self.simulate(np.random.default_rng(17))
        odd = np.arange(len(self.truth)) % 2 == 0
        self.start = self.truth * np.where(odd, 0.97, 1.04)

    def simulate(self, generator):
        curve = self.curve(self.truth)
        self.y = curve + generator.normal(0, NOISE, len(curve))
        if self.conserved:
            by_set = self.y.reshape(self.sets, -1)
            self.targets = np.tile((by_set[:, -1] - by_set[:, 0]) / 0.25, 2)
            self.loads = self.means(self.totals(self.concentrations(self.truth)))

    def concentrations(self, p):
        n = self.sets
        own = p[n : self.first_shared].reshape(self.components, n)[:, self.of]
        shared = p[self.first_shared :]
        result = []
        for a, b, ks in self.species:
            exponent = sum(shared[self.components + k] for k in ks)
            for count, c, weight in zip((a, b), own, shared):
                exponent = exponent + count * (c + weight * self.wx)
            result.append(np.exp(exponent))
        return result

    def totals(self, concentrations):
        return [sum(s[k] * c for s, c in zip(self.species, concentrations)) for k in (0, 1)]

    def means(self, totals):
        return np.concatenate([t.reshape(self.sets, -1) @ self.mean_weights for t in totals])

    def curve(self, p):
        total = self.totals(self.concentrations(p))
        return p[self.of] + self.eps[0] * total[0] + self.eps[1] * total[1]

    def residuals(self, p):
        totals = self.totals(self.concentrations(p))
        off = p[self.of] + self.eps[0] * totals[0] + self.eps[1] * totals[1] - self.y
        if not self.conserved:
            return off
        return np.concatenate([off, self.targets * (self.means(totals) / self.loads - 1)])

    def changes(self, concentrations):
        """Per species: what its logarithm gains with c, weight and ln K, by column."""
        ks = len(self.truth) - self.first_shared - self.components
        for s, c in zip(self.species, concentrations):
            gains = [(k, s[k]) for k in range(self.components)]
            gains += [(self.components + k, s[k] * self.wx) for k in range(self.components)]
            gains += [(2 * self.components + k, 1) for k in range(ks) if k in s[2]]
            yield s, c, gains

    def jacobian(self, p):
        """Exact; columns of one scan are filled for its points only."""
        n, points, columns = self.sets, len(self.y), len(self.truth)
        kinds = columns - self.first_shared + self.components
        parts = np.zeros((2, kinds, points))  # change of the total of A and of B
        for s, c, gains in self.changes(self.concentrations(p)):
            for kind, gain in gains:
                for k in range(self.components):
                    parts[k, kind] += s[k] * gain * c
        signal = self.eps[0] * parts[0] + self.eps[1] * parts[1]
        rows = np.arange(points)
        j = np.zeros((points + len(self.targets), columns))
        j[rows, self.of] = 1
        for k in range(self.components):
            j[rows, n * (k + 1) + self.of] = signal[k]
        j[:points, self.first_shared :] = signal[self.components :].T
        if self.conserved:
            self.fill_means(j[points:], parts)
        return j

    def fill_means(self, j, parts):
        n, d = self.sets, np.arange(self.sets)
        scale = self.targets / self.loads
        for k in (0, 1):
            mean = parts[k].reshape(len(parts[k]), n, -1) @ self.mean_weights
            mean *= scale[n * k : n * (k + 1)]
            for c in range(self.components):
                j[n * k + d, n * (c + 1) + d] = mean[c]
            j[n * k + d, self.first_shared :] = mean[self.components :].T

    def fit(self, start, held=()):
        free = np.ones(len(start), bool)
        free[list(held)] = False

        def full(z):
            p = start.copy()
            p[free] = z
            return p

        found = least_squares(lambda z: self.residuals(full(z)), start[free], method="lm",
                              jac=lambda z: self.jacobian(full(z))[:, free], x_scale="jac",
                              xtol=1e-10, ftol=1e-10, gtol=1e-10)
        return full(found.x), 2 * found.cost


class Peer:
    def __init__(self, problem):
        self.problem = problem
        self.best, self.least = problem.fit(problem.start)
        j = problem.jacobian(self.best)
        self.freedom = j.shape[0] - j.shape[1]
        self.se = np.sqrt(np.diag(np.linalg.inv(j.T @ j)) * self.least / self.freedom)
        self.shared = range(problem.first_shared, len(self.best))

    def ratio(self, level):
        return 1 + f_distribution.ppf(level / 100, 1, self.freedom) / self.freedom

    def limits(self, l, sign):
        last = self.best

        def excess(t, ratio):
            nonlocal last
            trial = last.copy()
            trial[l] = self.best[l] + sign * t * self.se[l]
            last, total = self.problem.fit(trial, [l])
            return total / self.least - ratio

        low = 0.0
        for level in LEVELS:
            high = low + 1.0
            while excess(high, self.ratio(level)) < 0:
                low, high = high, high + 1.0
            low = brentq(excess, low, high, (self.ratio(level),), xtol=1e-4)

    def profiles(self):
        for l in self.shared:
            for sign in (-1, 1):
                self.limits(l, sign)

    def replicates(self, count):
        generator = np.random.default_rng(1)
        problem = self.problem
        data, curve = problem.y, problem.curve(self.best)
        for _ in range(count):
            problem.y = curve + generator.normal(0, np.sqrt(self.least / self.freedom), len(data))
            problem.fit(self.best)
        problem.y = data

    def row(self):
        """Of a surface over the first and the last shared parameter, one error beside the best."""
        x, y = self.shared[0], self.shared[-1]
        reach = np.sqrt(f_distribution.ppf(AXIS_LEVEL / 100, 1, self.freedom)) * self.se[x]
        values = self.best[x] + np.linspace(-reach, reach, SIDE)
        middle = self.best.copy()
        middle[y] += self.se[y]
        middle, _ = self.problem.fit(middle, [x, y])
        for places in (values[SIDE // 2 :], values[SIDE // 2 - 1 :: -1]):
            last = middle
            for value in places:
                last = last.copy()
                last[x] = value
                last, _ = self.problem.fit(last, [x, y])


def seconds_of(work):
    begun = perf_counter()
    work()
    return perf_counter() - begun


def median_seconds(work, runs=5):
    return float(np.median([seconds_of(work) for _ in range(runs)]))


def three_digits(value):
    return f"{float(f'{value:.3g}'):g}"


def our_seconds(bench):
    done = subprocess.run(
        [bench, "--benchmark_filter=Verdict|ToRest|Profiles|MonteCarlo1000|Surface41",
         "--benchmark_format=json"], check=True, capture_output=True, text=True)
    return {one["name"]: one["real_time"] / 1000 for one in json.loads(done.stdout)["benchmarks"]}


def main():
    ours = our_seconds(sys.argv[1])
    dimer = Problem([(1, 0, ()), (2, 0, (0,))], 20, 400, [8100.0, 1.5], False)
    pairs = [(1, 0, ()), (0, 1, ()), (1, 1, (0,)), (1, 2, (0, 1))]
    mixture = Problem(pairs, 30, 400, [8100.0, 5000.0, 2.0, 1.0], True)
    table = Table("Beside SciPy:", "what", "problem", "SciPy", "Quorvane", "times")
    for number, (name, problem) in enumerate((("b", dimer), ("c", mixture)), 1):
        peer = Peer(problem)
        rows = [
            ("a fit, starts 3 to 4 % off", f"ToRest/{number}",
             median_seconds(lambda: problem.fit(problem.start))),
            ("a fit begun where it is at rest", f"Verdict/{number}/one_press:0",
             median_seconds(lambda: problem.fit(peer.best))),
            ("profiles at two levels", f"Profiles/{number}/real_time", seconds_of(peer.profiles)),
            ("1,000 Monte Carlo replicates", f"MonteCarlo1000/{number}/real_time",
             seconds_of(lambda: peer.replicates(TIMED_REPLICATES))
             * REPLICATES / TIMED_REPLICATES),
            ("a surface of 41 x 41", f"Surface41/{number}/real_time", seconds_of(peer.row) * SIDE),
        ]
        for what, key, seconds in rows:
            table.add(what, name, f"{three_digits(seconds)} s",
                      f"{three_digits(ours[key] * 1000)} ms", f"{seconds / ours[key]:.0f}")
    table.print()


if __name__ == "__main__":
    main()
