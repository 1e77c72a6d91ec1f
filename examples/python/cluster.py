#!/usr/bin/env python3
"""Thousands of simulated experiments, fitted on a cluster: how often is the truth where a fit says
that it is?

    python3 cluster.py                                  500 experiments on the cores of this machine
    python3 cluster.py --experiments 10000 --workers 2
    python3 cluster.py --address tcp://head:8786        on a Dask cluster that runs already

An example, "monomer-dimer" or "hetero", is fitted once. Its curves with new normal noise are experiments whose
truth is known; so many at a time are fitted as a task. Results are gathered as they come. Tasks of a
worker that is lost go to the others, and the seed of an experiment is its number, so that the table
is the same on any number of workers. Its columns are those of docs/evidence.md.
"""

import argparse
import math
import os
import pathlib
import signal
import sys
import time

import dask
import numpy as np
from distributed import Client, LocalCluster, as_completed

import quorvane as qv

EXAMPLES = pathlib.Path(__file__).resolve().parents[1]

# Dask's workers give memory back to the system after each fit and fetch it again for the next, which
# takes longer than the fit. These are the limits above which they do, bytes.
KEEP_MEMORY = {"MALLOC_TRIM_THRESHOLD_": 100_000_000, "MALLOC_MMAP_THRESHOLD_": 33_554_432}


def monomer_dimer():
    """Scans of a protein and its dimer, and how they are fitted."""
    folder = EXAMPLES / "monomer-dimer"
    scans = qv.load(sorted(folder.glob("*.RA1")), centerpiece="6 channels")
    for scan in scans:
        scan.ext_coeff = 40000.0
    return scans, {"model": "Monomer-Nmer", "start": {"MW": 7000.0, "LnK1": 11.0}}


def hetero():
    """Scans of A + B at two wavelengths; those of a column share their concentrations. The weights
    are known."""
    scans = qv.load(sorted((EXAMPLES / "hetero").glob("*.RA8")))
    for number, scan in enumerate(scans):
        scan.meniscus, scan.base = 6.85, 7.10
        at_230 = number % 2 == 1
        scan.ext_coeff, scan.ext_coeff_b = (160000.0, 110000.0) if at_230 else (44000.0, 11000.0)
    return scans, {"model": "A+B<>AB", "start": {"MW": 10800.0, "MWB": 4320.0, "LnK1": 12.0},
                   "held": ["MW", "MWB"], "links": {1: 0, 3: 2, 5: 4, 7: 6}}


def the_truth(example):
    """The scans of an example with the curves of their fit in place of the signals, how they are
    fitted, the parameters that are looked for, and the noise."""
    scans, how = example()
    fit = qv.fit(scans, **how)
    for number, scan in enumerate(fit.datasets):
        scan.signal = fit.curve(number)
        scans[number] = scan
    how["start"] = {name: fit[name].value for name in how["start"]}
    truth = {name: value for name, value in how["start"].items() if fit[name].fitted}
    return scans, how, truth, fit.rms


def experiments(shared, first, count):
    """Makes and fits experiments `first` to `first` + `count` - 1; a worker runs this.

    A list of {name: (value, standard error)}, None for a fit without a result, and the seconds of
    work."""
    began = time.perf_counter()
    scans, how, truth, noise = shared
    found = []
    for number in range(first, first + count):
        random = np.random.default_rng(number)
        noisy = []
        for scan in scans:
            one = scan.copy()
            one.signal = scan.signal + random.normal(0.0, noise, len(scan))
            noisy.append(one)
        try:
            fit = qv.fit(noisy, **how)
        except qv.FitError:
            found.append(None)
            continue
        found.append({name: (fit[name].value, fit[name].sd) for name in truth})
    return found, time.perf_counter() - began


