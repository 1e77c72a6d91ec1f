"""Datasets: radial scans and what a fit starts from."""

from __future__ import annotations

import os
from typing import Any, Iterable, List, Optional, Sequence, Union

import numpy as np
import numpy.typing as npt

from . import _quorvane

Floats = npt.NDArray[np.float64]
PathLike = Union[str, "os.PathLike[str]"]


def _row_value(name: str, text: str) -> Any:
    """A property for one value of a row of the parameter page."""

    def get(self: "Dataset") -> float:
        return float(self._scan.value(name))

    def put(self: "Dataset", value: float) -> None:
        self._scan.set_value(name, float(value))

    return property(get, put, doc=text)


def _read_only(array: Floats) -> Floats:
    array.flags.writeable = False
    return array


class Dataset:
    """One radial scan of 10 to 2048 points, with the values that a fit takes from it.

    Datasets come from :func:`load`, or from arrays::

        qv.Dataset(r, signal, error=0.004, speed=16000)

    r            radii, cm, rising
    signal       signal at each radius: absorbance or fringes
    error        standard deviations of the signal, one a point or one for all
    speed        rotor speed, rpm
    wavelength   nm
    temperature  deg C
    name         as lists show it

    A dataset can be copied (copy.copy) and pickled. Fits work on copies and never change it.
    """

    __slots__ = ("_scan", "__weakref__")

    def __init__(
        self,
        r: npt.ArrayLike,
        signal: npt.ArrayLike,
        error: npt.ArrayLike = 0.0,
        *,
        speed: float,
        wavelength: int = 280,
        temperature: float = 20.0,
        name: str = "scan",
    ) -> None:
        radii = np.asarray(r, dtype=float)
        errors = np.asarray(error, dtype=float)
        if errors.ndim == 0:
            errors = np.full(radii.shape, errors)
        conditions = [float(speed), float(wavelength), float(temperature)]
        self._scan = _quorvane.Scan(
            radii, np.asarray(signal, dtype=float), errors, str(name), conditions
        )

    @classmethod
    def _of(cls, scan: Any) -> "Dataset":
        dataset = cls.__new__(cls)
        dataset._scan = scan
        return dataset

    # ---- where it comes from

    @property
    def name(self) -> str:
        """Name of the dataset, at most 32 characters; may be assigned."""
        return str(self._scan.name)

    @name.setter
    def name(self, name: str) -> None:
        self._scan.name = str(name)

    @property
    def path(self) -> str:
        """The file it was loaded from; empty for one made from arrays."""
        return str(self._scan.path)

    @property
    def comment1(self) -> str:
        """First line of its file, with the path behind it."""
        return str(self._scan.comment1)

    @property
    def comment2(self) -> str:
        """Second line of its file; ends in "BL" once a blank was subtracted."""
        return str(self._scan.comment2)

    @property
    def cell(self) -> Optional[int]:
        """Number of the cell, by the name; None if that does not tell."""
        return self._scan.cell

    @property
    def channel(self) -> Optional[str]:
        """Letter of the channel, by the name; None if that does not tell."""
        return self._scan.channel

    @property
    def is_blank(self) -> bool:
        """Whether it is a scan of the solvent, which is never fitted."""
        return bool(self._scan.blank)

    # ---- conditions

    @property
    def speed(self) -> int:
        """Rotor speed, rpm; may be assigned."""
        return int(self._scan.speed)

    @speed.setter
    def speed(self, rpm: float) -> None:
        self._scan.speed = float(rpm)

    @property
    def wavelength(self) -> int:
        """Wavelength, nm."""
        return int(self._scan.wavelength)

    @property
    def temperature(self) -> float:
        """Temperature of the scan, deg C."""
        return float(self._scan.temperature)

    # ---- points

    @property
    def r(self) -> Floats:
        """Radii, cm, length n. A copy that cannot be written to."""
        return _read_only(self._scan.r)

    @property
    def signal(self) -> Floats:
        """Signal at each radius, length n. A copy that cannot be written to; a whole array of the
        same length may be assigned."""
        return _read_only(self._scan.signal)

    @signal.setter
    def signal(self, signal: npt.ArrayLike) -> None:
        self._scan.signal = np.asarray(signal, dtype=float)

    @property
    def error(self) -> Floats:
        """Standard deviation of each signal as its file has it, length n, not negative. A copy
        that cannot be written to. Fits weigh all points alike."""
        return _read_only(self._scan.error)

    @property
    def good(self) -> npt.NDArray[np.bool_]:
        """Whether each point is in use, bool, length n.

        A mask may be assigned (``d.good = d.r < 6.07``), and so may its elements and slices
        (``d.good[3] = False``): the array writes into the dataset, and stays valid as long as
        itself or the dataset lives."""
        return self._scan.good

    @good.setter
    def good(self, mask: npt.ArrayLike) -> None:
        wanted = np.asarray(mask)
        if wanted.dtype != np.bool_:
            raise ValueError("good: an array of bool is wanted")
        mine = self._scan.good
        if wanted.shape != mine.shape:
            raise ValueError(f"good: {mine.shape[0]} values are wanted, one a point")
        mine[:] = wanted

    def keep(self, low: float, high: float) -> None:
        """Leaves only the points from `low` to `high` cm in use. Points that an earlier range
        left out come back; points deleted singly inside that range stay deleted."""
        self._scan.keep(float(low), float(high))

    def delete(self, low: float, high: float) -> None:
        """Takes the points from `low` to `high` cm out of use."""
        self._scan.delete(float(low), float(high))

    def restore(self, low: float, high: float) -> None:
        """Takes the points from `low` to `high` cm into use again."""
        self._scan.restore(float(low), float(high))

    def restore_all(self) -> None:
        """Takes all points into use again."""
        self._scan.restore_all()

    def subtract(self, blank: "Dataset") -> None:
        """Subtracts a blank (``qv.load(path, blank=True)``) point by point, once."""
        if not isinstance(blank, Dataset):
            raise TypeError("a Dataset is wanted")
        self._scan.subtract(blank._scan)

    # ---- what a fit takes from it

    ext_coeff = _row_value("ext_coeff", "Extinction coefficient (of A), signal per mol/l.")
    ext_coeff_b = _row_value("ext_coeff_b", "Extinction coefficient of B, signal per mol/l.")
    meniscus = _row_value("meniscus", "Radius of the meniscus, cm.")
    base = _row_value("base", "Radius of the base of the column, cm.")
    baseline = _row_value("baseline", "Baseline that a fit starts from, signal units.")
    ref_conc = _row_value(
        "ref_conc", "Signal (of A) at `ref_radius` that a fit starts from, above 0."
    )
    ref_conc_b = _row_value("ref_conc_b", "Signal of B at `ref_radius`, likewise.")
    load_a = _row_value("load_a", "Loading concentration (of A), mol/l.")
    load_b = _row_value("load_b", "Loading concentration of B, mol/l.")

    @property
    def ref_radius(self) -> float:
        """The radius at which reference concentrations hold, cm: two thirds down the points in
        use."""
        return float(self._scan.ref_radius)

    # ---- as a value

    def __len__(self) -> int:
        return len(self._scan.good)

    def __copy__(self) -> "Dataset":
        return Dataset._of(self._scan.copy())

    def __deepcopy__(self, memo: Any) -> "Dataset":
        return self.__copy__()

    def copy(self) -> "Dataset":
        """A dataset of its own with the same values."""
        return self.__copy__()

    def __reduce__(self) -> Any:
        return _restore_dataset, (self._scan.pack(),)

    def __repr__(self) -> str:
        good = int(np.count_nonzero(self._scan.good))
        return f"<Dataset {self.name!r}: {good} of {len(self)} points, {self.speed} rpm>"


