"""How the package is called: threads, memory, wrong calls, what it keeps and what it writes."""
import csv
import json
import os
import re
import subprocess
import sys
import threading
import time
import warnings
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
import pytest

import vbn

ROOT = Path(__file__).resolve().parents[2]
GLYOXAL, NAPHTHALENE = ROOT / 'examples/glyoxal', ROOT / 'examples/naphthalene'
FORMALDEHYDE = ROOT / 'examples/formaldehyde'
DATA = Path(os.environ.get('VBN_REAL_DATA', '/nowhere'))
pytestmark = pytest.mark.filterwarnings('ignore::vbn.ResultWarning')


def formaldehyde(**keys):
    return vbn.analyse(FORMALDEHYDE / 's0.out', FORMALDEHYDE / 'cation.out', **keys)


def test_keys_by_name_are_those_of_an_input_file():
    by_file, by_name = vbn.analyse_input(FORMALDEHYDE / 'formaldehyde.inp'), formaldehyde(sort_mode=np.int64(1))
    assert by_file.to_dict() == by_name.to_dict()
    heavy = formaldehyde(if_isotope=True, mass_type=[2.5], mass_atom=[-1, 17], if_add_int_coord=True,
                         def_add_int_coord=[[2, 3, 0, 0], np.array([3, 4, 0, 0])], modify_mode='open', symm_tol=1)
    assert heavy.masses[0].tolist() == [12.0, 17.0, 2.5, 2.5]
    assert heavy.internal_coordinates.bonds.sum() == by_file.internal_coordinates.bonds.sum() + 8


def test_results_are_consistent_read_only_and_outlive_their_owner():
    a = vbn.analyse_input(NAPHTHALENE / 'naphthalene.inp')
    assert np.allclose(a.duschinsky, a.normal_modes[0].T @ a.normal_modes[1], atol=1e-12)
    weights = np.repeat(a.masses[0] * 1822.88853, 3) ** -0.5
    squares = np.linalg.eigvalsh(a.force_constants[1] * np.outer(weights, weights))
    assert np.allclose(np.sqrt(abs(squares)) * 219474.6307, abs(a.frequencies[1]), atol=0.01)
    shift = (a.geometries[1] - a.geometries[0]).ravel() / 0.529177249 / weights
    assert np.allclose(a.normal_modes[0].T @ shift, a.displacements[0], atol=1e-9)
    frequencies, first = a.frequencies, a.frequencies[0, 6]
    with pytest.raises(ValueError):
        frequencies[0, 6] = 0.0
    del a
    assert frequencies[0, 6] == first


def test_json_holds_every_number_in_full_precision_and_the_manual_every_name(tmp_path):
    a = vbn.analyse_input(GLYOXAL / 'glyoxal.inp')
    a.to_json(tmp_path / 'a.json')
    read = json.loads((tmp_path / 'a.json').read_text())
    assert np.array_equal(read['duschinsky'], a.duschinsky) and read['vbn'] == vbn.__version__
    assert read['couplings']['energies'][1][0] is None, 'not a number'
    assert os.listdir(tmp_path) == ['a.json']
    pages = (ROOT / 'docs/python.md').read_text(), (ROOT / 'python/vbn/__init__.pyi').read_text()
    for kind in (vbn.Analysis, vbn.Route, vbn.InternalCoordinates, vbn.Couplings):
        names = [n for n, value in vars(kind).items() if isinstance(value, property)]
        assert all(f'`{n}`' in pages[0] and f'def {n}(self)' in pages[1] for n in names), kind
        assert all(vars(kind)[n].__doc__ for n in names)
    given = set(re.findall(r'^    (\w+): .* = ', pages[1].split('def analyse(')[1], re.M))
    assert given == {n for n in vbn.keys() if n != 'ffreq' and not n.startswith('n_')}


S0, S1 = FORMALDEHYDE / 's0.out', FORMALDEHYDE / 'cation.out'


