"""The numbers are those of the command line, bit for bit."""

import numpy as np
import pytest

import quorvane as qv
from conftest import DIMER, HETERO, START


def same_fit(fit, json):
    found = json["fit"]
    assert (fit.model, fit.sum_of_squares, fit.best_sum, fit.rms, fit.degrees_of_freedom,
            fit.iterations, fit.aicc, fit.bic) == tuple(
        found[key] for key in ("model", "chi_squared", "best_sum", "rms", "degrees_of_freedom",
                               "iterations", "aicc", "bic"))
    assert [(p.name, p.value, p.sd, p.fitted) for p in fit.parameters.values()] == [
        (p["name"], p["value"], p["sd"], p["fitted"]) for p in found["parameters"]]
    assert fit.covariance.tolist() == found["covariance"]
    assert fit.at_rest == found["rest"]["at_rest"]
    for number, curve in enumerate(found["curves"]):
        assert fit.radii(number).tolist() == curve["r"]
        assert fit.curve(number).tolist() == curve["y_calc"]
    assert fit.quality() == json["quality"]["datasets"]
    for dataset, other in zip(fit.datasets, json["datasets"]):
        assert dataset.signal.tolist() == other["c"] and dataset.ref_conc == other["ref_conc"]
        assert dataset.good.tolist() == other["good"] and dataset.ref_radius == other["ref_radius"]


def write_job(path, text, fit="", tail=""):
    """The example's job with absolute paths, more in [fit] and more at the end."""
    text = text.replace("[fit]\n", "[fit]\n" + fit).replace("[cross_correlation]\n", "")
    path.write_text(text + tail)
    return path


@pytest.mark.parametrize("rest", [False, True])
def test_a_monomer_dimer(dimer_scans, cli, tmp_path, rest):
    text = (DIMER / "job.toml").read_text().replace('file = "', f'file = "{DIMER}/')
    extra = '[errors]\nparameters = ["MW", "LnK1"]\nlevels = [95.45]\n' \
            'methods = ["profile", "bootstrap"]\nreplicates = 20\nseed = 7\n'
    start = 'starts = 3\nseed = 5\n' + ('repeat = "rest"\n' if rest else "")
    json = cli("analyze", write_job(tmp_path / "job.toml", text, start, extra), "--quiet")
    fit = qv.fit(dimer_scans, "Monomer-Nmer", start={**START, "N1": 2.0}, rest=rest, vbar=0.73,
                 density=1.0)
    same_fit(fit, json)
    for k, interval in enumerate(fit.joint_intervals(["MW", "LnK1"]).values()):
        assert interval.details == json["confidence"]["intervals"][k]
    profile = fit.intervals(["MW", "LnK1"])
    drawn = fit.intervals(["LnK1"], method="bootstrap", replicates=20, seed=7)["LnK1"]
    for k, name in enumerate(profile):
        assert profile[name].details["profile"] == json["errors"]["parameters"][k]["profile"]
    assert drawn.details["bootstrap"] == json["errors"]["parameters"][1]["bootstrap"]
    check = fit.check_minimum(starts=3, seed=5)
    assert [m["chi_squared"] for m in check.minima] == [
        m["chi_squared"] for m in json["minima"]["found"]]


def test_two_components(cli, tmp_path):
    text = (HETERO / "job.toml").read_text().replace('file = "', f'file = "{HETERO}/')
    text = text.replace('"channels.txt"', f'"{HETERO}/channels.txt"')
    json = cli("analyze", write_job(tmp_path / "job.toml", text), "--quiet")
    scans = qv.load([HETERO / f"0000{k}.RA8" for k in range(1, 9)])
    for k, scan in enumerate(scans):
        scan.meniscus, scan.base = 6.85, 7.10
        scan.ext_coeff, scan.ext_coeff_b = (44000.0, 11000.0) if k % 2 == 0 else (160000.0, 110000.0)
        scan.load_a, scan.load_b = (6e-6, 8e-6) if k < 4 else (4e-6, 12e-6)
    fit = qv.fit(scans, "A+B<>AB", start={"MW": 9000.0, "MWB": 5000.0, "LnK1": 11.0},
                 rest=False, vbar=0.73, vbar_b=0.73, density=1.0, links={1: 0, 3: 2, 5: 4, 7: 6},
                 use_mass_conservation=True, channels_file=HETERO / "channels.txt")
    same_fit(fit, json)
    assert fit["MW"] is fit["MWA"]  # the weight of A, by its name in `start`


def test_plan_simulation_and_solution(cli, tmp_path):
    json = cli("plan", DIMER / "plan.toml")
    plan = qv.plan("Monomer-Nmer", [16000, 20000, 26000], [2e-5, 1e-5, 4e-6],
                   {"MW": 8100.0, "N1": 2.0, "LnK1": 11.5}, 0.004, ext_coeff=40000.0,
                   centerpiece="6 channels", points=201, check=200)
    assert [vars(p) for p in plan.values()] == json["parameters"]
    assert plan.correlations.tolist() == json["correlations"]
    assert plan.scans == json["scans"] and plan.checked == json["checked"]

    (tmp_path / "sim.toml").write_text('model = "A+B<>AB"\nmw = 40000\nmw_b = 20000\nrms = 0.01\n')
    json = cli("simulate", tmp_path / "sim.toml", "-o", tmp_path / "scan.RA8", "--seed", "3")
    sim = qv.simulate("A+B<>AB", mw=40000, mw_b=20000, rms=0.01, seed=3)
    assert sim.signal.tolist() == json["signal"] and sim.text == json["text"]
    assert sim.species.tolist() == json["species"] and sim.conc is None
    series = qv.simulate("Ideal", speed=[10000, 20000], load=np.array([1e-6, 2e-6]), seed=3)
    assert [one.inputs["speed"] for one in series] == [10000, 10000, 20000, 20000]

    json = cli("solution", "--sequence", "MKVWGY", "--buffer", "NaCl=0.1 M", "--temperature", "4")
    made = qv.solution("MKVWGY", "NaCl=0.1 M", 4)
    assert (made.mass, made.vbar, made.density, made.buoyant_mass) == (
        json["protein"]["mass"], json["protein"]["vbar"], json["buffer"]["density"],
        json["buoyant_mass"])


def test_the_better_model_is_named(dimer_scans, dimer):
    found = qv.compare({"one": qv.fit(dimer_scans, "Ideal"), "two": dimer})
    assert [fit["file"] for fit in found["fits"]] == ["one", "two"]
    assert found["fits"][1]["aicc_weight"] > 0.99 and found["remarks"]
