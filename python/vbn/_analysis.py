"""The results of an analysis as arrays, and the calls that make them."""
import inspect
import json
import math
import numbers
import os
import threading
import warnings
from collections import Counter

import numpy as np

from vbn import _core
from vbn._viewer_files import geometries_text, modes_text, vibrations

KINDS = ('bond', 'linear bend', 'bend', 'dihedral', 'improper dihedral', 'linear torsion')


class Error(Exception):
    """What ends an analysis: a file or key with a fault, or calculations that do not belong together.

    The text is what the program vbn prints. `file` is the file with the fault, `line` its line, from 1, and `expected`
    what should be there or what to do; `file` and `line` are None where there is none. `log` is the log up to the
    stop."""

    def __init__(self, message, file=None, line=None, expected=None, log=''):
        super().__init__(message)
        self.file, self.line, self.expected, self.log = file, line, expected, log

    def __reduce__(self):
        return Error, (str(self), self.file, self.line, self.expected, self.log)


class ResultWarning(UserWarning):
    """A warning of the analysis about a result that may not be reliable."""


def _attribute(name, doc):
    return property(lambda self: self._values[name], doc=inspect.cleandoc(doc))


class _Values:
    """Values by name, read as attributes."""

    __slots__ = ('_values',)

    def __init__(self, values):
        for value in values.values():
            if isinstance(value, np.ndarray):
                value.flags.writeable = False
        self._values = values

    def to_dict(self):
        """All values as dictionaries, lists, texts and numbers in full precision, as docs/python.md describes them."""
        return {name: _plain(value) for name, value in self._values.items()}


def _plain(value):
    if isinstance(value, _Values):
        return value.to_dict()
    if isinstance(value, np.ndarray):
        return value.tolist()
    if isinstance(value, (list, tuple)):
        return [_plain(each) for each in value]
    return value


class Route(_Values):
    """What one route, Cartesian or through internal coordinates, gives for each mode.

    With Q the mass-weighted normal coordinates of each state, counted from its own minimum,

        Q1 = S Q2 + D1        Q2 = S^T Q1 + D2

    First index: state, 0 or 1; second: mode of this state. What has index 0 describes the surface of state 1 (emission
    for a ground state), index 1 that of state 2 (absorption). A sign of a displacement goes with the sign of its mode,
    which is arbitrary."""

    __slots__ = ()
    displacements = _attribute('displacements', """D, shape (2, 3N), electron mass^(1/2) bohr: D[0] from the minimum of
        state 1 to that of state 2 along the modes of state 1, D[1] back along those of state 2.""")
    dimensionless_displacements = _attribute('dimensionless_displacements', """delta, shape (2, 3N), dimensionless:
        D times the root of the frequency in atomic units; signs as D.""")
    huang_rhys = _attribute('huang_rhys', """Huang-Rhys factors, shape (2, 3N), dimensionless: delta^2 / 2. With the
        key d_sign_same_to_cart those of the internal route carry the sign of delta.""")
    reorganisation_energies = _attribute('reorganisation_energies', """Shape (2, 3N), cm-1: Huang-Rhys factor times
        frequency; negative for an imaginary mode.""")
    totals = _attribute('totals', """Sums of the reorganisation energies over all modes, shape (2,), cm-1.""")


def _of_cartesian_route(name):
    return property(lambda self: getattr(self.cartesian, name),
                    doc=f'{getattr(Route, name).__doc__}\n\nThose of `cartesian`.')


class InternalCoordinates(_Values):
    """The redundant internal coordinates of the molecule, bonds first, as state 1 has them.

    Lengths are in angstrom, angles in radian; n is the number of coordinates."""

    __slots__ = ()
    kinds = _attribute('kinds', """The kind of each, a list of n texts: 'bond', 'linear bend', 'bend', 'dihedral',
        'improper dihedral' or 'linear torsion'.""")
    atoms = _attribute('atoms', """Shape (n, 4): the atoms that define each, from 0; -1 for unused places. The second
        atom of a bend is its centre.""")
    values = _attribute('values', """Shape (2, n), angstrom or radian: the value in each state.""")
    differences = _attribute('differences', """Shape (n,), angstrom or radian: state 2 less state 1, angles between
        -pi and pi.""")
    shares = _attribute('shares', """Shape (2, n), cm-1: the share of each coordinate in the reorganisation energy of
        each state. They add up to the energy of the vibrations and may be negative.""")
    diagonal_shares = _attribute('diagonal_shares', """Shape (2, n), cm-1: the part of `shares` of each coordinate
        alone.""")
    non_diagonal_shares = _attribute('non_diagonal_shares', """Shape (2, n), cm-1: the part of `shares` that comes
        from its coupling to the other coordinates.""")
    bonds = _attribute('bonds', """Shape (2, N, N), true where two atoms are bonded in a state.""")


