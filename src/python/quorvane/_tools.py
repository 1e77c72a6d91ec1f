"""Simulator, planning of experiments, constants of a solution."""

from __future__ import annotations

from collections.abc import Mapping
from dataclasses import dataclass
from typing import Any, Dict, List, Optional, Sequence, Union

import numpy as np

from . import _quorvane
from ._dataset import Dataset, Floats
from ._errors import UnknownNameError

Number = Union[int, float, str]


@dataclass(frozen=True)
class Simulation:
    """A simulated scan."""

    r: Floats  #: radii, cm
    signal: Floats  #: with its noise
    conc: Optional[Floats]  #: total concentration, molar; None with a second component
    species: Optional[Floats]  #: (points, species), concentration of each; None without species
    text: str  #: the scan as a file, lines ended by CR LF
    ref_a: float  #: free A at the meniscus, as the simulator reports it
    ref_b: float
    inputs: Dict[str, Any]  #: as given

    def dataset(self, name: str = "simulated", **conditions: Any) -> Dataset:
        """The scan as a dataset, without the rounding of a file. Speed (rpm), temperature (deg C)
        and wavelength (nm) are those of the inputs; `conditions` go before them."""
        made: Dict[str, Any] = {"speed": 16000.0, "temperature": 20.0, "wavelength": 280}
        for key in made:
            if key in self.inputs:
                made[key] = float(self.inputs[key])
        made.update(conditions)
        made["wavelength"] = int(made["wavelength"])
        scan = Dataset(self.r, self.signal, float(self.inputs.get("rms", 0.01)), name=name, **made)
        for key in ("ext_coeff", "ext_coeff_b"):
            if key in self.inputs:
                setattr(scan, key, float(self.inputs[key]))
        return scan


def _inputs(values: Mapping[str, Any]) -> Dict[str, Any]:
    """Numbers and lists of them as the engine takes them."""
    taken: Dict[str, Any] = {}
    for key, value in values.items():
        if value is None:
            continue
        if isinstance(value, np.ndarray):
            value = value.tolist()
        if isinstance(value, (list, tuple)):
            value = [_input(one) for one in value]
        elif isinstance(value, Mapping):
            value = _inputs(value)
        else:
            value = _input(value)
        taken[str(key)] = value
    return taken


def _input(value: Any) -> Any:
    return value.item() if isinstance(value, np.generic) else value


def _simulation(found: Mapping[str, Any], inputs: Dict[str, Any]) -> Simulation:
    def array(key: str) -> Optional[Floats]:
        return np.asarray(found[key], dtype=float) if key in found else None

    both = {**inputs, **{key: found[key] for key in ("speed", "load", "load_b") if key in found}}
    r, signal = np.asarray(found["r"], dtype=float), np.asarray(found["signal"], dtype=float)
    return Simulation(
        r, signal, array("conc"), array("species"), found["text"],
        found["ref_a"], found["ref_b"], both,
    )


def simulate(
    model: str, *, seed: Optional[int] = None, **inputs: Union[Number, Sequence[Number]]
) -> Union[Simulation, List[Simulation]]:
    """A simulated scan of a model, or, where speed, load or load_b are lists, a list of scans of
    all their combinations, by speed, then by load.

    model  a name of :func:`quorvane.models`, or of the simulator's list
    seed   of the noise; from the clock if not given

    Inputs, with the defaults of the simulator's window: mw, mw_b (Da), vbar, vbar_b (ml/g),
    density (g/ml), speed (rpm), temperature (deg C), bm (nonideality), n1, n2 (degrees of
    association), lnk1, lnk2, lnk3 (1/molar each step), ext_coeff, ext_coeff_b (signal per mol/l),
    rms (noise, signal units), meniscus, base (cm), load, load_b (mol/l), alpha, wavelength (nm),
    k_display ("ln", "log10" or "k"), save_as ("IP8" or "RA8").

    Raises ValueError for an input that is unknown or out of its bounds, FitError where no
    concentration gives the loads.
    """
    if seed is not None and not 0 <= int(seed) < 2**64:
        raise ValueError("seed: a whole number from 0 is wanted")
    given = _inputs(inputs)
    job = {"model": model, **given}
    found = _quorvane.simulate(job, None if seed is None else int(seed))
    if isinstance(found, list):
        return [_simulation(one, given) for one in found]
    return _simulation(found, given)


@dataclass(frozen=True)
class ExpectedError:
    """What a plan tells of one parameter."""

    name: str
    value: float  #: expected
    sd: Optional[float]  #: expected standard error; None if the plan cannot determine it
    relative: Optional[float]  #: sd over |value|


@dataclass(frozen=True)
class Plan(Mapping[str, ExpectedError]):
    """What an experiment is expected to tell; ``plan["LnK1"].sd``."""

    parameters: Dict[str, ExpectedError]
    speeds: List[float]  #: rpm; of candidates the best choice
    scans: List[Dict[str, Any]]  #: speed, load, lowest and highest signal, points
    correlations: Floats  #: (n, n) of the parameters, nan where not determined
    ranking: List[Dict[str, Any]]  #: choices of candidates: speeds, sd, score; the best first
    choices: int  #: that were ranked
    checked: Optional[Dict[str, Any]]  #: experiments, failed, ratio and bias of each parameter
    remarks: List[str]  #: what stands in the way, in plain sentences

    def __getitem__(self, name: str) -> ExpectedError:
        if name not in self.parameters:
            raise UnknownNameError(f"the plan has no {name!r}")
        return self.parameters[name]

    def __iter__(self) -> Any:
        return iter(self.parameters)

    def __len__(self) -> int:
        return len(self.parameters)


