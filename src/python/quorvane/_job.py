"""The tables of a job: what the arguments of a fit say."""

from __future__ import annotations

from collections.abc import Mapping
from dataclasses import dataclass
from operator import index
from typing import Any, Dict, Iterable, List, NoReturn, Optional, Tuple

from . import _quorvane
from ._errors import UnknownNameError


@dataclass(frozen=True)
class ModelParameter:
    name: str  # in a fit
    key: str  # in a job
    caption: str


@dataclass(frozen=True)
class Model:
    name: str
    two_components: bool
    parameters: Tuple[ModelParameter, ...]


MODELS: Dict[str, Model] = {
    name: Model(name, two, tuple(ModelParameter(*row) for row in rows))
    for name, two, rows in _quorvane.models()
}


def models() -> List[str]:
    """Names of the models that can be fitted."""
    return list(MODELS)


def texts(names: Iterable[str], what: str) -> List[str]:
    if isinstance(names, str):
        raise TypeError(f"{what}: a list of names is wanted, not one text")
    chosen = list(names)
    if not all(isinstance(name, str) for name in chosen):
        raise TypeError(f"{what}: names are texts")
    return chosen


class Job:
    """The tables of a job: what the arguments of :func:`fit` say."""

    def __init__(self, model: str, count: int) -> None:
        self.model = MODELS.get(model)
        self.fit: Dict[str, Any] = {"model": model}
        self.parameters: Dict[str, Dict[str, Any]] = {}
        self.rows: List[Dict[str, Any]] = [{"number": n + 1} for n in range(count)]

    def _key(self, name: str) -> Optional[str]:
        rows = self.model.parameters if self.model else ()
        return next((row.key for row in rows if name in (row.name, row.key)), None)

    def start(self, values: Mapping[str, float]) -> None:
        for name, value in values.items():
            key = self._key(name)
            if key is None:
                self._refuse(name, "; baselines and reference concentrations start where the "
                             "values of the datasets are")
            self.parameters.setdefault(key, {})["start"] = float(value)

    def choose(self, name: str, fitted: bool, what: str) -> None:
        key = self._key(name)
        if key is not None:
            if self.parameters.setdefault(key, {}).setdefault("fit", fitted) != fitted:
                raise ValueError(f"{what}: {name} is held already")
            return
        checks = {"Offset": "fit_baseline", "RefC": "fit_ref_conc", "RefCA": "fit_ref_conc",
                  "RefCB": "fit_ref_conc_b"}
        block, _, number = name.rstrip(")").partition("(")
        known = block in checks and number.isascii() and number.isdigit()
        if not known or not 1 <= int(number) <= len(self.rows):
            self._refuse(name, "")
        if self.rows[int(number) - 1].setdefault(checks[block], fitted) != fitted:
            raise ValueError(f"{what}: {name} is held already")

    def link(self, links: Mapping[int, int]) -> None:
        count = len(self.rows)
        for dataset, target in links.items():
            for number in (dataset, target):
                if not 0 <= index(number) < count:
                    raise ValueError(f"links: datasets count from 0 to {count - 1}")
            if index(dataset) != index(target):
                self.rows[index(dataset)]["link_to"] = index(target) + 1

    def tables(self, constants: Dict[str, Any]) -> Dict[str, Any]:
        if self.parameters:
            self.fit["parameters"] = self.parameters
        rows = [row for row in self.rows if len(row) > 1]
        return {"constants": constants, "fit": self.fit, **({"dataset": rows} if rows else {})}

    def _refuse(self, name: str, hint: str) -> NoReturn:
        if self.model is None:
            raise ValueError(f"there is no model {self.fit['model']!r}; the models are: "
                             + ", ".join(MODELS))
        known = ", ".join(row.key for row in self.model.parameters)
        raise UnknownNameError(f"{self.model.name} has no {name!r}; it has {known}{hint}")