@pytest.mark.parametrize('arguments, keys, kind, words', [
    ((S0, S1), {'sort_mod': 1}, TypeError, "nearest is 'sort_mode'"),
    ((S0, S1), {'xyzzy': 1}, TypeError, 'no key'),
    ((S0, S1), {'ffreq': ['a', 'b']}, TypeError, 'first two arguments'),
    ((S0, S1), {'sort_mode': True}, TypeError, 'takes integer values, not bool'),
    ((S0, S1), {'sort_mode': 1.5}, TypeError, 'takes integer values, not float'),
    ((S0, S1), {'point_group': 1}, TypeError, 'takes logical values'),
    ((S0, S1), {'mass_type': 2.0}, TypeError, 'takes a list'),
    ((S0, S1), {'mass_type': [None]}, TypeError, 'takes real values, not NoneType'),
    (([S0, S1], S1), {}, TypeError, 'must be a path, not list'),
    ((np.array(['a', 'b']), S1), {}, TypeError, 'must be a path, not ndarray'),
    ((S0, S1), {'mass_type': [1.0] * 1501}, vbn.Error, 'outside the array'),
    ((S0, S1), {'sort_mode': 2**40}, vbn.Error, 'integer from'),
    ((S0, S1), {'symm_tol': float('nan')}, vbn.Error, ''),
    ((S0, 'nobody\n.out'), {}, vbn.Error, 'line end'),
    ((S0, b'nobody\xff.out'), {}, vbn.Error, 'nobody\udcff.out'),
    ((S0, FORMALDEHYDE), {}, vbn.Error, 'folder'),
    ((S0, GLYOXAL / 's0.dat'), {}, vbn.Error, 'different numbers of atoms'),
    ((S0, S1), {'modify_mode': 'shut'}, vbn.Error, 'none, open, close'),
    ((S0, S1), {'gcut': 1e9}, vbn.Error, 'nv is incorrect'),
    ((S0, GLYOXAL / 'nac_molpro.out'), {}, vbn.Error, ''),
])
def test_wrong_calls_raise_and_write_nothing(arguments, keys, kind, words, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    with pytest.raises(kind, match=re.escape(words)) as raised:
        vbn.analyse(*arguments, **keys)
    assert os.listdir() == [] and str(raised.value)
    assert kind is TypeError or (raised.value.file and raised.value.expected) or words == 'line end'


def test_error_names_file_line_and_what_was_expected(tmp_path):
    broken = tmp_path / 'broken.dat'
    broken.write_text((GLYOXAL / 's0.dat').read_text().replace('.', 'x', 40).replace('x', '.', 10))
    with pytest.raises(vbn.Error) as raised:
        vbn.analyse(broken, GLYOXAL / 't1.dat')
    assert raised.value.file == str(broken) and raised.value.line > 1 and raised.value.expected
    no_force_constants = tmp_path / 'cut.out'
    no_force_constants.write_text(re.sub('(?i)hessian', 'x', S0.read_text()))
    with pytest.raises(vbn.Error) as raised:
        vbn.analyse(S0, no_force_constants)
    assert raised.value.file == str(no_force_constants) and raised.value.expected


def test_warnings_are_python_warnings():
    with warnings.catch_warnings(record=True) as seen:
        warnings.simplefilter('always')
        a = vbn.analyse(S1, GLYOXAL.parent / 'formaldehyde/s0.out', set_cart=True, symm_tol=50.0)
    assert [str(w.message) for w in seen] == a.warnings != [] and a.internal is None
    assert {w.filename for w in seen} == {__file__}


def bits(a):
    return b''.join(getattr(a, n).tobytes() for n in ('frequencies', 'duschinsky', 'huang_rhys', 'force_constants')) + \
        a.internal.displacements.tobytes() + a.internal_coordinates.shares.tobytes()


def test_threads_give_the_same_bits_as_one_after_the_other():
    def conformer(i):
        # Another isotope makes another calculation of each.
        return vbn.analyse(NAPHTHALENE / 'neutral.dat', NAPHTHALENE / 'cation.dat', if_isotope=True,
                           mass_type=[1.0 + 0.25 * i])

    alone = [bits(conformer(i)) for i in range(8)]
    with ThreadPoolExecutor(8) as pool:
        for _ in range(3):
            assert list(map(bits, pool.map(conformer, range(8)))) == alone
    assert len(set(alone)) == 8


def test_other_threads_run_while_an_analysis_computes():
    large = DATA / 'xtb/coumarin153/numforce'
    if not large.exists():
        pytest.skip('VBN_REAL_DATA is not set')
    thread = threading.Thread(target=vbn.analyse_input, args=(large / 'coumarin153.inp',))
    ticks, start = 0, time.perf_counter()
    thread.start()
    while thread.is_alive():
        ticks += 1
        time.sleep(0.001)
    assert ticks > 0.2 * (time.perf_counter() - start) / 0.001, 'the interpreter lock is held'


def test_a_hundred_analyses_leave_the_memory_as_it_is(tmp_path):
    def resident():
        return int(Path('/proc/self/statm').read_text().split()[1]) * os.sysconf('SC_PAGE_SIZE')

    def work(times):
        for _ in range(times):
            vbn.analyse_input(GLYOXAL / 'glyoxal.inp').to_json(tmp_path / 'a.json')
            with pytest.raises(vbn.Error):
                vbn.analyse(S0, GLYOXAL / 's0.dat')
        return resident()

    before = work(30)
    assert work(100) - before < 2**20, 'bytes more after a hundred analyses'


def test_the_example_makes_its_table_and_its_figure(tmp_path):
    pytest.importorskip('matplotlib')
    subprocess.run([sys.executable, GLYOXAL / 'table_and_figure.py', GLYOXAL / 's0.dat', GLYOXAL / 't1.dat'],
                   cwd=tmp_path, check=True, capture_output=True)
    a = vbn.analyse(GLYOXAL / 's0.dat', GLYOXAL / 't1.dat')
    with open(tmp_path / 'strongest_modes.csv', newline='', encoding='utf-8') as file:
        first = list(csv.DictReader(file))[0]
    mode = int(np.argmax(a.reorganisation_energies[1]))
    assert (int(first['mode of state 2']), first['Huang-Rhys factor']) == (mode + 1, f'{a.huang_rhys[1][mode]:.4f}')
    assert set(first['bonds that change most'].split(', ')) == {'C1-O3', 'C2-O4', 'C1-C2'}
    assert '</svg>' in (tmp_path / 'strongest_modes.svg').read_text()


def test_the_lines_of_the_manual_run(tmp_path, monkeypatch):
    pytest.importorskip('matplotlib')
    monkeypatch.chdir(tmp_path)
    for name, source in {'s0.out': 's0.dat', 's1.out': 't1.dat', 'nac.out': 'nac_molpro.out'}.items():
        Path(name).write_bytes((GLYOXAL / source).read_bytes())
    names, run = {}, 0
    for block in re.findall(r'(?:^ {4}.*\n)+', (ROOT / 'docs/python.md').read_text(), re.M):
        if 'vbn.' in block:
            exec(re.sub('^ {4}', '', block, flags=re.M), names)
            run += 1
    assert run >= 3 and Path('s0_s1.json').stat().st_size > 1000
