"""Experiments: what the window program keeps in one file."""

from __future__ import annotations

import builtins
import os
import tempfile
import warnings
from typing import Any, Dict, List, Optional

from . import _quorvane
from ._dataset import Dataset, PathLike, as_datasets, readable
from ._fit import Fit


class Experiment:
    """Datasets, values of the parameter page and log of an experiment.

    ``Experiment(fit)`` is one in which that fit has just ended, ``Experiment()`` an empty one;
    :func:`open` reads one. All three parts may be changed before :func:`save`. It can be copied,
    and pickled as the file that would be saved.

    datasets  a list of Dataset
    page      values of the parameter page: "MW" (buoyant, Da), "LnK1" ..., "Vbar", "VbarB" (ml/g),
              "Density" (g/ml), "Model" and "Temperature" (deg C)
    log       as plain text
    """

    datasets: List[Dataset]
    page: Dict[str, Any]
    log: str

    def __init__(self, fit: Optional[Fit] = None) -> None:
        self._take(_quorvane.Session() if fit is None else _quorvane.session_around(fit._fit))

    def _take(self, session: Any) -> None:
        self._session = session
        self.datasets = [Dataset._of(scan) for scan in session.scans()]
        self.page = session.page()
        self.log = session.log

    def __copy__(self) -> "Experiment":
        made = Experiment()
        made._session = self._session.copy()
        made.datasets = [dataset.copy() for dataset in self.datasets]
        made.page, made.log = dict(self.page), self.log
        return made

    def __deepcopy__(self, memo: Any) -> "Experiment":
        return self.__copy__()

    def __reduce__(self) -> Any:
        if not self.datasets:
            return _restore_experiment, (b"", self.page, self.log)
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "pickled.exz")
            save(self, path)
            with builtins.open(path, "rb") as file:
                return _restore_experiment, (file.read(), self.page, self.log)

    def __repr__(self) -> str:
        return f"<Experiment: {len(self.datasets)} datasets, model {self.page.get('Model')!r}>"


def _restore_experiment(archive: bytes, page: Dict[str, Any], log: str) -> Experiment:
    experiment = Experiment()
    if archive:
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "pickled.exz")
            with builtins.open(path, "wb") as file:
                file.write(archive)
            experiment._take(_quorvane.open(path))
    experiment.page, experiment.log = page, log
    return experiment


def open(path: PathLike) -> Experiment:  # noqa: A001
    """The experiment in an .exz file. Raises OSError for a file that is none.

    What its reader passed over comes as a warning."""
    experiment = Experiment()
    experiment._take(_quorvane.open(readable(path)))
    for message in experiment._session.messages:
        warnings.warn(message, stacklevel=2)
    return experiment


def save(experiment: Experiment, path: PathLike) -> None:
    """Writes an experiment as an .exz file, whole or not at all. Raises OSError, and ValueError
    for an experiment without datasets or a page with an unknown name."""
    if not isinstance(experiment, Experiment):
        raise TypeError("an Experiment is wanted")
    datasets = [dataset._scan for dataset in as_datasets(experiment.datasets)]
    told = experiment._session.save(
        datasets, dict(experiment.page), str(experiment.log), os.fspath(path)
    )
    for text in told:
        warnings.warn(text, stacklevel=2)
