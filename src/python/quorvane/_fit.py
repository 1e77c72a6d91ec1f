"""Fits of models to datasets."""

from __future__ import annotations

import os
import subprocess
import sys
import warnings
from collections.abc import Mapping
from dataclasses import dataclass
from operator import index
from typing import Any, Dict, Iterable, Iterator, List, Optional, Sequence, Tuple, Union

from . import _quorvane
from ._dataset import Dataset, Floats, PathLike, as_datasets, celsius
from ._errors import FitError, UnknownNameError
from ._job import MODELS, Job, texts

# Programs of an installation, beside which cell geometries are looked for.
_PROGRAMS = os.path.join(sys.prefix, "bin")


@dataclass(frozen=True)
class Parameter:
    """A parameter of a finished fit. Weights are buoyant, M (1 - vbar density), in Da; association
    constants and reference concentrations are natural logarithms, K in 1/molar each step.

    value   where the fit ended
    sd      standard error, in the unit of the value; 0 of a held one, nan where the data give none
    fitted  False: it was held
    """

    name: str
    value: float
    sd: float
    fitted: bool


@dataclass(frozen=True)
class Interval:
    """Limits of one parameter at one level of confidence, in the unit of the parameter.

    value         where the fit is at rest
    lower, upper  None where there is no such limit
    level         percent
    method        "profile", "monte carlo", "bootstrap" or "joint"
    details       all that the command line's JSON says of it
    """

    name: str
    value: float
    lower: Optional[float]
    upper: Optional[float]
    level: float
    method: str
    details: Dict[str, Any]


@dataclass(frozen=True)
class MinimumCheck:
    """What fits from scattered start values found: whether one is `better`, that is, below the fit,
    and the finding in a sentence.

    minima         the best first, each a dict: "chi_squared" (signal units squared), "rms" (signal
                   units), "starts" that ended there, whether it is the "current" one, "parameters"
    ended, failed  starts that came to rest, and that did not
    """

    better: bool
    text: str
    minima: List[Dict[str, Any]]
    ended: int
    failed: int


class Parameters(Mapping[str, Parameter]):
    """All parameters of a fit, in its order: baselines, reference concentrations, then those of
    the model. A parameter of the model is also found by its name in ``start``: ``MW`` is the
    weight of A, whatever the model calls it."""

    def __init__(self, entries: Sequence[Tuple[str, Optional[str], float, float, bool]]) -> None:
        self._by_name = {name: Parameter(name, v, sd, fit) for name, _, v, sd, fit in entries}
        self._keys = {key: name for name, key, *_ in entries if key is not None}

    def __getitem__(self, name: str) -> Parameter:
        found = self._by_name.get(name) or self._by_name.get(self._keys.get(name, ""))
        if found is None:
            raise UnknownNameError(f"the fit has no {name!r}; it has {', '.join(self._by_name)}")
        return found

    def __contains__(self, name: object) -> bool:
        return name in self._by_name or name in self._keys

    def __iter__(self) -> Iterator[str]:
        return iter(self._by_name)

    def __len__(self) -> int:
        return len(self._by_name)

    def __repr__(self) -> str:
        return f"Parameters({', '.join(self._by_name)})"