class Couplings(_Values):
    """Non-adiabatic couplings <2|d/dR|1> of the file `fnacme`.

    Arrays of shape (2, 3N) go by state and mode of this state; a row is NaN for a state whose geometry is not that of
    the file. A sign goes with the sign of the mode and with that of the two wave functions."""

    __slots__ = ()
    state = _attribute('state', "The state, 0 or 1, whose geometry the couplings belong to.")
    vertical_energy = _attribute('vertical_energy', "Energy difference of the states at the geometry of the file, cm-1.")
    vectors = _attribute('vectors', """Shape (N, 3), 1/bohr: the coupling vector of each atom in the frame of
        `geometries`.""")
    along_modes_of_1 = _attribute('along_modes_of_1', """Shape (3N,), 1/(electron mass^(1/2) bohr): the coupling along
        the modes of state 1, whichever state the couplings belong to.""")
    along_modes = _attribute('along_modes', """Shape (2, 3N), 1/(electron mass^(1/2) bohr): the coupling along the mass-
        weighted modes of its state (`nacm_before(au)` of vbn.cart.nac).""")
    dimensionless = _attribute('dimensionless', """Shape (2, 3N): the coupling along the dimensionless coordinate of
        each mode (`nacm_before(1)`); not finite for a mode of zero frequency, as the next three.""")
    energies = _attribute('energies', "Shape (2, 3N), cm-1: `dimensionless` times the energy difference (`nacm_after`).")
    linear = _attribute('linear', "Shape (2, 3N), cm-1: linear coupling constants (`nacm_lin`).")
    rate_factors = _attribute('rate_factors', "Shape (2, 3N), cm-1: factors of internal conversion (`nacm_jpca`).")