def _restore_dataset(packed: bytes) -> Dataset:
    return Dataset._of(_quorvane.Scan.unpack(packed))


def as_datasets(scans: Union[Dataset, Iterable[Dataset]]) -> List[Dataset]:
    """The scans as a list. Raises TypeError for anything that is no Dataset."""
    chosen = [scans] if isinstance(scans, Dataset) else list(scans)
    for scan in chosen:
        if not isinstance(scan, Dataset):
            raise TypeError(f"datasets are wanted, not {type(scan).__name__}")
    return chosen


def readable(path: PathLike) -> str:
    """The path as a text, if its file can be opened: FileNotFoundError and the like come from
    here."""
    name = os.fspath(path)
    if not isinstance(name, str):
        raise TypeError("a path is a str or an os.PathLike of one")
    with open(name, "rb"):
        return name


def load(
    path: Union[PathLike, Sequence[PathLike]],
    kind: Optional[str] = None,
    centerpiece: Optional[str] = None,
    channels: Optional[Union[str, Sequence[str]]] = None,
    blank: bool = False,
) -> List[Dataset]:
    """Loads a scan file (or several): a list of datasets, one a channel.

    kind         "IP,RA", "DAT", "FI" or "EL"; by the extension if it is not given
    centerpiece  "2 channels", "6 channels" or "8 channels" for files of the kind "IP,RA"
    channels     the letters that are wanted, "AC" or ["A", "C"]; all if not given
    blank        whether it is a scan of the solvent, for Dataset.subtract

    Raises OSError for a file that cannot be read or holds no scan, ValueError for a word that is
    none.
    """
    if not isinstance(path, (str, os.PathLike)):
        datasets: List[Dataset] = []
        for one in path:
            datasets += load(one, kind, centerpiece, channels, blank)
        return datasets
    name = readable(path)
    words: dict[str, Any] = {"file": os.path.basename(name).encode(errors="replace").decode()}
    if kind is not None:
        words["kind"] = str(kind)
    if centerpiece is not None:
        words["centerpiece"] = str(centerpiece)
    if channels is not None:
        words["channels"] = [str(channel) for channel in channels]
    if blank:
        words["blank"] = True
    return [Dataset._of(scan) for scan in _quorvane.load(name, {"load": [words]})]
