"""Writes the report of a fit; run by Fit.report in a process of its own, because what draws wants
the main thread. The fit comes from standard input."""

import sys


def main() -> int:
    from quorvane import _drawing

    try:
        _drawing.write_report(sys.stdin.buffer.read(), sys.argv[1])
    except ValueError as refused:
        print(refused, file=sys.stderr)
        return 2
    except OSError as fault:
        print(fault, file=sys.stderr)
        return 3
    return 0


if __name__ == "__main__":
    sys.exit(main())