class Fit:
    """A finished fit. It never changes; it can be copied, pickled and looked at from several
    threads. What searches around it found goes into :meth:`report`."""

    __slots__ = ("_fit", "_counts", "_parameters", "__weakref__")

    def __init__(self, fit: Any) -> None:
        self._fit: _quorvane.FinishedFit = fit
        self._counts: Dict[str, Any] = fit.counts()
        self._parameters = Parameters(fit.parameters())

    # ---- numbers

    @property
    def model(self) -> str:
        """Name of the model."""
        return str(self._counts["model"])

    @property
    def at_rest(self) -> Optional[bool]:
        """Whether the sum of squares stands still where the fit ended; None if that is not
        known."""
        rest = self._fit.rest()
        return None if rest is None else rest["at_rest"]

    @property
    def sum_of_squares(self) -> float:
        """Sum of squared residuals, as the log reports it, signal units squared."""
        return float(self._counts["sum_of_squares"])

    @property
    def best_sum(self) -> float:
        """Sum of squared residuals at the parameters themselves: of the last step that was
        accepted. It differs from `sum_of_squares` by less than the end rule of a fit."""
        return float(self._counts["best_sum"])

    @property
    def rms(self) -> float:
        """Root of the sum of squares over the degrees of freedom, signal units."""
        return float(self._counts["rms"])

    @property
    def degrees_of_freedom(self) -> int:
        """Points less fitted parameters."""
        return int(self._counts["degrees_of_freedom"])

    @property
    def points(self) -> int:
        """Points of the fit, those of mass conservation among them."""
        return int(self._counts["points"])

    @property
    def iterations(self) -> int:
        """Steps of the last run."""
        return int(self._counts["iterations"])

    @property
    def temperature(self) -> float:
        """Temperature of the fit, deg C."""
        return float(self._counts["temperature"])

    @property
    def parameters(self) -> Parameters:
        """All parameters by name, in the order of the fit."""
        return self._parameters

    def __getitem__(self, name: str) -> Parameter:
        return self._parameters[name]

    @property
    def covariance(self) -> Floats:
        """Inverse of the curvature matrix, shape (n, n), rows in the order of `parameters`, 0 for
        held ones. Times the variance rms^2 it is the covariance of the parameters."""
        return self._fit.covariance()

    @property
    def aicc(self) -> Optional[float]:
        """Akaike's criterion, corrected for few points; None where it is not defined."""
        return self._fit.criteria()[0]

    @property
    def bic(self) -> Optional[float]:
        """Schwarz' criterion; None where it is not defined."""
        return self._fit.criteria()[1]

    # ---- data

    @property
    def datasets(self) -> List[Dataset]:
        """The datasets as they were fitted, their baselines and reference concentrations fitted."""
        return [Dataset._of(scan) for scan in self._fit.scans()]

    def radii(self, dataset: int) -> Floats:
        """Radii of the good points of dataset `dataset`, counted from 0, cm."""
        return self._curve(dataset)[0]

    def curve(self, dataset: int) -> Floats:
        """The model at the good points of dataset `dataset`, counted from 0, signal units."""
        return self._curve(dataset)[2]

    def residuals(self, dataset: int) -> Floats:
        """Signal less model at the good points of dataset `dataset`, counted from 0."""
        _, signal, calculated = self._curve(dataset)
        return signal - calculated

    def _curve(self, dataset: int) -> Tuple[Floats, Floats, Floats]:
        sets = int(self._counts["sets"])
        number = index(dataset)
        if not -sets <= number < sets:
            raise IndexError(f"the fit has {sets} datasets")
        return self._fit.curve(number % sets)

    # ---- whether it can be believed

    def quality(self) -> List[Dict[str, Any]]:
        """Of each dataset what its residuals look like: rms, share of the sum of squares, runs
        test, Durbin-Watson statistic; keys as in the command line's JSON."""
        return self._fit.quality()["datasets"]

    @property
    def remarks(self) -> List[str]:
        """What to look at, in plain sentences."""
        return self._fit.quality()["remarks"]

    @property
    def strong_correlations(self) -> List[Dict[str, Any]]:
        """Pairs of parameters that the data hardly tell apart: first, second, coefficient."""
        return self._fit.quality()["strong_correlations"]

    def intervals(
        self,
        names: Optional[Sequence[str]] = None,
        level: float = 95.45,
        method: str = "profile",
        *,
        replicates: int = 1000,
        seed: int = 1,
    ) -> Dict[str, Interval]:
        """Limits of each parameter by itself, by name.

        names       parameters; all fitted ones of the model if not given
        level       percent: 95.45, not 0.9545
        method      "profile", "monte carlo" or "bootstrap"
        replicates  experiments of the latter two, `seed` of their random numbers

        Raises UnknownNameError for a name that the model has not, ValueError for a held parameter.
        """
        level = float(level)
        if 0.0 < level < 1.0:
            warnings.warn(f"level is in percent: {level:g} is {level:g} %", stacklevel=2)
        wanted = list(self._shared() if names is None else texts(names, "names"))
        keys = [self._key(name) for name in wanted]
        request: Dict[str, Any] = {
            "levels": [level],
            "methods": [str(method)],
            "replicates": index(replicates),
            "seed": index(seed),
            "parameters": "all" if None in keys else keys,
        }
        found = self._fit.errors({"fit": {"model": self.model}, "errors": request})
        entries = {entry["name"]: entry for entry in found["parameters"]}
        intervals = {}
        for name in wanted:
            entry = entries.get(self._parameters[name].name)
            if entry is None:
                raise ValueError(f"{name} is held in this fit")
            intervals[name] = _interval(name, entry, str(method))
        return intervals

    def joint_intervals(
        self, names: Optional[Sequence[str]] = None, percent: float = 95.46, method: int = 2
    ) -> Dict[str, Interval]:
        """Limits by the ratio of variances, all parameters together, by name.

        percent  above 50, below 100
        method   1: F(NDF, NDF); 2: 1 + n / NDF F(n, NDF), n fitted parameters
        """
        wanted = list(self._shared() if names is None else texts(names, "names"))
        keys = [self._key(name) for name in wanted]
        if None in keys:
            raise ValueError("only parameters of the model have joint limits")
        request = dict(percent=float(percent), method=index(method), parameters=keys)
        found = self._fit.intervals({"fit": {"model": self.model}, "confidence": request})
        captions = {row.caption: row.key for row in MODELS[self.model].parameters}
        entries = {captions[entry["name"]]: entry for entry in found["intervals"]}
        intervals = {}
        for name, key in zip(wanted, keys):
            entry = entries.get(str(key))
            if entry is None:
                raise FitError(f"no limits of {name} were found")
            value = entry["value"]
            limits = [None if x in (0.0, value) else x for x in (entry["lower"], entry["upper"])]
            intervals[name] = Interval(
                name, value, limits[0], limits[1], found["percent"], "joint", entry
            )
        return intervals

    def check_minimum(self, starts: int = 20, seed: int = 1) -> MinimumCheck:
        """Fits again from `starts` scattered start values, to see whether a better minimum is
        there."""
        request = {"model": self.model, "starts": index(starts), "seed": index(seed)}
        found = self._fit.minima({"fit": request})
        for minimum in found["found"]:
            minimum["parameters"] = {p["name"]: p["value"] for p in minimum["parameters"]}
        return MinimumCheck(
            found["better"], found["summary"], found["found"], found["ended"], found["failed"]
        )

    # ---- for people

    @property
    def log(self) -> str:
        """The report of the fit, as the log of the programs has it."""
        return str(self._fit.log)

    @property
    def messages(self) -> List[str]:
        """What the fit had to say beside its log."""
        return list(self._fit.messages)

    def report(self, path: PathLike) -> None:
        """Writes the report for a paper's supplement, .html or .pdf by the suffix of `path`.

        It is drawn in a process of its own, so that it goes with any thread and any toolkit."""
        name = os.fspath(path)
        command = [sys.executable, "-m", "quorvane._report", name]
        package = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
        paths = [package] + [p for p in [os.environ.get("PYTHONPATH")] if p]
        environment = {**os.environ, "PYTHONPATH": os.pathsep.join(paths)}
        done = subprocess.run(
            command, input=self._fit.pack(), capture_output=True, env=environment, check=False
        )
        if done.returncode == 0:
            return
        text = done.stderr.decode(errors="replace").strip()
        raise {2: ValueError, 3: OSError}.get(done.returncode, FitError)(text)

    def to_frame(self) -> Any:
        """pandas.DataFrame with the columns name, value, sd, fitted; a row a parameter."""
        import pandas

        rows = [(p.name, p.value, p.sd, p.fitted) for p in self._parameters.values()]
        return pandas.DataFrame(rows, columns=["name", "value", "sd", "fitted"])

    def plot(self) -> Any:
        """matplotlib figure of the datasets with their curves, residuals below."""
        from ._plot import plot_fit

        return plot_fit(self)

    # ---- as a value

    def __copy__(self) -> "Fit":
        return self

    def __deepcopy__(self, memo: Any) -> "Fit":
        return self

    def __reduce__(self) -> Any:
        return _restore_fit, (self._fit.pack(),)

    def __repr__(self) -> str:
        return f"<Fit {self.model!r}: {self.points} points, rms {self.rms:.4g}>"

    def _shared(self) -> List[str]:
        """Fitted parameters of the model."""
        known = {row.name for row in MODELS[self.model].parameters}
        return [p.name for p in self._parameters.values() if p.fitted and p.name in known]

    def _key(self, name: str) -> Optional[str]:
        """Its name in a job; None of a baseline or reference concentration."""
        found = self._parameters[name].name
        rows = MODELS[self.model].parameters
        return next((row.key for row in rows if row.name == found), None)