class Analysis(_Values):
    """Two states of a molecule of N atoms, and what relates them.

    First index of arrays of both states: 0 for state 1, 1 for state 2. Each state has 3N modes by increasing frequency,
    imaginary ones first as negative numbers; modes 0 to 5 count as translations and rotations. Arrays are read-only
    copies that belong to the analysis; `array.copy()` can be changed."""

    __slots__ = ()
    files = _attribute('files', "The two frequency files, as a list of names.")
    programs = _attribute('programs', "The program that wrote each, a list of two texts, as 'NWCHEM'.")
    program_versions = _attribute('program_versions', "The version of each program, a list of two texts.")
    methods = _attribute('methods', """The method of each calculation as its file prints it, a list of two
        texts; '' where it does not.""")
    basis_sets = _attribute('basis_sets', "The basis set of each, in the same way.")
    charges = _attribute('charges', "The charge of each, a list of two integers; None where the file does not print it.")
    multiplicities = _attribute('multiplicities', "The spin multiplicity of each, in the same way.")
    symbols = _attribute('symbols', "Element symbols of the atoms, a list of N texts.")
    atomic_numbers = _attribute('atomic_numbers', "Shape (N,).")
    masses = _attribute('masses', "Shape (2, N), amu.")
    geometries = _attribute('geometries', """Shape (2, N, 3), angstrom: the minima in the frame of the analysis (centre
        of mass at the origin, principal axes of inertia; state 1 rotated onto state 2 unless eckart_rot says other).""")
    force_constants = _attribute('force_constants', """Shape (2, 3N, 3N), hartree/bohr^2, coordinates x, y, z of atom
        after atom, in the frame of `geometries`, without translations and rotations.""")
    frequencies = _attribute('frequencies', "Shape (2, 3N), cm-1; imaginary frequencies are negative.")
    raw_frequencies = _attribute('raw_frequencies', """Shape (2, 3N), cm-1: those of the force constants as read, before
        translations and rotations are removed.""")
    zero_point_energies = _attribute('zero_point_energies', """Shape (2,), cm-1: half the sum of the magnitudes of the
        frequencies of modes 6 on.""")
    normal_modes = _attribute('normal_modes', """Shape (2, 3N, 3N): normal_modes[k][:, i] is mode i of state k, an
        eigenvector of the mass-weighted force constants, of length 1. Its sign is arbitrary, and that of the
        tables.""")
    irreps = _attribute('irreps', """Two lists of 3N texts: the representation of each mode; 'A' without the key
        point_group.""")
    point_groups = _attribute('point_groups', "The point group of each state, a list of two texts.")
    duschinsky = _attribute('duschinsky', """S, shape (3N, 3N), dimensionless: duschinsky[i, j] is the overlap of mode i
        of state 1 with mode j of state 2. Modes are in the order of their frequencies; `paired_duschinsky` has them in
        the order of the pairs.""")
    pairs = _attribute('pairs', """Shape (3N, 2): row by row the mode of state 1 and that of state 2 which are side by
        side in the tables. The key sort_mode decides; without it mode i is beside mode i.""")
    cartesian = _attribute('cartesian', "The `Route` from the difference of the Cartesian coordinates.")
    internal = _attribute('internal', """The `Route` from the difference of the internal coordinates, which stays
        meaningful where groups rotate far; None with the key set_cart.""")
    internal_coordinates = _attribute('internal_coordinates', "The `InternalCoordinates`; None with the key set_cart.")
    couplings = _attribute('couplings', "The `Couplings`; None without the key fnacme.")
    dipole_state = _attribute('dipole_state', "The state, 0 or 1, whose geometry `ftdipd` belongs to; None without it.")
    transition_dipole = _attribute('transition_dipole', """Shape (3,), e bohr: the transition dipole at the geometry of
        the file `ftdipd`; None without it.""")
    dipole_derivatives = _attribute('dipole_derivatives', """Shape (3N, 3), e/electron mass^(1/2): the derivative of the
        transition dipole along each mode of state 1, components x, y, z; None without the key ftdipd.""")
    rotated_dipole_derivatives = _attribute('rotated_dipole_derivatives', """The same with the displacements in the frame
        of `geometries` too, whatever that of the file is; what `spectrum` takes.""")
    warnings = _attribute('warnings', "The warnings, a list of texts.")
    printed = _attribute('printed', "What vbn prints to standard output for these files.")
    log = _attribute('log', "The log, what vbn writes to vbn.out.")

    displacements = _of_cartesian_route('displacements')
    dimensionless_displacements = _of_cartesian_route('dimensionless_displacements')
    huang_rhys = _of_cartesian_route('huang_rhys')
    reorganisation_energies = _of_cartesian_route('reorganisation_energies')

    @property
    def vibrations(self):
        """The modes of each state that are vibrations, two arrays of numbers from 0: all but the six (five of a linear
        molecule) nearest to zero."""
        return [vibrations(self, state) for state in (0, 1)]

    @property
    def paired_duschinsky(self):
        """S with rows and columns in the order of the pairs, shape (3N, 3N), a new array."""
        return self.duschinsky[np.ix_(self.pairs[:, 0], self.pairs[:, 1])]

    @property
    def formula(self):
        """The formula, as 'C2H2O2': carbon and hydrogen first, then by letter."""
        count = Counter(self.symbols)
        order = sorted(count, key=lambda s: (s != 'C', s != 'H', s) if 'C' in count else (True, True, s))
        return ''.join(s + (str(count[s]) if count[s] > 1 else '') for s in order)

    def to_json(self, path):
        """Writes `to_dict()` to a JSON file; a number that is not finite becomes null. A file of this name is replaced
        when the new one is complete."""
        values = _finite({'vbn': _core.version, **self.to_dict()})
        lines = (f'{json.dumps(name)}: {json.dumps(value, allow_nan=False)}' for name, value in values.items())
        replace_file(path, '{\n' + ',\n'.join(lines) + '\n}\n')

    def write_modes(self, path, state=0, modes=None):
        """Writes the true motions of the vibrations of a state for a molecule viewer: the displacement of each atom is
        the eigenvector over the root of the mass, each mode of length 1.

        The ending of the path decides: .xyz or .extxyz extended XYZ, a frame for each mode (ASE, OVITO, Jmol); .cjson
        Chemical JSON (Avogadro 2); .molden Molden. modes: a list of modes from 0; without it all vibrations."""
        replace_file(path, modes_text(self, path, state, modes))

    def write_geometries(self, path):
        """Writes the minima of both states, with their element symbols, as the two frames of an XYZ file."""
        replace_file(path, geometries_text(self))

    def __repr__(self):
        lines = [f'<vbn.Analysis of {self.formula}: {self.files[0]} and {self.files[1]}, {len(self.symbols)} atoms, '
                 f'{"/".join(self.point_groups)}>',
                 ' mode1 mode2   freq1   freq2      S     HR1      lam1     HR2      lam2  (Cartesian, cm-1)']
        lam = self.reorganisation_energies
        of_pair = np.abs(lam[0][self.pairs[:, 0]]) + np.abs(lam[1][self.pairs[:, 1]])
        for row in sorted(np.argsort(-of_pair, kind='stable')[:6]):
            i, j = self.pairs[row]
            lines.append(f'{i:6d}{j:6d}{self.frequencies[0][i]:8.1f}{self.frequencies[1][j]:8.1f}'
                         f'{self.duschinsky[i, j]:7.3f}{self.huang_rhys[0][i]:8.3f}{lam[0][i]:10.1f}'
                         f'{self.huang_rhys[1][j]:8.3f}{lam[1][j]:10.1f}')
        routes = (('Cartesian', self.cartesian), ('internal', self.internal))
        lines += [f' total, {name + ":":10}{route.totals[0]:40.1f}{route.totals[1]:18.1f}'
                  for name, route in routes if route is not None]
        return '\n'.join(lines)


