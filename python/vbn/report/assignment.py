"""What a mode is in internal coordinates: shares of its potential energy, coordinate by coordinate."""
import numpy as np

STEP = 1.0e-4  # angstrom, of the numerical derivatives
LEAST_CHANGE = 1.0e-6  # of the eigenvalues of B^T B, as a fraction of the largest
MOST_NAMED = 2
MOTIONS = {'bond': 'stretch', 'linear bend': 'linear bend', 'bend': 'bend', 'dihedral': 'torsion',
           'improper dihedral': 'out of plane', 'linear torsion': 'torsion'}


def _unit(v):
    return v / np.linalg.norm(v, axis=-1, keepdims=True)


def _angle(p):
    return np.arccos(np.clip(np.sum(_unit(p[:, 0] - p[:, 1]) * _unit(p[:, 2] - p[:, 1]), axis=1), -1.0, 1.0))


def _dihedral(p):
    axis = _unit(p[:, 2] - p[:, 1])
    a, b = np.cross(p[:, 1] - p[:, 0], axis), np.cross(axis, p[:, 3] - p[:, 2])
    return np.arctan2(np.sum(np.cross(a, b) * axis, axis=1), np.sum(a * b, axis=1))


def _out_of_plane(p):
    normal = _unit(np.cross(_unit(p[:, 2] - p[:, 1]), _unit(p[:, 3] - p[:, 1])))
    return np.arcsin(np.clip(np.sum(_unit(p[:, 0] - p[:, 1]) * normal, axis=1), -1.0, 1.0))


def _linear_bend(start):
    """The bend of nearly straight atoms along a fixed direction across them, as the program measures it."""
    axis = _unit(start[:, 0] - start[:, 1])
    across = np.array([1.0, 1.0, 0.0]) - np.sum(axis * [1.0, 1.0, 0.0], axis=1)[:, None] * axis
    along_z = np.array([0.0, 0.0, 1.0]) - axis[:, 2:] * axis
    direction = _unit(np.where(np.linalg.norm(across, axis=1)[:, None] < 1.0e-6, along_z, across))
    return lambda p: np.sum(direction * (_unit(p[:, 0] - p[:, 1]) + _unit(p[:, 2] - p[:, 1])), axis=1)


def _by_kind(analysis, state):
    """The rows of each kind of coordinate, the atoms (m, 2 to 4) of each, and the function of their positions."""
    ic = analysis.internal_coordinates
    kinds = np.array(ic.kinds)
    for kind in dict.fromkeys(ic.kinds):
        rows = np.flatnonzero(kinds == kind)
        atoms = ic.atoms[rows][:, :{'bond': 2, 'bend': 3, 'linear bend': 3}.get(kind, 4)]
        if kind == 'linear bend':
            yield rows, atoms, _linear_bend(analysis.geometries[state][atoms])
        else:
            yield rows, atoms, {'bond': lambda p: np.linalg.norm(p[:, 0] - p[:, 1], axis=1), 'bend': _angle,
                                'improper dihedral': _out_of_plane}.get(kind, _dihedral)


def derivatives(analysis, state):
    """B, shape (n, 3N): the derivatives of the internal coordinates (angstrom, radian) by the Cartesian ones."""
    x = analysis.geometries[state]
    b = np.zeros((len(analysis.internal_coordinates.kinds), x.size))
    for rows, atoms, value in _by_kind(analysis, state):
        for k in range(atoms.shape[1]):
            for c in range(3):
                step = np.zeros((*atoms.shape, 3))
                step[:, k, c] = STEP
                change = value(x[atoms] + step) - value(x[atoms] - step)
                b[rows, 3 * atoms[:, k] + c] += np.remainder(change + np.pi, 2.0 * np.pi) - np.pi
    return b / (2.0 * STEP)


def energy_shares(analysis, state, modes):
    """The share of each internal coordinate in the potential energy of modes, shape (n, modes): the force constant of the
    coordinate times the square of its change, over the sum of these. The force constants of redundant coordinates are
    those of the generalised inverse of B. Zeros for a mode that changes none of the coordinates."""
    b = derivatives(analysis, state)
    inverse = np.linalg.pinv(b.T @ b, rcond=LEAST_CHANGE, hermitian=True) @ b.T
    constants = np.clip(np.sum(inverse * (analysis.force_constants[state] @ inverse), axis=0), 0.0, None)
    motions = analysis.normal_modes[state][:, modes] / np.repeat(np.sqrt(analysis.masses[state]), 3)[:, None]
    changes = b @ motions
    energies = constants[:, None] * changes ** 2
    described = np.linalg.norm(inverse @ changes, axis=0) > 0.1 * np.linalg.norm(motions, axis=0)
    total = energies.sum(axis=0)
    return np.where(described & (total > 0.0), energies / np.where(total > 0.0, total, 1.0), 0.0)


def coordinate_name(analysis, i):
    """A coordinate by its atoms, counted from 1: C1-O3."""
    return '-'.join(f'{analysis.symbols[a]}{a + 1}' for a in analysis.internal_coordinates.atoms[i] if a >= 0)


def _group(analysis, i):
    """The kind of motion of a coordinate and its elements: 'C-O stretch'."""
    ic = analysis.internal_coordinates
    elements = [analysis.symbols[a] for a in ic.atoms[i] if a >= 0]
    if ic.kinds[i] == 'improper dihedral':
        elements = [elements[0], elements[1], *sorted(elements[2:])]
    else:
        elements = min(elements, elements[::-1])
    return f'{"-".join(elements)} {MOTIONS[ic.kinds[i]]}'


def describe(analysis, state, modes, least=0.1, most=3):
    """What modes of a state are, a text for each: the kinds of motion with at least this share, and of the first the
    coordinates with the largest parts, as 'C-O stretch 85 % (C1-O3, C2-O4), C-C stretch 11 %'."""
    if analysis.internal_coordinates is None or len(modes) == 0:
        return ['' for _ in modes]
    groups = [_group(analysis, i) for i in range(len(analysis.internal_coordinates.kinds))]
    texts = []
    for shares in energy_shares(analysis, state, modes).T:
        sums = {}
        for group, share in zip(groups, shares):
            sums[group] = sums.get(group, 0.0) + share
        order = sorted(sums, key=lambda g: -sums[g])[:most]
        parts = [f'{g} {100.0 * sums[g]:.0f} %' for g in order if sums[g] >= least or (g == order[0] and sums[g] > 0.0)]
        if parts:
            members = sorted((i for i, g in enumerate(groups) if g == order[0]), key=lambda i: -shares[i])
            large = [coordinate_name(analysis, i) for i in members if shares[i] > 0.5 * shares[members[0]]]
            parts[0] += f' ({", ".join(large[:MOST_NAMED])}{", ..." if len(large) > MOST_NAMED else ""})'
        texts.append(', '.join(parts) or 'not described by the coordinates')
    return texts
