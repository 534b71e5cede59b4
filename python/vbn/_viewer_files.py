"""Files for molecule viewers with the true motions: eigenvector over the root of the mass, as extended XYZ, CJSON and
Molden."""
import json
import os

import numpy as np

BOHR = 0.529177249  # angstrom
LINEAR = 1.0e-3  # of the second extent of a molecule, as a fraction of the first, below which it is linear


def vibrations(analysis, state):
    """The modes of a state that are vibrations, in their order: all but the six nearest to zero, the translations and
    rotations, or the five of a linear molecule."""
    x = analysis.geometries[state]
    extents = np.linalg.svd(x - x.mean(axis=0), compute_uv=False)
    external = 5 if extents[1] < LINEAR * extents[0] else 6
    return np.sort(np.argsort(abs(analysis.frequencies[state]), kind='stable')[external:])


def cartesian_modes(analysis, state, modes):
    """The displacements of the atoms along the modes of a state, shape (modes, N, 3), each of length 1."""
    vectors = analysis.normal_modes[state][:, modes] / np.repeat(np.sqrt(analysis.masses[state]), 3)[:, None]
    return (vectors / np.linalg.norm(vectors, axis=0)).T.reshape(len(modes), -1, 3)


def extended_xyz(analysis, state, modes, vectors):
    """A frame for each mode: symbol, x, y, z in angstrom and the displacement of each atom."""
    lines = []
    for mode, vector in zip(modes, vectors):
        head = {'state': state + 1, 'mode': mode + 1, 'frequency': f'{analysis.frequencies[state][mode]:.4f}',
                'irrep': f'"{analysis.irreps[state][mode]}"', 'huang_rhys': f'{analysis.huang_rhys[state][mode]:.8f}',
                'reorganisation_energy': f'{analysis.reorganisation_energies[state][mode]:.4f}'}
        lines += [str(len(analysis.symbols)), 'Properties=species:S:1:pos:R:3:displacement:R:3 '
                  + ' '.join(f'{name}={value}' for name, value in head.items()) + ' pbc="F F F"']
        lines += [f'{symbol:2}' + ''.join(f'{c:14.8f}' for c in (*x, *v))
                  for symbol, x, v in zip(analysis.symbols, analysis.geometries[state], vector)]
    return '\n'.join(lines) + '\n'


def cjson(analysis, state, modes, vectors):
    """Chemical JSON: the molecule with its bonds and vibrations. Intensities are not known; without a number for each
    Avogadro 1.97 crashes when it saves the molecule."""
    ic = analysis.internal_coordinates
    pairs = np.argwhere(np.triu(ic.bonds[state])) if ic else np.empty((0, 2), int)
    content = {'chemicalJson': 1, 'name': f'{analysis.formula}, state {state + 1}',
               'atoms': {'elements': {'number': analysis.atomic_numbers.tolist()},
                         'coords': {'3d': analysis.geometries[state].ravel().tolist()}},
               'bonds': {'connections': {'index': pairs.ravel().tolist()}, 'order': [1] * len(pairs)},
               'vibrations': {'modes': [mode + 1 for mode in modes],
                              'intensities': [0.0] * len(modes), 'ramanIntensities': [0.0] * len(modes),
                              'frequencies': analysis.frequencies[state][modes].tolist(),
                              'eigenVectors': vectors.reshape(len(modes), -1).tolist()}}
    return json.dumps(content) + '\n'


def molden(analysis, state, modes, vectors):
    """Molden: the sections of atoms, frequencies and normal coordinates, lengths in bohr."""
    x = analysis.geometries[state]
    lines = ['[Molden Format]', '[Atoms] AU']
    for i, (symbol, number, position) in enumerate(zip(analysis.symbols, analysis.atomic_numbers, x), 1):
        lines.append(f'{symbol:2}{i:5d}{number:4d}' + ''.join(f'{c:16.8f}' for c in position / BOHR))
    lines += ['[FREQ]'] + [f'{f:12.4f}' for f in analysis.frequencies[state][modes]] + ['[FR-COORD]']
    lines += [f'{symbol:2}' + ''.join(f'{c:16.8f}' for c in position / BOHR)
              for symbol, position in zip(analysis.symbols, x)] + ['[FR-NORM-COORD]']
    for number, vector in enumerate(vectors, 1):
        lines += [f'vibration {number:5d}'] + [''.join(f'{c:14.8f}' for c in v) for v in vector]
    return '\n'.join(lines) + '\n'


FORMATS = {'.xyz': extended_xyz, '.extxyz': extended_xyz, '.cjson': cjson, '.molden': molden}


def modes_text(analysis, path, state, modes):
    """The text of the file of the modes of a state, in the format of the ending of the path."""
    ending = os.path.splitext(os.fspath(path))[1].lower()
    if ending not in FORMATS:
        raise ValueError(f'no format has the ending {ending!r}; there are ' + ', '.join(FORMATS))
    if state not in (0, 1):
        raise ValueError(f'the state must be 0 or 1, not {state}')
    count = len(analysis.pairs)
    modes = vibrations(analysis, state).tolist() if modes is None else [range(count)[mode] for mode in modes]
    return FORMATS[ending](analysis, state, modes, cartesian_modes(analysis, state, modes))


def geometries_text(analysis):
    """Both minima as the two frames of an XYZ file, in angstrom."""
    lines = []
    for state, x in enumerate(analysis.geometries):
        lines += [str(len(x)), f'Properties=species:S:1:pos:R:3 state={state + 1} pbc="F F F"']
        lines += [f'{symbol:2}' + ''.join(f'{c:14.8f}' for c in position)
                  for symbol, position in zip(analysis.symbols, x)]
    return '\n'.join(lines) + '\n'