def replace_file(path, content):
    """Writes a text or bytes; a file of this name is replaced when the new one is complete."""
    part = f'{os.fspath(path)}.{os.getpid()}.{threading.get_ident()}.part'
    try:
        with open(part, 'xb') as file:
            file.write(content if isinstance(content, bytes) else content.encode('utf-8', 'surrogateescape'))
        os.replace(part, path)
    except BaseException:
        if os.path.exists(part):
            os.unlink(part)
        raise


def _finite(value):
    if isinstance(value, dict):
        return {name: _finite(each) for name, each in value.items()}
    if isinstance(value, list):
        return [_finite(each) for each in value]
    return None if isinstance(value, float) and not math.isfinite(value) else value


def analyse(state1, state2, **keys):
    """Relates two frequency calculations of one molecule and returns an `Analysis`.

    state1, state2: the frequency files, those that the keys ffreq(1) and ffreq(2) name; state 1 is the one whose modes
    are the rows of the Duschinsky matrix, usually the ground state. **keys: keys of the input group by their names, as
    sort_mode=1, point_group=True, fnacme='nac.out', mass_type=[2.014] (see `vbn.keys()` and docs/input.md). A list of
    lists gives the entries of a list with two indices: def_add_int_coord=[[1, 2, 0, 0], [1, 2, 3, 0]]. Atoms count from
    1 in keys. The shares of internal coordinates are computed without proj_reorg.

    Raises `TypeError` for a name that is no key and for values of a wrong type, and `Error` for what is wrong with the
    files, with `file`, `line` and `expected`."""
    group = ['&vbn']
    for name, value in (('ffreq(1)', state1), ('ffreq(2)', state2)):
        group.append(f' {name} = {_text(_path(name, value))}')
    for name, value in keys.items():
        group += _assignments(name, value)
    return _analysis('the keys of vbn.analyse', '\n'.join(group) + '\n/\n', '')


def analyse_input(path, folder=None):
    """The analysis of an input file of the program vbn, as an `Analysis`.

    Relative names in the file are those of files in `folder`; without it, of files beside the input file."""
    name = _path('path', path)
    return _analysis(name, None, os.path.dirname(name) if folder is None else _path('folder', folder))


def _analysis(name, group, folder):
    raw = _core.analyse(os.fsencode(name), None if group is None else os.fsencode(group), os.fsencode(folder))
    for text in raw['warnings']:
        warnings.warn(text, ResultWarning, stacklevel=3)
    end = raw.get('end')
    if end is None:
        return _analysis_of(raw)
    expected = end['expected'] or (raw['warnings'] or ['what docs/messages.md says of this message'])[-1]
    # Some stops have their reason in the log alone.
    message = end['message'].strip() or '\n'.join(raw['log'].strip().split('\n')[-3:])
    raise Error(message, end['file'] or None, end['line'] or None, expected, raw['log'])


def _path(name, value):
    path = os.fspath(value) if isinstance(value, (str, bytes, os.PathLike)) else None
    if path is None:
        raise TypeError(f'{name} must be a path, not {type(value).__name__}')
    return os.fsdecode(path)


def _text(value):
    if '\n' in value or '\r' in value or '\0' in value:
        raise Error(f'a text with a line end or a zero byte: {value!r}', expected='a text of one line')
    return "'" + value.replace("'", "''") + "'"


