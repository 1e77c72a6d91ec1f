"""A script written from what the package promises, as a user writes it: every name, in its order."""

import numpy as np
import pytest

import quorvane as qv
from conftest import DIMER


def test_the_promised_script_runs(tmp_path):
    scans = qv.load(str(DIMER / "00002.RA1"), centerpiece="6 channels", channels="ABC")
    d = scans[0]
    assert len(scans) == 3 and isinstance(d.name, str) and d.path.endswith("00002.RA1")
    assert (d.speed, d.wavelength, d.temperature, d.cell, d.channel) == (20000, 280, 20.0, 8, "A")
    assert d.comment1
    assert d.r.shape == d.signal.shape == d.error.shape == d.good.shape == (len(d),)
    assert d.good.dtype == bool
    d.good = np.ones(len(d), dtype=bool)
    d.keep(5.88, 6.07)
    d.delete(6.00, 6.01)
    assert not d.good[(d.r >= 6.00) & (d.r <= 6.01)].any()
    d.restore_all()
    assert d.good.all()
    for scan in scans:
        scan.ext_coeff, scan.ext_coeff_b = 40000.0, 1.0
    assert d.meniscus < d.ref_radius < d.base

    fit = qv.fit(scans, "Ideal", start={"MW": 8000.0}, held=[], rest=True, vbar=0.73, density=1.0,
                 temperature=None, links={}, time_limit=60.0)
    assert fit.model == "Ideal" and fit.at_rest
    assert fit.sum_of_squares > 0 and fit.rms > 0 and fit.degrees_of_freedom > 500
    assert fit.iterations > 0
    mw = fit["MW"]
    assert mw.value > 8000 and mw.sd > 0 and mw.fitted
    with pytest.raises(KeyError):
        fit["LnK1"]
    assert list(fit.parameters)[0] == "Offset(1)" and "MW" in fit.parameters
    n = len(fit.parameters)
    assert fit.covariance.shape == (n, n)
    assert np.allclose(fit.curve(0) + fit.residuals(0), scans[0].signal[scans[0].good])
    assert fit.aicc < 0 and fit.bic < 0 and isinstance(fit.quality()[0], dict)
    for method in ("profile", "monte carlo", "bootstrap"):
        found = fit.intervals(["MW"], level=95.45, method=method, replicates=50)["MW"]
        assert found.lower < mw.value < found.upper
    joint = fit.joint_intervals(["MW"], percent=95.46, method=2)["MW"]
    assert joint.lower < mw.value < joint.upper
    assert not fit.check_minimum(starts=20, seed=1).better
    fit.report(tmp_path / "fit.pdf")
    assert (tmp_path / "fit.pdf").read_bytes().startswith(b"%PDF")
    assert "Model :: Ideal" in fit.log


def test_the_promised_tools_run(tmp_path):
    sim = qv.simulate("Monomer-Nmer", mw=30000, lnk1=11.5, speed=16000, rms=0.004, seed=1)
    assert sim.r.shape == sim.signal.shape == sim.conc.shape
    assert sim.species.shape == (len(sim.r), 2) and sim.text.startswith("QV:Mon-Nmer")
    plan = qv.plan(model="Monomer-Nmer", speeds=[16000, 26000], loads=[2e-5, 4e-6],
                   parameters={"MW": 8100.0, "N1": 2, "LnK1": 11.5}, noise=0.004, ext_coeff=4e4)
    assert 0 < plan["LnK1"].sd < 1 and plan.remarks is not None
    made = qv.solution(sequence="MKVLAAGIVGWE", buffer="NaCl=0.1 M, Tris=20 mM", temperature=20.0)
    assert 0.6 < made.vbar < 0.8 and 1.0 < made.density < 1.1 and made.mass > 1000
    experiment = qv.open(DIMER / "experiment.exz")
    assert len(experiment.datasets) == 9 and "LnK1" in experiment.page and experiment.log
    experiment.page["MW"] = 7777.0
    qv.save(experiment, tmp_path / "copy.exz")
    again = qv.open(tmp_path / "copy.exz")
    assert again.page == experiment.page and again.log == experiment.log
    assert (again.datasets[3].signal == experiment.datasets[3].signal).all()


def test_frames_and_figures(dimer):
    pandas = pytest.importorskip("pandas")
    matplotlib = pytest.importorskip("matplotlib")
    matplotlib.use("Agg")
    frame = dimer.to_frame()
    assert isinstance(frame, pandas.DataFrame)
    assert list(frame.columns) == ["name", "value", "sd", "fitted"]
    assert len(frame) == len(dimer.parameters)
    figure = dimer.plot()
    assert len(figure.axes) == 2 and len(figure.axes[0].lines) == 18
