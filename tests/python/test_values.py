"""Datasets and fits as values: copies, pickles, masks, threads, refusals."""

import copy
import gc
import os
import pathlib
import pickle
import re
import shutil
import signal
import subprocess
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest

import quorvane as qv
from conftest import DIMER, START

RADII = np.linspace(6.8, 7.1, 50)


def scan(**more):
    return qv.Dataset(RADII, 0.3 * np.exp(RADII - 6.8), 0.01, **{"speed": 16000, **more})


def test_a_mask_writes_through_and_outlives_its_dataset():
    d = scan()
    mask = d.good
    before = d.ref_radius
    d.good[40:] = False
    d.good[0] = False
    assert not mask[0] and d.ref_radius < before
    assert (d.error == 0.01).all()  # a deleted point keeps its error
    assert len(qv.fit(d, "Ideal").radii(0)) == 39
    del d
    gc.collect()
    mask[:] = True
    assert mask.sum() == 50
    other = scan()
    assert copy.copy(other) is not other
    copied = copy.deepcopy(other)
    copied.good[5] = False
    assert other.good.all() and not pickle.loads(pickle.dumps(copied)).good[5]


def test_fits_leave_their_datasets_as_they_are():
    d = scan(name="one")
    fit = qv.fit([d], "Ideal", held=["Offset(1)"])
    assert d.ref_conc == 0.5 and fit.datasets[0].ref_conc != 0.5
    assert fit.datasets[0].name == "one" and not fit["Offset(1)"].fitted


def test_pickles_give_the_same_fit(dimer):
    again = pickle.loads(pickle.dumps(dimer))
    assert dict(again.parameters) == dict(dimer.parameters) and again.log == dimer.log
    assert (again.covariance == dimer.covariance).all()
    assert (again.curve(4) == dimer.curve(4)).all()
    assert again.quality() == dimer.quality() and again.aicc == dimer.aicc
    assert again.intervals(["MW"]) == dimer.intervals(["MW"])
    dimer.joint_intervals(["MW"])
    searched = dimer._fit.pack()  # with what the searches found
    assert qv.Fit(type(dimer._fit).unpack(searched))._fit.pack() == searched
    assert copy.deepcopy(dimer)["MW"] == dimer["MW"]


@pytest.mark.parametrize("made", [lambda f: scan()._scan, lambda f: f._fit],
                         ids=["dataset", "fit"])
def test_damaged_pickles_are_refused(dimer, made):
    packed = made(dimer).pack()
    unpack = type(made(dimer)).unpack
    rng = np.random.default_rng(1)
    damaged = [b"", packed[:10], packed[:-1], packed + b"x", packed.replace(b" 1\n", b" 2\n", 1)]
    for _ in range(300):
        place = int(rng.integers(len(packed)))
        damaged.append(packed[:place] + bytes([packed[place] ^ 1]) + packed[place + 1 :])
    for one in damaged:
        with pytest.raises(ValueError):
            unpack(one)


def reseal(packed, body):
    """The bytes with another body and the digest that goes with it."""
    import hashlib

    head = packed[: packed.index(b"\n") + 1]
    return head + hashlib.sha256(body).hexdigest().encode() + body


def test_forged_pickles_never_crash(dimer):
    packed = dimer._fit.pack()
    body = packed[packed.index(b"\n") + 65 :]
    rng = np.random.default_rng(2)
    for _ in range(400):
        forged = bytearray(body)
        for place in rng.integers(len(body), size=3):
            forged[place] = int(rng.integers(256))
        cut = int(rng.integers(len(body))) if rng.random() < 0.2 else len(body)
        try:
            fit = qv.Fit(type(dimer._fit).unpack(reseal(packed, bytes(forged[:cut]))))
            fit.quality()
        except (ValueError, qv.FitError):
            pass


