"""Analysis of sedimentation-equilibrium experiments: the engine of Quorvane for Python.

    import quorvane as qv
    scans = qv.load("00001.RA1", centerpiece="6 channels")
    fit = qv.fit(scans, "Monomer-Nmer", start={"MW": 7000.0, "LnK1": 11.0})
    print(fit["LnK1"].value, fit["LnK1"].sd)

Radii are in cm, speeds in rpm, temperatures in deg C, wavelengths in nm, weights in Da and
buoyant, M (1 - vbar density), concentrations in mol/l, association constants as natural
logarithms. Long work leaves the interpreter free and stops at Ctrl+C.
"""

from ._dataset import Dataset, load
from ._errors import FitError, UnknownNameError
from ._experiment import Experiment, save
from ._experiment import open as open  # not in __all__: a star import would hide the built-in one
from ._fit import Fit, Interval, MinimumCheck, Parameter, Parameters, compare, fit
from ._job import models
from ._quorvane import __version__
from ._tools import ExpectedError, Plan, Simulation, Solution, plan, simulate, solution

__all__ = [
    "Dataset", "Experiment", "ExpectedError", "Fit", "FitError", "Interval", "MinimumCheck",
    "Parameter", "Parameters", "Plan", "Simulation", "Solution", "UnknownNameError", "__version__",
    "compare", "fit", "load", "models", "plan", "save", "simulate", "solution",
]
