"""Tables of an ensemble: every mode of every conformer beside the mode of the reference that it resembles most, means and
spreads by mode, and what failed."""
import csv
import os
import sys

import numpy as np
from scipy.optimize import linear_sum_assignment

QUANTITIES = {'frequency': 'frequencies', 'huang_rhys': 'huang_rhys', 'reorganisation_energy': 'energies',
              'internal_huang_rhys': 'internal_huang_rhys', 'internal_reorganisation_energy': 'internal_energies'}
REPEAT = 'it was killed or did not start: run snakemake again'
STATISTICS = {'mean': np.mean, 'standard_deviation': lambda v: np.std(v, ddof=1) if len(v) > 1 else np.nan,
              'least': np.min, 'largest': np.max}


def load(path):
    """The result of a conformer as a dictionary; one with the entry `failure` where there is none."""
    try:
        with np.load(path) as file:
            return dict(file)
    except (OSError, ValueError, EOFError):
        log = os.path.splitext(path)[0] + '.log'
        last = open(log, errors='replace').read().strip().split('\n')[-1] if os.path.exists(log) else ''
        return {'failure': ['the job left no result', log if last else '', '', last or REPEAT], 'warnings': []}


def overlaps(result, reference, state):
    """The overlaps of the vibrations of a conformer (rows) with those of the reference, its geometry rotated onto that of
    the reference."""
    masses = reference['masses'][state][:, None]
    x, y = (r['geometries'][state] - np.average(r['geometries'][state], axis=0, weights=masses[:, 0])
            for r in (result, reference))
    u, _, vt = np.linalg.svd((masses * x).T @ y)
    rotation = u @ np.diag([1.0, 1.0, np.sign(np.linalg.det(u @ vt))]) @ vt
    modes = [r['normal_modes'][state][:, r[f'vibrations{state + 1}']] for r in (result, reference)]
    rotated = np.einsum('aim,ij->ajm', modes[0].reshape(len(x), 3, -1), rotation).reshape(modes[0].shape)
    return rotated.T @ modes[1]


def rows_of(name, result, reference):
    """The rows of the table of a conformer, one for each mode of the reference."""
    if result['symbols'].tolist() != reference['symbols'].tolist():
        raise ValueError('its atoms are not those of the reference')
    rows = []
    for state in (0, 1):
        matrix = overlaps(result, reference, state)
        if matrix.shape[0] != matrix.shape[1]:
            raise ValueError('it has another number of vibrations than the reference')
        at, of_reference = result[f'vibrations{state + 1}'], reference[f'vibrations{state + 1}']
        for i, j in sorted(zip(*linear_sum_assignment(-matrix ** 2)), key=lambda pair: pair[1]):
            rows.append({'conformer': name, 'state': state + 1, 'mode': of_reference[j] + 1, 'own_mode': at[i] + 1,
                         'overlap': abs(matrix[i, j])}
                        | {q: result[n][state][at[i]] for q, n in QUANTITIES.items() if n in result})
    return rows


def statistics(rows):
    """A row for each mode of the reference with the statistics of its quantities over the conformers."""
    groups = {}
    for row in rows:
        groups.setdefault((row['state'], row['mode']), []).append(row)
    table = []
    for (state, mode), group in sorted(groups.items()):
        line = {'state': state, 'mode': mode, 'conformers': len(group),
                'overlap_mean': np.mean([row['overlap'] for row in group])}
        for quantity in QUANTITIES:
            values = np.array([row[quantity] for row in group if quantity in row])
            line |= {f'{quantity}_{name}': of(values) for name, of in STATISTICS.items() if len(values)}
        table.append(line)
    return table


def write(path, rows, columns):
    """Writes a table; an earlier one is replaced when the new one is complete."""
    with open(f'{path}.part', 'w', newline='', encoding='utf-8', errors='replace') as file:
        table = csv.DictWriter(file, rows[0] if rows else columns, restval='')
        table.writeheader()
        table.writerows({k: f'{v:.6f}' if isinstance(v, float) else v for k, v in row.items()} for row in rows)
    os.replace(f'{path}.part', path)


def write_parquet(folder):
    try:
        import pandas
        import pyarrow  # the engine of pandas for this format
    except ImportError as missing:
        print(f'no Parquet files: {missing.name} is not there', file=sys.stderr)
        return
    for name in ('table', 'modes'):
        pandas.read_csv(os.path.join(folder, f'{name}.csv')).to_parquet(os.path.join(folder, f'{name}.parquet'))


def collect(paths, folder, wanted=''):
    """Writes table.csv, modes.csv, failed.csv and warnings.csv of the results, paths by conformer, and the first two as
    Parquet where pandas and pyarrow are there. `wanted` is the reference; without it the first success."""
    results = {name: load(path) for name, path in paths.items()}
    failed = {name: list(result['failure']) for name, result in results.items() if 'failure' in result}
    good = [name for name in results if name not in failed]
    if wanted and wanted not in good:
        raise SystemExit(f'the reference {wanted} has no result: {" ".join(failed.get(wanted, ["there is no such conformer"]))}')
    reference = wanted or next(iter(good), None)
    rows = []
    for name in good:
        try:
            rows += rows_of(name, results[name], results[reference])
        except ValueError as reason:
            failed[name] = [str(reason), '', '', reference]
    os.makedirs(folder, exist_ok=True)
    write(os.path.join(folder, 'table.csv'), rows, ['conformer'])
    write(os.path.join(folder, 'modes.csv'), statistics(rows), ['state'])
    columns = ['conformer', 'reason', 'file', 'line', 'expected']
    write(os.path.join(folder, 'failed.csv'), [dict(zip(columns, [name, *why])) for name, why in sorted(failed.items())], columns)
    write(os.path.join(folder, 'warnings.csv'), [{'conformer': name, 'warning': str(text)} for name, result in results.items()
                                                 for text in result['warnings']], ['conformer', 'warning'])
    write_parquet(folder)
    print(f'{len(paths) - len(failed)} of {len(paths)} conformers; the others are in {os.path.join(folder, "failed.csv")}',
          file=sys.stderr)
