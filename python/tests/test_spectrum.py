"""vbn.spectrum against the files of the program vbn-spectrum."""
import csv
import os
import re
import shutil
import subprocess
from pathlib import Path

import numpy as np
import pytest

import vbn

ROOT = Path(__file__).resolve().parents[2]
SPECTRUM = Path(os.environ['VBN_BINARY']).parent / 'vbn-spectrum'
GLYOXAL, NAPHTHALENE = ROOT / 'examples/glyoxal', ROOT / 'examples/naphthalene'
pytestmark = pytest.mark.filterwarnings('ignore::vbn.ResultWarning')


def table(file):
    rows = list(csv.reader(line for line in file.read_text().splitlines() if not line.startswith('#')))
    return {name: [row[i] for row in rows[1:]] for i, name in enumerate(rows[0])}


def in_group(value):
    if isinstance(value, (list, tuple)):
        return ', '.join(in_group(each) for each in value)
    return repr(value) if isinstance(value, str) else str(value)


@pytest.mark.parametrize('folder, group, keys', [
    (GLYOXAL, "&vbn ffreq = 's0.dat' 't1.dat', fnacme = 'nac_molpro.out' /",
     {'what': ['absorption', 'emission', 'ic', 'isc'], 'energy': 1.1, 'energy_unit': 'eV',
      'dipole': [0, 0.1, np.float64(0.2)], 'soc': 3, 'temperature': [0, 300], 'fwhm': [200, 400], 'leave_out': [7], 'line_temperature': 300}),
    (NAPHTHALENE, "&vbn ffreq = 'neutral.dat' 'cation.dat', ftdipd = 'tdip.dat' /",
     {'energy': 30000, 'energy_is': '0-0', 'displacements': 'internal', 'range': (28000, 32000), 'refractive_index': 1.3})])
def test_arrays_are_what_the_program_writes(tmp_path, folder, group, keys):
    shutil.copytree(folder, tmp_path, dirs_exist_ok=True)
    text = ', '.join(f'{key} = {in_group(value)}' for key, value in keys.items())
    (tmp_path / 'p.inp').write_text(f'{group}\n&spectrum {text} /\n')
    subprocess.run([SPECTRUM, 'p.inp'], cwd=tmp_path, check=True, stdout=subprocess.DEVNULL)
    s = vbn.spectrum(vbn.analyse_input(tmp_path / 'p.inp'), **keys)
    for name, absolute in (('absorption', 'epsilon'), ('emission', 'photons')):
        band, written = getattr(s, name), table(tmp_path / f'vbn.{name}.csv')
        assert np.allclose(band.wavenumbers, np.array(written['wavenumber_cm-1'], float), atol=6e-5)
        assert np.all(abs(band.sums - 1) < 1e-12)
        for t, kelvin in enumerate(s.temperatures):
            for w, fwhm in enumerate(s.widths):
                for values, column in ((band.line_shapes, 'F'), (band.intensities, absolute)):
                    stored = np.array(written[f'{column}_{kelvin:g}K_{fwhm:g}'], float)
                    assert np.allclose(values[t, w], stored, rtol=1e-6, atol=1e-7 * stored.max())
        lines = table(tmp_path / 'vbn.lines.csv')
        rows = [i for i, of in enumerate(lines['transition']) if of == name]
        assert np.allclose(band.line_strengths, [float(lines['strength'][i]) for i in rows], rtol=1e-6)
        labels = [' '.join(f'{m + 1}^{n}' for m, n in level) or '0' for level in band.final_levels]
        assert labels == [lines['final'][i] for i in rows]
    rates = table(tmp_path / 'vbn.rates.csv')
    values = [v for rate in s.rates for v in (rate.value, *rate.mode_shares)]
    assert np.allclose(values, np.array(rates['rate'], float), rtol=1e-6, atol=1e-3 * max(values))


def test_faults_are_errors_and_every_attribute_is_in_the_manual():
    a = vbn.analyse(GLYOXAL / 's0.dat', GLYOXAL / 't1.dat', set_cart=True)
    for keys, said in (({'temperatur': 100}, 'perhaps temperature'), ({'fwhm': 0}, 'cannot use the value of fwhm'),
                       ({'what': 'ic', 'energy': 8000}, 'needs the couplings'),
                       ({'displacements': 'internal'}, 'no internal coordinates')):
        with pytest.raises(vbn.Error, match=said):
            vbn.spectrum(a, **keys)
    for wrong in ((None, {}), (a, {'dipole': {}}), (a, {'energy': True})):
        with pytest.raises(TypeError):
            vbn.spectrum(wrong[0], **wrong[1])
    page = (ROOT / 'docs/python.md').read_text()
    for kind in (vbn.Spectrum, vbn.Band, vbn.Rate):
        for name in (n for n in vars(kind) if not n.startswith('_')):
            assert re.search(rf'`{name}`', page), name