def _assignments(name, value):
    """The lines of the input group that give the key its value."""
    known = _core.keys()
    if name in ('ffreq', 'n_mode_block', 'n_dush_block', 'n_add_int_coord', 'n_del_int_coord'):
        raise TypeError(f'the key {name} is not given by name: '
                        + ('the files are the first two arguments' if name == 'ffreq' else 'it is counted'))
    if name not in known:
        nearest = _core.nearest_key(name)
        raise TypeError(f'analyse() has no key {name!r}' + (f'; the nearest is {nearest!r}' if nearest else
                                                            '; vbn.keys() lists them'))
    kind, extent1, extent2 = known[name]
    if extent1 == 0:
        return [f' {name} = {_scalar(name, kind, value)}']
    entries = _sequence(name, value)
    if extent2 == 0:
        return [f' {name}({i}) = {_scalar(name, kind, each)}' for i, each in enumerate(entries, 1)]
    return [f' {name}({i},{j}) = {_scalar(name, kind, each)}'
            for j, entry in enumerate(entries, 1) for i, each in enumerate(_sequence(name, entry), 1)]


def _sequence(name, value):
    if isinstance(value, (str, bytes)) or not isinstance(value, (list, tuple, np.ndarray)):
        raise TypeError(f'the key {name} takes a list, not {type(value).__name__}')
    return value


def _scalar(name, kind, value):
    if isinstance(value, np.generic):
        value = value.item()
    wanted = {'logical': bool, 'integer': numbers.Integral, 'real': numbers.Real, 'text': (str, os.PathLike)}[kind]
    if not isinstance(value, wanted) or (kind != 'logical' and isinstance(value, bool)):
        raise TypeError(f'the key {name} takes {kind} values, not {type(value).__name__}')
    if kind == 'text':
        return _text(os.fsdecode(value))
    return str(value).lower() if kind == 'logical' else repr(float(value)) if kind == 'real' else str(int(value))


def _analysis_of(raw):
    states = raw['states']

    def both(name):
        return np.array([state[name] for state in states])

    def route(name):
        parts = ('displacements', 'dimensionless_displacements', 'huang_rhys', 'reorganisation_energies')
        values = {part: np.array([state[name][part] for state in states]) for part in parts}
        return Route(values | {'totals': np.array([state[name]['total'] for state in states])})

    values = {'files': [s['file'] for s in states], 'programs': [s['program'] for s in states],
              'program_versions': [s['version'] for s in states],
              'methods': [s['method'] for s in states], 'basis_sets': [s['basis_set'] for s in states],
              'charges': [s['charge'] for s in states], 'multiplicities': [s['multiplicity'] for s in states],
              'symbols': raw['symbols'],
              'atomic_numbers': raw['atomic_numbers'], 'masses': both('masses'), 'geometries': both('geometry'),
              'force_constants': both('force_constants'), 'frequencies': both('frequencies'),
              'raw_frequencies': both('raw_frequencies'), 'zero_point_energies': both('zero_point_energy'),
              'normal_modes': both('normal_modes'), 'irreps': [s['irreps'] for s in states],
              'point_groups': [s['point_group'] for s in states], 'duschinsky': raw['duschinsky'],
              'pairs': np.stack([s['order'] for s in states], axis=1), 'cartesian': route('cartesian'),
              'internal': None, 'internal_coordinates': None, 'couplings': _couplings_of(raw),
              'dipole_state': raw.get('dipole_state'), 'transition_dipole': raw.get('transition_dipole'),
              'dipole_derivatives': raw.get('dipole_derivatives'),
              'rotated_dipole_derivatives': raw.get('rotated_dipole_derivatives'), 'warnings': raw['warnings'],
              'printed': raw['printed'], 'log': raw['log']}
    if 'kinds' in raw:
        values['internal'] = route('internal')
        values['internal_coordinates'] = InternalCoordinates(
            {'kinds': [KINDS[kind - 1] for kind in raw['kinds']], 'atoms': raw['atoms'], 'values': both('values'),
             'differences': raw['differences'], 'shares': both('shares'), 'diagonal_shares': both('diagonal_shares'),
             'non_diagonal_shares': both('non_diagonal_shares'), 'bonds': both('bonds')})
    return Analysis(values)


def _couplings_of(raw):
    if 'coupling_state' not in raw:
        return None
    parts = ('along_modes', 'dimensionless', 'energies', 'linear', 'rate_factors')
    n3 = len(raw['couplings_along_modes_of_1'])
    rows = {part: np.array([s['couplings'][part] if 'couplings' in s else np.full(n3, np.nan) for s in raw['states']])
            for part in parts}
    return Couplings({'state': raw['coupling_state'], 'vertical_energy': raw['vertical_energy'],
                      'vectors': raw['coupling_vectors'], 'along_modes_of_1': raw['couplings_along_modes_of_1'], **rows})
