"""Datasets: radial scans and what a fit starts from."""

from __future__ import annotations

import os
from io import IOBase
from typing import Any, Iterable, List, Optional, Sequence, Union

import numpy as np
import numpy.typing as npt

from . import _quorvane

Floats = npt.NDArray[np.float64]
PathLike = Union[str, "os.PathLike[str]"]


class _RowValue:
    """One value of a row of the parameter page."""

    def __init__(self, text: str) -> None:
        self.__doc__ = text

    def __set_name__(self, owner: type, name: str) -> None:
        self._name = name

    def __get__(self, dataset: Optional["Dataset"], owner: Optional[type] = None) -> float:
        if dataset is None:
            return self  # type: ignore[return-value]  # of the class, as a property is
        return dataset._scan.value(self._name)

    def __set__(self, dataset: "Dataset", value: float) -> None:
        dataset._scan.set_value(self._name, float(value))


def _read_only(array: Floats) -> Floats:
    array.flags.writeable = False
    return array


def celsius(name: str, value: float) -> float:
    """The temperature, deg C. Raises ValueError for none above absolute zero."""
    degrees = float(value)
    if degrees <= -273.15:
        raise ValueError(f"{name}: {degrees:g} deg C is not above absolute zero")
    return degrees


def _name(name: str) -> str:
    if not isinstance(name, str):
        raise TypeError(f"name: a text is wanted, not {type(name).__name__}")
    known = name.encode("cp1252", errors="ignore").decode("cp1252") == name
    if not known or not name.strip() or not name.isprintable() or set(name) & set('\\/:*?"<>|'):
        raise ValueError(
            f"name: {name!r} is none for a file: letters of Windows-1252 are wanted, without "
            '\\ / : * ? " < > |'
        )
    return name


def _floats(name: str, values: npt.ArrayLike) -> Floats:
    if isinstance(values, np.ma.MaskedArray) and np.any(values.mask):
        raise ValueError(f"{name}: a masked array; assign `good` instead of a mask")
    return np.asarray(values, dtype=float)


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
    name         as lists show it, at most 32 letters; a blank's begins with "BL_"

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
        radii, errors = _floats("r", r), _floats("error", error)
        if errors.ndim == 0:
            errors = np.full(radii.shape, errors)
        conditions = [float(speed), float(wavelength), celsius("temperature", temperature)]
        self._scan = _quorvane.Scan(
            radii, _floats("signal", signal), errors, _name(name), conditions
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
        self._scan.name = _name(name)

    @property
    def path(self) -> str:
        """The file it was loaded from, letters beyond Windows-1252 as "?"; empty for one made
        from arrays."""
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
        self._scan.signal = _floats("signal", signal)

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

    ext_coeff = _RowValue("Extinction coefficient (of A), signal per mol/l.")
    ext_coeff_b = _RowValue("Extinction coefficient of B, signal per mol/l.")
    meniscus = _RowValue("Radius of the meniscus, cm.")
    base = _RowValue("Radius of the base of the column, cm.")
    baseline = _RowValue("Baseline that a fit starts from, signal units.")
    ref_conc = _RowValue(
        "Signal (of A) at `ref_radius` that a fit starts from, above 0."
    )
    ref_conc_b = _RowValue("Signal of B at `ref_radius`, likewise.")
    load_a = _RowValue("Loading concentration (of A), mol/l.")
    load_b = _RowValue("Loading concentration of B, mol/l.")

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
    if not isinstance(path, (str, os.PathLike)) or not isinstance(os.fspath(path), str):
        raise TypeError(f"a path is a str or an os.PathLike of one, not {type(path).__name__}")
    name = os.fspath(path)
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
    if isinstance(path, Iterable) and not isinstance(path, (str, bytes, IOBase)):
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
