"""Exceptions of the package."""


class FitError(RuntimeError):
    """A fit, a search around it or a simulation that came to no result; the text says why."""


class UnknownNameError(KeyError, ValueError):
    """A name that a model does not have. It is a KeyError and a ValueError alike."""

    def __str__(self) -> str:
        return str(self.args[0]) if self.args else ""


FitError.__module__ = UnknownNameError.__module__ = "quorvane"