def _restore_fit(packed: bytes) -> Fit:
    return Fit(_quorvane.FinishedFit.unpack(packed))


def _interval(name: str, entry: Dict[str, Any], method: str) -> Interval:
    if method == "profile":
        limits = entry["profile"][0]
    else:
        replicates = entry[method.replace(" ", "_")]
        if not replicates["limits"]:
            raise FitError(f"{replicates['done']} replicates are too few for limits of {name}")
        limits = replicates["limits"][0]
    lower, upper = limits.get("lower"), limits.get("upper")
    return Interval(name, entry["value"], lower, upper, limits["level"], method, entry)


def fit(
    scans: Union[Dataset, Iterable[Dataset]],
    model: str,
    start: Optional[Mapping[str, float]] = None,
    held: Iterable[str] = (),
    rest: bool = True,
    vbar: Optional[float] = None,
    density: Optional[float] = None,
    temperature: Optional[float] = None,
    links: Optional[Mapping[int, int]] = None,
    time_limit: Optional[float] = None,
    *,
    fitted: Iterable[str] = (),
    vbar_b: Optional[float] = None,
    mc_tolerance: Optional[float] = None,
    use_mass_conservation: bool = False,
    calc_loading_concs: bool = False,
    constrain_k_ratios: bool = False,
    repeat: int = 1,
    channels_file: Optional[PathLike] = None,
    cell_geometry: Optional[Mapping[int, int]] = None,
) -> Fit:
    """Fits `model` to all points in use of `scans` at once.

    scans        one dataset or several; they stay as they are
    model        a name of :func:`models`
    start        start values by name: weights buoyant, M (1 - vbar density), in Da; association
                 constants as natural logarithms, K in 1/molar each step
    held         parameters that keep their start values. Stoichiometries are held unless `fitted`
                 names them. Baselines are "Offset(1)", reference concentrations "RefC(1)", or
                 "RefCA(1)" and "RefCB(1)"; these count from 1
    rest         until the sum of squares stands still; else `repeat` presses of "Fit"
    vbar         partial specific volume (of A), ml/g; 0.73 if not given
    density      of the solvent, g/ml; 1.0 if not given
    temperature  deg C; that of the first dataset if not given
    links        {dataset: target}, counted from 0: shares the reference concentrations of the
                 target
    time_limit   seconds; no limit if not given

    fitted                 parameters to be fitted that would be held
    vbar_b                 partial specific volume of B, ml/g
    mc_tolerance           tolerance of soft mass conservation
    use_mass_conservation  with a second component: the loads of the datasets are known
    calc_loading_concs     without one: the log tells loading concentrations
    constrain_k_ratios     LnK2 and LnK3 are ratios to K1, held
    channels_file          cell geometries
    cell_geometry          {dataset: geometry}, both counted from 0

    Raises FitError for a fit without a result, ValueError for what the rules of a job refuse,
    TypeError, and KeyboardInterrupt at Ctrl+C.
    """
    datasets = as_datasets(scans)
    if not 1 <= len(datasets) <= 101:
        raise ValueError("1 to 101 datasets can be fitted at once")
    if not isinstance(model, str):
        raise TypeError("model: a name is wanted")
    for dataset in datasets:
        if not dataset.is_blank and not dataset.good.any():
            raise ValueError(f"{dataset.name} has no point in use")
    job = Job(model, len(datasets))
    job.start(dict({} if start is None else start))
    for names, is_fitted, what in ((held, False, "held"), (fitted, True, "fitted")):
        for name in texts(names, what):
            job.choose(name, is_fitted, what)
    job.link(dict({} if links is None else links))
    for number, geometry in dict({} if cell_geometry is None else cell_geometry).items():
        if not 0 <= index(number) < len(datasets):
            raise ValueError("cell_geometry: there is no such dataset")
        job.rows[index(number)]["cell_geometry"] = index(geometry)
    job.fit["repeat"] = "rest" if rest else index(repeat)
    if time_limit is not None:
        job.fit["time_limit"] = float(time_limit)
    for key, switch in (
        ("use_mass_conservation", use_mass_conservation),
        ("calc_loading_concs", calc_loading_concs),
        ("constrain_k_ratios", constrain_k_ratios),
    ):
        job.fit[key] = bool(switch)
    numbers = {"vbar": vbar, "vbar_b": vbar_b, "density": density, "mc_tolerance": mc_tolerance,
               "temperature": None if temperature is None else celsius("temperature", temperature)}
    tables = job.tables({key: float(x) for key, x in numbers.items() if x is not None})
    if channels_file is not None:
        tables["channels_file"] = os.path.abspath(os.fspath(channels_file))
    return Fit(_quorvane.fit([dataset._scan for dataset in datasets], tables, _PROGRAMS))


def compare(fits: Union[Mapping[str, Fit], Iterable[Fit]]) -> Dict[str, Any]:
    """Which of several fits of the same points the data favour, and by how much: "fits" with
    their AICc, differences, weights and BIC, "tests" with the F tests of fits of which one is
    another with parameters held, "remarks" in plain sentences; keys as in the command line's JSON.

    Fits are called by the keys of a mapping, else by their models. Raises ValueError for fits of
    other points.
    """
    if isinstance(fits, Mapping):
        named = [(str(name), one) for name, one in fits.items()]
    else:
        named = [(one.model if isinstance(one, Fit) else "", one) for one in fits]
    if not all(isinstance(one, Fit) for _, one in named):
        raise TypeError("fits are wanted")
    if len(named) < 2:
        raise ValueError("two fits at least are wanted")
    return _quorvane.compare([(name, one._fit) for name, one in named])