REFUSED = [
    (ValueError, lambda d: qv.fit([], "Ideal")),
    (TypeError, lambda d: qv.fit([3], "Ideal")),
    (ValueError, lambda d: qv.fit(d, "No such model")),
    (ValueError, lambda d: qv.fit([d] * 102, "Ideal")),
    (KeyError, lambda d: qv.fit(d, "Ideal", start={"LnK1": 1.0})),
    (ValueError, lambda d: qv.fit(d, "Ideal", start={"MW": float("nan")})),
    (ValueError, lambda d: qv.fit(d, "Ideal", held=["MW", "Offset(1)", "RefC(1)"])),
    (KeyError, lambda d: qv.fit(d, "Ideal", held=["Offset(2)"])),
    (ValueError, lambda d: qv.fit(d, "Ideal", held=["MW"], fitted=["MW"])),
    (ValueError, lambda d: qv.fit(d, "Ideal", temperature=-274)),
    (ValueError, lambda d: qv.fit(d, "Ideal", calc_loading_concs=True)),
    (TypeError, lambda d: qv.fit([d, d], "Ideal", links={0.5: 0})),
    (ValueError, lambda d: qv.fit(d, "Ideal", links={0: 1})),
    (ValueError, lambda d: qv.fit(d, "Ideal", vbar=0.1)),
    (ValueError, lambda d: qv.fit([d, d], "A+B<>AB", links={0: 1, 1: 0})),
    (qv.FitError, lambda d: qv.fit(d, "Ideal", start={"MW": 1e200})),
    (ValueError, lambda d: qv.fit(d, "Ideal", held=["MW"]).intervals(["MW"])),
    (KeyError, lambda d: qv.fit(d, "Ideal").intervals(["LnK1"])),
    (IndexError, lambda d: qv.fit(d, "Ideal").curve(1)),
    (ValueError, lambda d: qv.fit(d, "Ideal").report("fit.txt")),
    (ValueError, lambda d: setattr(d, "good", np.ones(3, dtype=bool))),
    (ValueError, lambda d: setattr(d, "signal", np.full(50, np.inf))),
    (ValueError, lambda d: d.signal.__setitem__(3, 1.0)),
    (ValueError, lambda d: setattr(d, "ref_conc", 0.0)),
    (ValueError, lambda d: setattr(d, "name", "two\nlines")),
    (TypeError, lambda d: setattr(d, "name", None)),
    (ValueError, lambda d: scan(temperature=-300)),
    (ValueError, lambda d: setattr(d, "signal", np.ma.masked_greater(d.signal, 0.4))),
    (ValueError, lambda d: d.keep(7.0, 6.0)),
    (ValueError, lambda d: d.subtract(d)),
    (ValueError, lambda d: qv.Dataset([1.0, 2.0], [1.0, 2.0], speed=1000)),
    (FileNotFoundError, lambda d: qv.load("/no/such/file")),
    (TypeError, lambda d: qv.load(b"/no/such/file")),
    (IsADirectoryError, lambda d: qv.load("/")),
    (OSError, lambda d: qv.load(__file__)),
    (ValueError, lambda d: qv.load(DIMER / "00001.RA1", centerpiece="7 channels")),
    (OSError, lambda d: qv.open(DIMER / "job.toml")),
    (ValueError, lambda d: qv.save(qv.Experiment(), "none.exz")),
    (OSError, lambda d: qv.save(qv.Experiment(qv.fit(d, "Ideal")), "/no/such/folder/a.exz")),
    (ValueError, lambda d: qv.simulate("Ideal", mw=3)),
    (ValueError, lambda d: qv.plan("Ideal", [20000], [1e-5], {"MW": 8000.0}, noise=-1)),
    (ValueError, lambda d: qv.plan("Monomer-Nmer", [20000], [1e-5], {"MW": 8000.0})),
    (TypeError, lambda d: qv.plan("Ideal", [20000], [1e-5], {"MW": 8000.0}, held="MW")),
    (ValueError, lambda d: qv.solution("B4D")),
    (ValueError, lambda d: qv._quorvane.fit([], {}, "")),  # what wrappers would never send
    (ValueError, lambda d: qv.fit(d, "Ideal")._fit.minima({"fit": {"model": "Ideal"}})),
    (ValueError, lambda d: qv.fit(d, "Ideal")._fit.errors({})),
    (ValueError, lambda d: qv.fit(d, "Ideal")._fit.intervals({})),
]


@pytest.mark.parametrize("case", range(len(REFUSED)))
def test_what_is_refused(case):
    kind, call = REFUSED[case]
    d = scan()
    with pytest.raises(kind) as caught:
        call(d)
    assert str(caught.value)
    assert pickle.dumps(d) == pickle.dumps(scan())  # nothing changed


def test_blanks_and_archives(tmp_path):
    blank = qv.load(DIMER / "00001.RA1", blank=True)[0]
    d = qv.load(DIMER / "00001.RA1", centerpiece="6 channels", channels="A")[0]
    assert blank.is_blank and blank.name.startswith("BL_")
    d.subtract(blank)
    assert np.allclose(d.signal, 0.0, atol=1e-12) and d.comment2.endswith("BL")
    fit = qv.fit(scan(), "Ideal")
    qv.save(qv.Experiment(fit), tmp_path / "fit.exz")
    again = qv.open(tmp_path / "fit.exz")
    assert again.page["MW"] == fit["MW"].value and again.log.strip() == fit.log.strip()
    assert qv.fit(again.datasets, again.page["Model"])["MW"].value == pytest.approx(
        fit["MW"].value)
    again.page["MW"] = 5.0
    for one in (copy.deepcopy(again), pickle.loads(pickle.dumps(again))):
        assert one.page == again.page and one.log == again.log and one.datasets[0] is not d
        assert (one.datasets[0].signal == again.datasets[0].signal).all()
        one.datasets[0].good[:] = False
    assert again.datasets[0].good.all()
    again.page["MW"] = "heavy"
    with pytest.raises((TypeError, ValueError), match="MW"):
        qv.save(again, tmp_path / "fit.exz")


