#!/usr/bin/python3
"""The same analyses by two builds of quorvane-cli, for docs/evidence.md: all examples and twenty random
problems, their JSON compared number by number.

Usage: two_systems.py CLI WORD... (run by scripts/evidence); CLI is the first build, the words start
the second. Prints a Markdown table. Digits are -log10 of the difference, relative to the number, in
a list to the largest of the list; 16 means equal.
"""

import json
import math
import random
import subprocess
import sys
import tempfile
import time
from pathlib import Path

EXAMPLES = Path(__file__).resolve().parent.parent / "examples"
# Of one run, holding a path, or differences of numbers that agree to all digits that count.
SKIPPED = {"seconds", "log", "path", "version", "points_digest", "comment1", "rest"}
EQUAL = 16.0


def digits(a, b, scale):
    if a == b:
        return EQUAL
    return min(EQUAL, -math.log10(abs(a - b) / scale)) if scale > 0 else EQUAL


def compare(a, b, place, found):
    """Appends (digits, place) of each number; differences of any other kind count as no digit."""
    if isinstance(a, dict) and isinstance(b, dict) and a.keys() == b.keys():
        for key in a.keys() - SKIPPED:
            compare(a[key], b[key], f"{place}.{key}".lstrip("."), found)
    elif isinstance(a, list) and isinstance(b, list) and len(a) == len(b):
        if a and all(type(x) in (int, float) for x in a + b):
            scale = max(abs(x) for x in a + b)
            found.append((min(digits(x, y, scale) for x, y in zip(a, b)), place))
        else:
            for x, y in zip(a, b):
                compare(x, y, place, found)
    elif type(a) in (int, float) and type(b) in (int, float):
        found.append((digits(a, b, max(abs(a), abs(b))), place))
    elif a != b:
        found.append((0.0, place))


class Build:
    def __init__(self, words):
        self.words = words

    def analyse(self, job, out):
        start = time.monotonic()
        # Files, because what Wine starts beside the program would keep a pipe open.
        with open(out.with_suffix(".txt"), "w+") as said:
            subprocess.run([*self.words, "analyze", str(job), "--quiet", "--json", str(out)],
                           stdout=said, stderr=said)
            if not out.exists():
                said.seek(0)
                sys.exit(f"{job}: {said.read()}")
        return json.loads(out.read_text()), time.monotonic() - start


def random_problem(cli, folder, number):
    """A job on simulated scans of random parameters, loads and speeds."""
    dice = random.Random(number)
    dimer = number % 2 == 0
    epsilon, weight = dice.choice([20000.0, 40000.0, 60000.0]), dice.uniform(15000, 60000)
    lines, loads = [], []
    for k in range(dice.randint(2, 6)):
        scan = folder / f"{number:02}-{k}.RA8"
        inputs = {"save_as": "RA8", "speed": dice.choice([12000, 16000, 20000]), "mw": weight,
                  "ext_coeff": epsilon, "load": f"{dice.uniform(3e-6, 3e-5):.3E}",
                  "meniscus": 6.85, "base": 7.10, "rms": 0.005,
                  "model": "Mon-Nmer" if dimer else "Ideal"}
        if dimer:
            inputs |= {"n1": 2, "lnk1": dice.uniform(10, 13)} if not k else {"n1": 2, "lnk1": known}
            known = inputs["lnk1"]
        text = "\n".join(f"{name} = {json.dumps(value)}" for name, value in inputs.items())
        (folder / "sim.toml").write_text(text + "\n")
        subprocess.run([cli, "simulate", folder / "sim.toml", "-o", scan, "--seed", str(100 * number + k)],
                       check=True, capture_output=True)
        loads.append(f'[[load]]\nfile = "{scan.name}"')
        lines.append(f"[[dataset]]\nnumber = {k + 1}\next_coeff = {epsilon}\nref_conc = 2e-6")
    fit = {"MW": 7000.0, **({"N1": 2.0, "LnK1": 11.0} if dimer else {})}
    lines.append(f'[fit]\nmodel = "{"Monomer-Nmer" if dimer else "Ideal"}"\nrepeat = "rest"\n[fit.parameters]')
    lines += [f"{name} = {{ start = {value} }}" for name, value in fit.items()]
    lines.append("[confidence]\n[cross_correlation]")
    job = folder / f"random-{number:02}.toml"
    job.write_text("\n".join(loads + lines) + "\n")
    return job


def moved(a, b):
    """The largest difference of a fitted parameter, in standard deviations."""
    pairs = zip(a["fit"]["parameters"], b["fit"]["parameters"])
    return max(abs(x["value"] - y["value"]) / x["sd"] for x, y in pairs if x["fitted"] and x["sd"] > 0)


def row(job, name, first, second, folder):
    out = [folder / "first.json", folder / "second.json"]
    for file in out:
        file.unlink(missing_ok=True)
    (a, seconds_a), (b, seconds_b) = first.analyse(job, out[0]), second.analyse(job, out[1])
    found = []
    compare(a, b, "", found)
    of = lambda prefix, default=None: min((d for d, p in found if p.startswith(prefix)), default=default)
    shown = lambda d: "-" if d is None else f"{d:.1f}"
    cells = [name, str(len(found)), shown(of("fit.parameters.value")), f"{moved(a, b):.0e}",
             shown(of("fit.parameters.sd")),
             shown(of("fit.chi_squared")), shown(of("confidence.intervals")),
             f"{seconds_a:.2f}", f"{seconds_b:.2f}"]
    print("| " + " | ".join(cells) + " |", flush=True)
    return moved(a, b), of("fit.chi_squared")


def main():
    first, second = Build(sys.argv[1:2]), Build(sys.argv[2:])
    heads = ["Problem", "Numbers and lists", "Parameters", "off by, sd", "Standard deviations",
             "Sum of squares", "Limits", "Linux, s", "Wine, s"]
    print("| " + " | ".join(heads) + " |\n" + "|---" * len(heads) + "|")
    rows = []
    with tempfile.TemporaryDirectory() as place:
        folder = Path(place)
        for job in sorted(EXAMPLES.glob("*/*.toml")):
            if job.stem != "plan":
                rows.append(row(job, f"{job.parent.name}/{job.stem}", first, second, folder))
        for number in range(1, 21):
            job = random_problem(sys.argv[1], folder, number)
            rows.append(row(job, f"random {number}", first, second, folder))
    print(f"\nParameters differ by {max(r[0] for r in rows):.0e} standard deviations at most, "
          f"sums of squares agree to {min(r[1] for r in rows):.1f} digits.")


if __name__ == "__main__":
    main()
