"""The workflow of examples/ensemble over conformers whose frequencies and Huang-Rhys factors are known."""
import csv
import json
import shutil
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest

import vbn

pytest.importorskip('scipy')
EXAMPLES = Path(__file__).resolve().parents[2] / 'examples'
ENSEMBLE, GLYOXAL = EXAMPLES / 'ensemble', EXAMPLES / 'glyoxal'
FILES = GLYOXAL / 's0.dat', GLYOXAL / 't1.dat'


def snakemake(folder, *arguments):
    return subprocess.run(['snakemake', '-s', ENSEMBLE / 'Snakefile', '--profile', ENSEMBLE / 'profiles/local', '--directory',
                           folder, *arguments], capture_output=True, text=True)


def rows(path):
    with open(path, newline='') as file:
        return list(csv.DictReader(file))


@pytest.mark.skipif(shutil.which('snakemake') is None, reason='snakemake is not there')
def test_the_workflow_follows_modes_and_survives_failures(tmp_path):
    conformers = tmp_path / 'conformers'
    subprocess.run([sys.executable, ENSEMBLE / 'make_conformers.py', *FILES, conformers], check=True)
    (conformers / 'c003/t1.dat').unlink()
    (conformers / 'c007/s0.dat').write_text((conformers / 'c007/s0.dat').read_text()[:3000])
    for name, source in (('s0', 'neutral'), ('t1', 'cation')):
        shutil.copy(EXAMPLES / f'naphthalene/{source}.dat', conformers / f'c009/{name}.dat')
    done = snakemake(tmp_path)
    assert done.returncode == 0, done.stderr[-2000:]
    failed = {row['conformer']: row['reason'] for row in rows(tmp_path / 'results/failed.csv')}
    assert list(failed) == ['c003', 'c007', 'c009']
    assert all(part in why for part, why in zip(('No such file', 'ends before', 'atoms'), failed.values()))

    a = vbn.analyse(*FILES)
    factors = json.loads((conformers / 'factors.json').read_text())
    scale = {name: np.sqrt(each['force_constants']) for name, each in factors.items()}
    # The modes of the reference, c001, are in the order of its own frequencies.
    known = [np.argsort(np.where(np.arange(18) < 6, 0.0, a.frequencies[k] * scale['c001'][k]), kind='stable') for k in (0, 1)]
    table = rows(tmp_path / 'results/table.csv')
    assert len(table) == 17 * 2 * 12 and any(row['mode'] != row['own_mode'] for row in table)
    # Another displacement rotates the states against each other by a little.
    for row in table:
        k = int(row['state']) - 1
        i = known[k][int(row['mode']) - 1]
        f, t = scale[row['conformer']][k][i], factors[row['conformer']]['displacement']
        for name, value in (('overlap', 1.0), ('frequency', a.frequencies[k][i] * f),
                            ('huang_rhys', a.huang_rhys[k][i] * t ** 2 * f),
                            ('reorganisation_energy', a.reorganisation_energies[k][i] * (t * f) ** 2)):
            assert float(row[name]) == pytest.approx(value, rel=1e-3, abs=2e-5), (row, name)
    for row in rows(tmp_path / 'results/modes.csv'):
        values = [float(r['frequency']) for r in table if (r['state'], r['mode']) == (row['state'], row['mode'])]
        assert row['conformers'] == '17' and float(row['frequency_mean']) == pytest.approx(np.mean(values))
        assert float(row['frequency_standard_deviation']) == pytest.approx(np.std(values, ddof=1), abs=1e-6)


@pytest.mark.skipif(shutil.which('snakemake') is None, reason='snakemake is not there')
def test_jobs_without_a_result_are_listed(tmp_path):
    for name in ('a b', "it's"):
        (tmp_path / 'pairs').mkdir(exist_ok=True)
        for state, source in enumerate(FILES):
            shutil.copy(source, tmp_path / f'pairs/{name}.s{state}')
    settings = ['--config', 'folder=pairs', 'state1={conformer}.s0', 'state2={conformer}.s1']
    assert snakemake(tmp_path, *settings, 'keys={"sort_modes": 1}').returncode != 0
    assert [row['expected'] for row in rows(tmp_path / 'results/failed.csv')] == \
        ["TypeError: analyse() has no key 'sort_modes'; the nearest is 'sort_mode'"] * 2
    assert snakemake(tmp_path, *settings).returncode == 0
    assert rows(tmp_path / 'results/failed.csv') == [] and len(rows(tmp_path / 'results/table.csv')) == 2 * 24