def test_threads_fit_side_by_side(dimer_scans, dimer):
    with ThreadPoolExecutor(4) as pool:
        fits = list(pool.map(lambda _: qv.fit(dimer_scans, "Monomer-Nmer", start=START), range(8)))
    assert all(dict(fit.parameters) == dict(dimer.parameters) for fit in fits)


def test_the_interpreter_is_free_during_work(dimer):
    done = threading.Event()
    worker = threading.Thread(
        target=lambda: (dimer.intervals(method="monte carlo", replicates=1000), done.set()))
    worker.start()
    turns = 0
    while not done.is_set():
        time.sleep(0.001)
        turns += 1
    worker.join()
    assert turns > 10


INTERRUPTED = f"""
import sys, quorvane as qv
sys.path.insert(0, {str(DIMER.parents[1] / "tests" / "python")!r})
scans = [d for k in (1, 2, 3) for d in qv.load(f"{DIMER}/0000{{k}}.RA1", centerpiece="6 channels")]
fit = qv.fit(scans, "Monomer-Nmer", start={START!r})
print("ready", flush=True)
try:
    fit.intervals(method="monte carlo", replicates=1000000)
except KeyboardInterrupt:
    fit.intervals(["MW"])  # the next work begins as if nothing had been
    print("stopped", flush=True)
"""


def test_an_interrupt_stops_the_work():
    child = subprocess.Popen([sys.executable, "-c", INTERRUPTED], stdout=subprocess.PIPE, text=True)
    assert child.stdout.readline() == "ready\n"
    time.sleep(0.3)
    child.send_signal(signal.SIGINT)
    assert child.communicate(timeout=60)[0] == "stopped\n"
    assert child.returncode == 0


def test_a_simulated_dataset_has_what_was_simulated():
    sim = qv.simulate("A+B<>AB", seed=1, speed=range(12000, 20000, 4000), load=np.array([3e-6]))
    assert [one.dataset().speed for one in sim] == [12000, 16000] and sim[0] != sim[1]
    d = sim[1].dataset(temperature=4)
    given = {"load": [3e-6], "load_b": d.load_b, "ext_coeff": d.ext_coeff,
             "ext_coeff_b": d.ext_coeff_b}  # the defaults written out
    again = qv.simulate("A+B<>AB", seed=1, speed=[12000, 16000], **given)[1]
    assert d.load_a == 3e-6 and d.temperature == 4 and (again.signal == d.signal).all()
    plan = qv.plan("Ideal", 16000, sim[0].r[:1] * 1e-6, {"MW": 8000.0})
    assert plan.speeds == [16000] and plan == plan and plan != sim


def test_types_are_strict(tmp_path):
    if shutil.which("mypy") is None:
        pytest.skip("mypy is not installed")
    package = pathlib.Path(qv.__file__).parent
    (tmp_path / "use.py").write_text(
        "import numpy as np\nimport quorvane as qv\n"
        "qv.plan('Ideal', np.array([16000.0]), 1e-6, {'MW': 8100.0})['MW'].sd\n"
        "r: float = qv.simulate('Ideal', mw=3e4, speed=16000).dataset().meniscus\n")
    done = subprocess.run(
        ["mypy", "--strict", "--ignore-missing-imports", "--python-executable", sys.executable,
         "--cache-dir", str(tmp_path / "cache"), "-p", "quorvane", "-m", "use"],
        env={**os.environ, "MYPYPATH": f"{package.parent}{os.pathsep}{tmp_path}"},
        capture_output=True, text=True, cwd=tmp_path, check=False)
    assert done.returncode == 0, done.stdout + done.stderr


def test_everything_has_a_text_and_types():
    for name in qv.__all__:
        if name != "__version__":
            assert getattr(qv, name).__doc__, name
    for kind in (qv.Dataset, qv.Fit):
        for name, member in vars(kind).items():
            if not name.startswith("_") and (callable(member) or isinstance(member, property)):
                assert member.__doc__, f"{kind.__name__}.{name}"
    assert re.fullmatch(r"\d+\.\d+\.\d+", qv.__version__)
