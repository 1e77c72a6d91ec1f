"""Simulator, planning of experiments, constants of a solution."""

from __future__ import annotations

import os
from collections.abc import Mapping
from dataclasses import dataclass
from operator import index
from typing import Any, Dict, Iterable, List, Optional, Union, overload

import numpy as np
import numpy.typing as npt

from . import _quorvane
from ._dataset import Dataset, Floats, PathLike
from ._errors import UnknownNameError
from ._job import MODELS, texts

Number = Union[float, str]
Numbers = Union[Iterable[float], npt.NDArray[Any]]


@dataclass(frozen=True, eq=False)
class Simulation:
    """A simulated scan.

    r             radii, cm
    signal        with its noise
    conc          total concentration, mol/l; None with a second component
    species       (points, species), concentration of each, mol/l; None without species
    text          the scan as a file, lines ended by CR LF
    ref_a, ref_b  free A and B, mol/l: at the meniscus (Ideal, Nonideal, Isodesmic), else two
                  thirds down the column
    inputs        of this scan, as they were given
    """

    r: Floats
    signal: Floats
    conc: Optional[Floats]
    species: Optional[Floats]
    text: str
    ref_a: float
    ref_b: float
    inputs: Dict[str, Any]
    _used: Dict[str, float]

    def dataset(self, name: str = "simulated", **conditions: Any) -> Dataset:
        """The scan as a dataset, without the rounding of a file. Speed (rpm), temperature (deg C),
        wavelength (nm), extinction coefficients and loads are those that were simulated, its ends
        those of the column; `conditions` (speed, temperature, wavelength) go before them."""
        used = self._used
        made: Dict[str, Any] = {key: used[key] for key in ("speed", "temperature", "wavelength")}
        made.update(conditions)
        made["wavelength"] = int(made["wavelength"])
        scan = Dataset(self.r, self.signal, used["rms"], name=name, **made)
        for value, key in (("ext_coeff", "ext_coeff"), ("ext_coeff_b", "ext_coeff_b"),
                           ("load_a", "load"), ("load_b", "load_b")):
            if key in used:
                setattr(scan, value, used[key])
        return scan


def _list(values: Any) -> Any:
    """A list of what is one: an array, a range, a pandas.Series; all else as it is."""
    if isinstance(values, (str, bytes, Mapping)) or not isinstance(values, Iterable):
        return values
    return values.tolist() if isinstance(values, np.ndarray) else [_input(one) for one in values]


def _inputs(values: Mapping[str, Any]) -> Dict[str, Any]:
    """Numbers and lists of them as the engine takes them."""
    taken: Dict[str, Any] = {}
    for key, value in values.items():
        if value is not None:
            taken[str(key)] = _inputs(value) if isinstance(value, Mapping) else _input(_list(value))
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
        found["ref_a"], found["ref_b"], both, found["used"],
    )


@overload
def simulate(model: Union[str, int], *, seed: Optional[int] = None, **inputs: Number) -> Simulation:
    ...


@overload
def simulate(
    model: Union[str, int], *, seed: Optional[int] = None, **inputs: Union[Number, Numbers]
) -> Any:
    ...


def simulate(
    model: Union[str, int], *, seed: Optional[int] = None, **inputs: Any
) -> Union[Simulation, List[Simulation]]:
    """A simulated scan of a model, or, where speed, load or load_b are lists, a list of scans of
    all their combinations, by speed, then by load.

    model  a name of :func:`quorvane.models` or of the simulator's list, or its place in it, from 0
    seed   of the noise; from the clock if not given

    Inputs, with the defaults of the simulator's window: mw, mw_b (Da), vbar, vbar_b (ml/g),
    density (g/ml), speed (rpm), temperature (deg C), nonid (nonideality), n1, n2 (degrees of
    association), lnk1, lnk2, lnk3 (1/molar each step), ext_coeff, ext_coeff_b (signal per mol/l),
    rms (noise, signal units), meniscus, base (cm), load, load_b (mol/l), alpha, wavelength (nm),
    k_display ("ln", "log10" or "k"), save_as ("IP8" or "RA8").

    Raises ValueError for an input that is unknown or out of its bounds, FitError where no
    concentration gives the loads.
    """
    if seed is not None and not 0 <= index(seed) < 2**64:
        raise ValueError("seed: a whole number from 0 is wanted")
    given = _inputs(inputs)
    job = {"model": model, **given}
    found = _quorvane.simulate(job, None if seed is None else index(seed))
    if isinstance(found, list):
        return [_simulation(one, given) for one in found]
    return _simulation(found, given)


@dataclass(frozen=True)
class ExpectedError:
    """What a plan tells of one parameter.

    name      of the parameter
    value     expected: weights buoyant in Da, constants ln K, K in 1/molar each step
    sd        expected standard error, in the unit of the value; None: the plan cannot determine it
    relative  sd over abs(value); it says little of ln K, where the error of K is a factor exp(sd)
    """

    name: str
    value: float
    sd: Optional[float]
    relative: Optional[float]