def plan(
    model: str,
    speeds: Optional[Sequence[float]] = None,
    loads: Union[float, Sequence[float]] = (),
    parameters: Optional[Mapping[str, Any]] = None,
    noise: float = 0.005,
    *,
    ext_coeff: Union[float, Sequence[float]] = 1.0,
    candidates: Optional[Sequence[float]] = None,
    choose: Optional[int] = None,
    loads_b: Optional[Union[float, Sequence[float]]] = None,
    ext_coeff_b: Optional[Union[float, Sequence[float]]] = None,
    most_signal: Optional[float] = None,
    centerpiece: Optional[str] = None,
    meniscus: Optional[float] = None,
    base: Optional[float] = None,
    points: Optional[int] = None,
    temperature: Optional[float] = None,
    vbar: Optional[float] = None,
    density: Optional[float] = None,
    sequence: Optional[str] = None,
    buffer: Optional[str] = None,
    held: Sequence[str] = (),
    check: int = 0,
) -> Plan:
    """What an experiment will tell, before it is made: the expected standard error of every
    parameter.

    model        a name of :func:`quorvane.models`
    speeds       rpm, all of them scanned; or `candidates`, of which the best `choose` are sought
    loads        mol/l as monomer, a solution column each; `loads_b` of B
    parameters   expected values by name: weights buoyant in Da, constants ln K, 1/molar each step.
                 A value is a number, or {"value": 2.0, "fit": False}; `held` names known ones
    noise        rms, signal units
    ext_coeff    signal per mol/l, a wavelength each; `ext_coeff_b` of B
    most_signal  above it the detector sees nothing
    meniscus, base  of the column, cm, 6.85 and 7.15 if not given; or `centerpiece`, "2 channels",
                 "6 channels" or "8 channels"
    points       of a scan, 200 if not given
    temperature  deg C
    vbar, density  ml/g and g/ml; or `sequence` and `buffer` in place of them, see
                 :func:`solution`
    check        so many experiments are simulated and fitted

    Stoichiometries count as known unless their entry says {"fit": True}. Raises ValueError for a
    plan that breaks a rule, FitError for one beyond all numbers.
    """
    truth: Dict[str, Any] = {}
    for name, value in dict(parameters if parameters is not None else {}).items():
        entry = dict(value) if isinstance(value, Mapping) else {"value": float(value)}
        if name in held:
            entry["fit"] = False
        elif name in ("N1", "N2"):
            entry.setdefault("fit", False)
        truth[str(name)] = entry
    unknown = [name for name in held if name not in truth]
    if unknown:
        raise UnknownNameError(f"held: there is no {unknown[0]!r} among the parameters")
    if centerpiece is None:
        meniscus, base = 6.85 if meniscus is None else meniscus, 7.15 if base is None else base
    job = _inputs({
        "model": model, "speeds": speeds, "loads": loads, "noise": noise, "ext_coeff": ext_coeff,
        "candidates": candidates, "choose": choose, "loads_b": loads_b,
        "ext_coeff_b": ext_coeff_b, "most_signal": most_signal, "centerpiece": centerpiece,
        "meniscus": meniscus, "base": base, "points": points, "temperature": temperature,
        "vbar": vbar, "density": density, "sequence": sequence, "buffer": buffer, "check": check or None, "parameters": truth,
    })
    found = _quorvane.plan(job)
    expected = {p["name"]: ExpectedError(**p) for p in found["parameters"]}
    rows = [[np.nan if x is None else x for x in row] for row in found["correlations"]]
    shape = (len(expected), len(expected))
    return Plan(
        expected, found["speeds"], found["scans"], np.asarray(rows, dtype=float).reshape(shape),
        found["ranking"], found["choices"], found["checked"], found["remarks"],
    )


@dataclass(frozen=True)
class Solution:
    """Constants of a protein in a buffer. What was not asked for is None."""

    temperature: float  #: deg C
    residues: Optional[int]
    mass: Optional[float]  #: Da
    vbar: Optional[float]  #: partial specific volume, ml/g
    extinction_280: Optional[float]  #: at 280 nm, 1/(M cm)
    a280_1mg_ml: Optional[float]  #: absorption at 280 nm of 1 mg/ml in 1 cm
    density: Optional[float]  #: of the buffer, g/ml
    components: Optional[Dict[str, float]]  #: of the buffer, molar or in their own unit
    buoyancy: Optional[float]  #: 1 - vbar density
    buoyant_mass: Optional[float]  #: mass times buoyancy, Da
    remarks: List[str]  #: what the sums do not know


def solution(
    sequence: Optional[str] = None,
    buffer: Optional[str] = None,
    temperature: float = 20.0,
    disulphides: Optional[int] = None,
) -> Solution:
    """Mass, partial specific volume and extinction of a protein, density of a buffer.

    sequence     letters, FASTA, or the name of a FASTA file
    buffer       "NaCl=0.1 M, Tris=20 mM"; "water"
    temperature  0 to 100 deg C
    disulphides  in the protein

    Raises ValueError for what is no sequence or buffer, OSError for a file that cannot be read.
    """
    if sequence is None and buffer is None:
        raise ValueError("sequence, buffer or both are wanted")
    found = _quorvane.solution(sequence, disulphides, buffer, float(temperature))
    protein, made = found.get("protein", {}), found.get("buffer", {})
    parts = {p["name"]: p["molar"] for p in made["components"]} if made else None
    return Solution(
        found["temperature"], protein.get("residues"), protein.get("mass"), protein.get("vbar"),
        protein.get("extinction_280"), protein.get("a280_1mg_ml"), made.get("density"), parts,
        found.get("buoyancy"), found.get("buoyant_mass"), found["remarks"],
    )
