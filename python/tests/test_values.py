"""The arrays of an analysis hold what the program writes, to every printed digit."""
import os
import re
import subprocess
from pathlib import Path

import numpy as np
import pytest

import vbn

EXAMPLES = Path(__file__).resolve().parents[2] / 'examples'
DATA = Path(os.environ.get('VBN_REAL_DATA', '/nowhere'))
FOLDERS = ['public', 'nwchem', 'oniom', 'formats', 'couplings', 'dipoles', 'xtb/azobenzene', 'xtb/coumarin153']
CASES = sorted(EXAMPLES.glob('*/*.inp')) + sorted(case for f in FOLDERS for case in (DATA / f).rglob('*.inp'))
LESS_PLAIN = 'point_group = t eckart_rot = 1 sort_mode = 2 positive_diag = t d_sign_same_to_cart = t'


def same(printed, value):
    """Whether the text of a number is that of the value: to half a unit of its last digit."""
    printed = printed.strip()
    if '*' in printed or not np.isfinite(value):
        return '*' in printed or printed.lower() == str(float(value)).lower().replace('inf', 'infinity')
    digits = len((printed.lower().split('e')[0] + '.').split('.')[1])
    exponent = int(printed.lower().split('e')[1]) if 'e' in printed.lower() else 0
    return abs(float(printed) - value) <= 0.5000001 * 10.0 ** (exponent - digits)


def check(columns, rows, context):
    """Rows of words against the values of the columns; a column is an array over the rows."""
    assert len(rows) == len(columns[0]), context
    for i, row in enumerate(rows):
        for text, column in zip(row, columns):
            expected = column[i]
            right = text.strip() == expected if isinstance(expected, str) else same(text, expected)
            assert right, (context, i, row, text, expected)


def check_dat(path, a, route):
    text = path.read_text()
    table = text.split('g    e   S(g,e)\n')[1].split('-\n', 1)[1].split('\n----')[0].split('\n')
    widths = (4, 4, 5, 8, 12, 10, 11, 8, 5, 8, 12, 10, 11, 8, 5, 5, 9)
    ends = np.cumsum(widths)
    n3 = len(a.pairs)
    columns = [np.arange(n3) + 1, np.maximum(np.arange(n3) - 5, 0)]
    for k in (0, 1):
        at = a.pairs[:, k]
        columns += [[a.irreps[k][i] for i in at], a.frequencies[k][at], route.displacements[k][at],
                    route.dimensionless_displacements[k][at], route.huang_rhys[k][at],
                    route.reorganisation_energies[k][at]]
    columns += [a.pairs[:, 0] + 1, a.pairs[:, 1] + 1, np.diag(a.paired_duschinsky)]
    check(columns, [[row[e - w:e] for w, e in zip(widths, ends)] for row in table], path.name)
    totals = re.search(r'Total reorganization energy \(cm-1\): *(\S+) *(\S+)', text).groups()
    zpe = re.findall(r'ZPE[12] \(.*: *(\S+) cm-1', text)
    check([route.totals, a.zero_point_energies], list(zip(totals, zpe)), path.name)
    for p, matrix in enumerate((a.paired_duschinsky, a.paired_duschinsky.T), 1):
        block = text.split(f'BEGIN_DUSH_DATA_{p}')[1].split(f'END_DUSH_DATA_{p}')[0]
        words = re.sub(r'MODE +\d+', '', block).split()[1:-1]
        check([matrix.ravel()], [[word] for word in words], path.name)


