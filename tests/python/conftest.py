"""What the tests of the package share."""

import json
import os
import pathlib
import subprocess

import pytest

import quorvane as qv

ROOT = pathlib.Path(__file__).resolve().parents[2]
DIMER = ROOT / "examples" / "monomer-dimer"
HETERO = ROOT / "examples" / "hetero"
START = {"MW": 7000.0, "LnK1": 11.0}


@pytest.fixture(scope="session")
def dimer_scans():
    scans = [d for k in (1, 2, 3) for d in qv.load(DIMER / f"0000{k}.RA1", centerpiece="6 channels")]
    for scan in scans:
        scan.ext_coeff = 40000.0
    return scans


@pytest.fixture(scope="session")
def dimer(dimer_scans):
    return qv.fit(dimer_scans, "Monomer-Nmer", start=START)


@pytest.fixture
def cli(tmp_path):
    """Runs quorvane-cli with arguments and gives back the JSON that it wrote."""

    def run(*arguments):
        out = tmp_path / "out.json"
        program = os.environ["QUORVANE_CLI"]
        subprocess.run([program, *map(str, arguments), "--json", str(out)], check=True,
                       capture_output=True)
        return json.loads(out.read_text())

    return run
