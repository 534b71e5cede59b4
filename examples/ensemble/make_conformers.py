#!/usr/bin/env python3
"""Makes conformers to try the workflow with: make_conformers.py STATE1 STATE2 FOLDER [COUNT].

Each is the given pair in another orientation. The force constant of every mode is changed by up to 20 %, so that modes change
places, and the displacement between the minima by up to 20 %. The factors are in FOLDER/factors.json."""
import json
import sys
from pathlib import Path

import numpy as np

import vbn

EMASS = 1822.88853  # electron masses, of an atomic mass unit


def text_of(a, state, geometry, constants):
    """A file of numerical frequencies; geometry in angstrom, force constants in hartree/bohr^2."""
    lines = [' NUMERICAL FREQUENCY', ' VERSION 1.2', '', f' NAtoms {len(geometry):6d}', '', ' Coordinate Angstrom',
             '   No    Z        mass               x               y               z']
    for i, (z, mass, x) in enumerate(zip(a.atomic_numbers, a.masses[state], geometry), 1):
        lines.append(f'{i:5d}{z:5d}{mass:14.8f}' + ''.join(f'{c:18.10f}' for c in x))
    lines += ['', ' Energy         0.000000000000', '', ' Unprojected Force Constant Matrix']
    for i, row in enumerate(constants, 1):
        lines.append(f' row {i:6d}')
        lines += [''.join(f'{f:15.10f}' for f in row[k:k + 5]) for k in range(0, len(row), 5)]
    return '\n'.join(lines) + '\n'


def main(state1, state2, folder, count='20'):
    random = np.random.default_rng(1)
    a = vbn.analyse(state1, state2)
    factors = {}
    for number in range(1, int(count) + 1):
        scale, shift = random.uniform(0.8, 1.2, (2, len(a.pairs))), random.uniform(0.8, 1.2)
        rotation, _ = np.linalg.qr(random.normal(size=(3, 3)))
        rotation *= np.sign(np.linalg.det(rotation))
        whole = np.kron(np.eye(len(a.symbols)), rotation)
        name = f'c{number:03d}'
        (Path(folder) / name).mkdir(parents=True, exist_ok=True)
        for state, file in enumerate((state1, state2)):
            x = a.geometries[0] + state * shift * (a.geometries[1] - a.geometries[0])
            root = np.sqrt(np.repeat(a.masses[state] * EMASS, 3))[:, None]
            modes = root * a.normal_modes[state]
            values = np.diag(a.normal_modes[state].T @ (a.force_constants[state] / root / root.T) @ a.normal_modes[state])
            constants = whole @ (modes * (scale[state] * values)) @ modes.T @ whole.T
            (Path(folder) / name / Path(file).name).write_text(text_of(a, state, x @ rotation.T, constants))
        factors[name] = {'force_constants': scale.tolist(), 'displacement': shift}
    (Path(folder) / 'factors.json').write_text(json.dumps(factors))


main(*sys.argv[1:])