def coverage_table(results, shared):
    """Markdown: whether the truth is found, and missed as often as the standard errors say."""
    _, how, truth, _ = shared
    fits = [result for result in results if result is not None]
    lines = ["| Model | Parameter | Truth | Fits | Bias, sd | Bias, its errors | rms error / sd "
             "| +- 1 sd % | +- 2 sd % |", "|---|---|---|---|---|---|---|---|---|"]
    for name, value in truth.items():
        found, errors = np.array([fit[name] for fit in fits]).T
        off = found - value
        cells = [how["model"], name, f"{value:.6g}", str(len(fits)),
                 f"{off.mean() / errors.mean():+.2f}",
                 f"{off.mean() / (off.std(ddof=1) / math.sqrt(len(fits))):+.2f}",
                 f"{math.sqrt(np.mean(off**2)) / errors.mean():.2f}"]
        cells += [f"{100 * np.mean(np.abs(off) <= k * errors):.0f}" for k in (1, 2)]
        lines.append("| " + " | ".join(cells) + " |")
    return "\n".join(lines)


def gather(client, shared, count, chunk, show):
    """Fits `count` experiments on the workers of `client`, `chunk` a task, and tells `show` how many
    are done: results in the order of their numbers, and the seconds that the workers spent. Ctrl+C
    ends it with those that are done."""
    futures = {}
    results = {}
    seconds = 0.0
    try:
        for first in range(0, count, chunk):  # a task has all that it needs: no worker is missed
            task = client.submit(experiments, shared, first, min(chunk, count - first), retries=5,
                                 pure=False)
            futures[task] = first
        for future in as_completed(futures):
            found, spent = future.result()
            results.update(enumerate(found, start=futures[future]))
            seconds += spent
            future.release()
            show(len(results))
    except KeyboardInterrupt:
        client.cancel(list(futures))
    return [results[number] for number in sorted(results)], seconds


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n")[0])
    parser.add_argument("--address", help="of a Dask scheduler; without it workers are started here")
    parser.add_argument("--workers", type=int, default=os.cpu_count(), help="to be started here")
    parser.add_argument("--experiments", type=int, default=500)
    parser.add_argument("--example", choices=["monomer-dimer", "hetero"], default="monomer-dimer")
    parser.add_argument("--chunk", type=int, default=50, help="experiments of a task")
    arguments = parser.parse_args()
    if min(arguments.workers, arguments.experiments, arguments.chunk) < 1:
        parser.error("whole numbers from 1 are wanted")
    cluster = None
    if arguments.address is None:
        handler = signal.signal(signal.SIGINT, signal.SIG_IGN)  # Ctrl+C is for this process alone
        with dask.config.set({f"distributed.nanny.pre-spawn-environ.{name}": limit
                              for name, limit in KEEP_MEMORY.items()}):
            cluster = LocalCluster(n_workers=arguments.workers, threads_per_worker=1,
                                   dashboard_address=None)
        signal.signal(signal.SIGINT, handler)
    terminal = sys.stderr.isatty()

    def show(done):
        if terminal:
            print(f"\r{done} of {arguments.experiments}", end="", file=sys.stderr, flush=True)

    shared = the_truth({"monomer-dimer": monomer_dimer, "hetero": hetero}[arguments.example])
    try:
        client = Client(arguments.address or cluster, timeout=10)
    except (OSError, ValueError) as fault:
        parser.exit(1, f"no scheduler answers at {arguments.address}: {fault}\n")
    with client:
        began = time.perf_counter()
        results, seconds = gather(client, shared, arguments.experiments, arguments.chunk, show)
        elapsed = time.perf_counter() - began
        workers = len(client.scheduler_info()["workers"])
    if cluster is not None:
        cluster.close()
    if terminal:
        print(file=sys.stderr)
    failed = sum(result is None for result in results)
    if len(results) - failed > 1:
        print(coverage_table(results, shared))
    if len(results) < arguments.experiments:
        print(f"\nStopped before the end, {arguments.experiments} were wanted.")
    print(f"\n{len(results)} experiments, {failed} without a result; {elapsed:.1f} s on {workers} "
          f"workers, {seconds:.1f} s of work")


if __name__ == "__main__":
    main()