def check_nac(path, a):
    k = 1 if np.isfinite(a.couplings.along_modes[1]).any() else 0
    at, c = a.pairs[:, k], a.couplings
    ev, seconds = 27.21139617 / 219474.6307, 219474.6307 * 2.4188843265e-17
    columns = [np.arange(len(at)) + 1, np.arange(len(at)) - 5, [a.irreps[k][i] for i in at], a.frequencies[k][at],
               c.along_modes[k][at], c.dimensionless[k][at], c.energies[k][at] / 219474.6307, abs(c.energies[k][at]),
               abs(c.energies[k][at]) * ev, abs(c.linear[k][at]), abs(c.rate_factors[k][at]),
               abs(c.rate_factors[k][at]) / seconds]
    rows = [line.split() for line in path.read_text().split('nacm_jpca(s-1)\n')[1].split('\n') if line.strip()][:-1]
    check(columns, rows, path.name)


def check_reorganisation(path, a):
    ic = a.internal_coordinates
    ends = np.cumsum([12, 22, 11, 11, 11, 13, 11, 11, 11, 16])  # number and kind, atoms, difference, shares
    lines = [line for line in path.read_text().split('\n') if re.match(r' *\d+ +\d  *\|', line)]
    cells = [[line[b:e].replace('|', ' ') for b, e in zip([0, *ends], ends)] for line in lines]
    rows = [row[0].split() + row[1].split() + row[2:] for row in cells]
    order = np.argsort(-ic.shares.sum(axis=0), kind='stable')
    printed = {tuple(row[1:6]) for row in rows}
    kinds = ('bond', 'linear bend', 'bend', 'dihedral', 'improper dihedral', 'linear torsion')
    definitions = [(kinds.index(ic.kinds[i]) + 1, *(ic.atoms[i] + 1)) for i in order]
    assert printed == {tuple(map(str, d)) for d in definitions}
    by_definition = {tuple(map(str, d)): i for d, i in zip(definitions, order)}
    at = [by_definition[tuple(row[1:6])] for row in rows]
    parts = [part[k][at] for k in (0, 1) for part in (ic.diagonal_shares, ic.non_diagonal_shares, ic.shares)]
    check([ic.differences[at], *parts, ic.shares.sum(axis=0)[at]], [row[6:] for row in rows], path.name)


@pytest.mark.parametrize('keys', ['', LESS_PLAIN], ids=['plain', 'keys'])
@pytest.mark.parametrize('case', CASES, ids=lambda case: f'{case.parent.parent.name}/{case.parent.name}/{case.name}')
@pytest.mark.filterwarnings('ignore::vbn.ResultWarning')
def test_every_column_of_every_file(case, keys, tmp_path, monkeypatch):
    for file in case.parent.iterdir():
        (tmp_path / file.name).symlink_to(file)
    monkeypatch.chdir(tmp_path)
    group, end = case.read_text().split('&spectrum')[0].rsplit('/', 1)
    Path('run.inp').write_text(f'{group} proj_reorg = t {keys}\n/{end}')
    before = sorted(os.listdir())
    try:
        a = vbn.analyse_input('run.inp')
    except vbn.Error as stopped:
        a = stopped
    assert sorted(os.listdir()) == before, 'an analysis writes no file'
    run = subprocess.run([os.environ['VBN_BINARY'], 'run.inp'], capture_output=True, text=True)
    if isinstance(a, vbn.Error):
        assert str(a) in run.stderr + run.stdout + Path('vbn.out').read_text()
        assert a.log == Path('vbn.out').read_text()
        return
    assert (a.log, a.printed) == (Path('vbn.out').read_text(), run.stdout)
    check_dat(Path('vbn.cart.dat'), a, a.cartesian)
    if a.internal:
        check_dat(Path('vbn.dint.dat'), a, a.internal)
        check_reorganisation(Path('proj_reorg.dat'), a)
    if Path('vbn.cart.nac').exists():
        check_nac(Path('vbn.cart.nac'), a)
    if Path('vbn.cart.dip').exists():
        rows = [line.split() for line in Path('vbn.cart.dip').read_text().splitlines()]
        modes = np.vstack([a.transition_dipole, a.dipole_derivatives[6:]])
        check([np.r_[0, np.arange(7, len(a.pairs) + 1)], *modes.T], rows, 'dip')