@dataclass(frozen=True, eq=False)
class Plan(Mapping[str, ExpectedError]):
    """What an experiment is expected to tell; ``plan["LnK1"].sd``.

    parameters    an ExpectedError of each fitted parameter of the model, by name
    speeds        rpm; of candidates the best choice
    scans         of each a dict: "speed" (rpm), "load" and "load_b" (mol/l), "wavelength" (from 1),
                  "lowest" and "highest" signal, "points"
    correlations  (n, n) of the parameters, nan where not determined
    ranking       choices of candidates, the best first: "speeds", "sd", "score"; at most 100
    choices       that were ranked
    checked       "experiments", "failed", "ratio" (scatter over expected error) and "bias" (in
                  expected errors) of each parameter; None without a check
    remarks       what stands in the way, in plain sentences
    """

    parameters: Dict[str, ExpectedError]
    speeds: List[float]
    scans: List[Dict[str, Any]]
    correlations: Floats
    ranking: List[Dict[str, Any]]
    choices: int
    checked: Optional[Dict[str, Any]]
    remarks: List[str]

    def __getitem__(self, name: str) -> ExpectedError:
        if name not in self.parameters:
            raise UnknownNameError(f"the plan has no {name!r}; it has {', '.join(self.parameters)}")
        return self.parameters[name]

    def __iter__(self) -> Any:
        return iter(self.parameters)

    def __len__(self) -> int:
        return len(self.parameters)


def plan(
    model: str,
    speeds: Optional[Union[float, Numbers]] = None,
    loads: Union[float, Numbers] = (),
    parameters: Optional[Mapping[str, Any]] = None,
    noise: float = 0.005,
    *,
    ext_coeff: Union[float, Numbers] = 1.0,
    candidates: Optional[Numbers] = None,
    choose: Optional[int] = None,
    loads_b: Optional[Union[float, Numbers]] = None,
    ext_coeff_b: Optional[Union[float, Numbers]] = None,
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
    held: Iterable[str] = (),
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
    most_signal  above it the detector sees nothing, signal units
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
    known = texts(held, "held")
    truth: Dict[str, Any] = {}
    for name, value in dict(parameters if parameters is not None else {}).items():
        entry = dict(value) if isinstance(value, Mapping) else {"value": float(value)}
        if name in known:
            entry["fit"] = False
        elif name in ("N1", "N2"):
            entry.setdefault("fit", False)
        truth[str(name)] = entry
    unknown = [name for name in known if name not in truth]
    if unknown:
        raise UnknownNameError(f"held: there is no {unknown[0]!r} among the parameters")
    wanted = [row.key for row in MODELS[model].parameters] if model in MODELS else []
    if not set(wanted) <= set(truth):
        raise ValueError(f"parameters: {model} wants expected values of {', '.join(wanted)}")
    scanned: Any = _list(speeds)
    if scanned is not None and not isinstance(scanned, list):
        scanned = [scanned]
    if centerpiece is None:
        meniscus, base = 6.85 if meniscus is None else meniscus, 7.15 if base is None else base
    job = _inputs({
        "model": model, "speeds": scanned, "loads": loads, "noise": noise, "ext_coeff": ext_coeff,
        "candidates": candidates, "choose": choose, "loads_b": loads_b,
        "ext_coeff_b": ext_coeff_b, "most_signal": most_signal, "centerpiece": centerpiece,
        "meniscus": meniscus, "base": base, "points": points, "temperature": temperature,
        "vbar": vbar, "density": density, "sequence": sequence, "buffer": buffer,
        "parameters": truth, "check": index(check) or None,
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
    """Constants of a protein in a buffer. What was not asked for is None.

    temperature     deg C
    residues        of the sequence
    mass            Da
    vbar            partial specific volume, ml/g
    extinction_280  at 280 nm, 1/(M cm)
    a280_1mg_ml     absorption at 280 nm of 1 mg/ml in 1 cm
    density         of the buffer, g/ml
    components      of the buffer, by name, mol/l
    buoyancy        1 - vbar density
    buoyant_mass    mass times buoyancy, Da
    remarks         what the sums do not know
    """

    temperature: float
    residues: Optional[int]
    mass: Optional[float]
    vbar: Optional[float]
    extinction_280: Optional[float]
    a280_1mg_ml: Optional[float]
    density: Optional[float]
    components: Optional[Dict[str, float]]
    buoyancy: Optional[float]
    buoyant_mass: Optional[float]
    remarks: List[str]


def solution(
    sequence: Optional[PathLike] = None,
    buffer: Optional[str] = None,
    temperature: float = 20.0,
    disulphides: Optional[int] = None,
) -> Solution:
    """Mass, partial specific volume and extinction of a protein, density of a buffer.

    sequence     letters, FASTA, or the name of a FASTA file
    buffer       "NaCl=0.1 M, Tris=20 mM", or "20 mM Tris, 5 % v/v glycerol"; "water"
    temperature  0 to 100 deg C
    disulphides  bonds in the protein

    Raises ValueError for what is no sequence or buffer, OSError for a file that cannot be read.
    """
    if sequence is None and buffer is None:
        raise ValueError("sequence, buffer or both are wanted")
    if buffer is not None and not isinstance(buffer, str):
        raise ValueError(f"buffer: a text is wanted, not {type(buffer).__name__}")
    found = _quorvane.solution(
        None if sequence is None else os.fspath(sequence),
        None if disulphides is None else index(disulphides), buffer, float(temperature),
    )
    protein, made = found.get("protein", {}), found.get("buffer", {})
    parts = {p["name"]: p["molar"] for p in made["components"]} if made else None
    return Solution(
        found["temperature"], protein.get("residues"), protein.get("mass"), protein.get("vbar"),
        protein.get("extinction_280"), protein.get("a280_1mg_ml"), made.get("density"), parts,
        found.get("buoyancy"), found.get("buoyant_mass"), found["remarks"],
    )
