#!/usr/bin/env python3
"""Makes the scan files of this example from the closed form of one ideal species.

    signal = baseline + c0 exp(sigma (r^2 - r0^2) / 2) + noise

One protein of 30 kDa (buoyant weight 8100 Da) at two loads in channels A and B of a six-channel
cell, spun to equilibrium at three speeds at 20 deg C. The noise is normal with a standard deviation
of 0.004 and seeded, so that the files come out the same every time. Run it in this folder.
"""
import math
import random

BUOYANT_WEIGHT = 8100.0  # Da
NOISE = 0.004
TEMPERATURE = 293.15  # K
OMEGA_FACTOR = 1.319007e-10  # (2 pi / 60)^2 / R, R in erg/(mol K)
SPEEDS = (12000, 16000, 20000)  # rpm
# meniscus, base, r0 (cm), baseline, loaded signal of each channel
COLUMNS = (
    (5.880, 6.080, 6.013, 0.010, 0.25),
    (6.390, 6.590, 6.523, 0.015, 0.50),
)


def fortran(value):
    """`value` as the instrument writes it: six digits and an exponent of three."""
    mantissa, exponent = f"{value:.5E}".split("E")
    return f"{mantissa:>8}E{int(exponent):+04d}"


def reference(sigma, meniscus, base, r0, load):
    """Signal at r0 that gives the loaded signal as the mean over the column (in r^2/2)."""
    low, high, zero = (r * r / 2 for r in (meniscus, base, r0))
    integral = (math.exp(sigma * (high - zero)) - math.exp(sigma * (low - zero))) / sigma
    return load * (high - low) / integral


def signal(radius, sigma):
    """Noise-free signal at a radius; nothing but baseline outside the columns."""
    for meniscus, base, r0, baseline, load in COLUMNS:
        if meniscus <= radius <= base:
            c0 = reference(sigma, meniscus, base, r0, load)
            return baseline + c0 * math.exp(sigma * (radius**2 - r0**2) / 2)
    return 0.0


def main():
    rng = random.Random(8)
    for number, speed in enumerate(SPEEDS, start=1):
        sigma = BUOYANT_WEIGHT * speed**2 * OMEGA_FACTOR / TEMPERATURE
        rows = ["Example: one ideal protein, two loads", f"R 1 20.0 {speed:05d} 0086400 1.0000E11 280 21"]
        for step in range(250):
            radius = 5.850 + 0.003 * step
            value = signal(radius, sigma) + rng.gauss(0.0, NOISE)
            rows.append(f"   {radius:.4f}  {fortran(value)}   {fortran(NOISE)}")
        with open(f"{number:05d}.RA1", "w", newline="") as out:
            out.write("\r\n".join(rows) + "\r\n")


if __name__ == "__main__":
    main()
