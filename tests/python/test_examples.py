"""The examples of the package run, and the one for a cluster survives the loss of a worker."""

import importlib
import os
import re
import signal
import subprocess
import sys

import pytest

from conftest import ROOT

EXAMPLES = ROOT / "examples" / "python"


def test_the_notebook_like_example(tmp_path):
    pytest.importorskip("matplotlib")
    done = subprocess.run([sys.executable, EXAMPLES / "analyse.py", tmp_path], check=True,
                          capture_output=True, text=True)
    assert re.search(r"Monomer-Nmer +AICc .* weight 1\.000", done.stdout)
    assert (tmp_path / "figure.png").stat().st_size > 10_000
    assert "<html" in (tmp_path / "report.html").read_text()


@pytest.fixture(scope="module")
def cluster():
    """The example as a module that workers find too."""
    pytest.importorskip("distributed")
    with pytest.MonkeyPatch.context() as patch:
        patch.setenv("PYTHONPATH", f"{EXAMPLES}{os.pathsep}{os.environ['PYTHONPATH']}")
        patch.syspath_prepend(EXAMPLES)
        yield importlib.import_module("cluster")


def test_the_cluster_example_with_two_workers(cluster):
    done = subprocess.run([sys.executable, EXAMPLES / "cluster.py", "--workers", "2",
                           "--experiments", "60", "--chunk", "10"], check=True,
                          capture_output=True, text=True, timeout=300)
    rows = [line.split("|") for line in done.stdout.splitlines() if line.startswith("| ")]
    assert [row[1].strip() for row in rows] == ["Model"] + 2 * ["Monomer-Nmer"]
    for row in rows[1:]:
        assert abs(float(row[5])) < 0.6 and 0.7 < float(row[7]) < 1.4 and float(row[9]) > 80
    assert "60 experiments, 0 without a result" in done.stdout and "on 2 workers" in done.stdout


def test_a_lost_worker_costs_no_result(cluster):
    from distributed import Client, LocalCluster

    with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as local, \
            Client(local) as client:
        victims = list(client.run(os.getpid).values())
        killed = []

        def show(done):
            if not killed:
                os.kill(victims[0], signal.SIGKILL)
                killed.append(done)

        shared = cluster.the_truth(cluster.hetero)
        results, _ = cluster.gather(client, shared, 80, 5, show)
    assert killed and all(result is not None for result in results)
    assert results[7] == cluster.experiments(shared, 7, 1)[0][0]
    assert abs(results[0]["LnK1"][0] - shared[2]["LnK1"]) < 1.0

