#!/usr/bin/python3
"""Brings transition dipole derivatives to the frame of a run: dipole_to_frame.py DIPOLE LOG STATE OUT.

DIPOLE is a file of numerical frequencies with the table of derivatives, LOG the vbn.out of a run on the same molecule
(its input needs no ftdipd), STATE 1 or 2 the state whose geometry DIPOLE has. OUT holds the geometry of the log, and the
dipole and its derivatives rotated with it: both the component of the dipole and the direction of the displacement.
"""
import re
import sys

import numpy as np

TITLE = 'Transition dipole moment derivative'


def geometry_of_log(log, state):
    """Symbols are not needed: the coordinates (angstrom) of the last table for the state."""
    tables = re.findall(rf'Inertial Coordinate \(Angstrom\) for state {state}\n.*\n((?: +\d+ +\w+ +.*\n)+)', log)
    return np.array([[float(x) for x in row.split()[3:6]] for row in tables[-1].splitlines()])


def rotation(x, y, mass):
    """The proper rotation that takes x onto y, both about their centres of mass (Kabsch 1976)."""
    x, y = (p - mass @ p / mass.sum() for p in (x, y))
    u, _, vt = np.linalg.svd((mass[:, None] * x).T @ y)
    fit = np.diag([1, 1, np.sign(np.linalg.det(u @ vt))])
    return (u @ fit @ vt).T


def main():
    dipole, log, state, out = sys.argv[1:]
    lines = open(dipole).read().splitlines()
    first = next(i for i, line in enumerate(lines) if line.startswith(' Coordinate')) + 2
    n = int(next(line for line in lines if 'NAtoms' in line).split()[1])
    atoms = [line.split() for line in lines[first:first + n]]
    mass = np.array([float(a[2]) for a in atoms])
    unit = 0.529177249 if 'bohr' in lines[first - 2].lower() else 1.0
    x = unit * np.array([[float(c) for c in a[3:6]] for a in atoms])
    y = geometry_of_log(open(log).read(), state)
    r = rotation(x, y, mass)

    table = next(i for i, line in enumerate(lines) if TITLE in line) + 1
    words = [line.split() for line in lines[table:table + 1 + 3 * n]]
    rows = np.array([[float(c) for c in row[4:7]] for row in words])
    derivatives = np.einsum('ab,cd,nbd->nac', r, r, rows[1:].reshape(n, 3, 3))  # atom, displacement, dipole

    with open(out, 'w') as file:
        file.write('\n'.join(lines[:first - 2]) + '\n Coordinate Angstrom\n' + lines[first - 1] + '\n')
        for i, (a, c) in enumerate(zip(atoms, y), 1):
            file.write(f'{i:5d}{int(a[1]):5d}{float(a[2]):14.8f}' + ''.join(f'{v:20.10f}' for v in c) + '\n')
        file.write(f'\n {TITLE} (Atomic unit)\n')
        file.write('    0 ref -    0' + ''.join(f'{v:16.9f}' for v in r @ rows[0]) + '\n')
        for row, values in zip(words[1:], derivatives.reshape(3 * n, 3)):
            file.write(f'{row[0]:>5s} {row[1]:3s} {row[2]}{row[3]:>5s}' + ''.join(f'{v:16.9f}' for v in values) + '\n')


main()
