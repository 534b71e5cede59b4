"""The page of vbn-report: its numbers, its files, wrong input, and what a browser makes of it."""
import os
import re
import subprocess
import sys
from collections import Counter
from html.parser import HTMLParser
from pathlib import Path
from xml.etree import ElementTree

import numpy as np
import pytest

import vbn

pytest.importorskip('matplotlib')
pytest.importorskip('jinja2')
import browser
from vbn import report
from vbn.report import assignment

EXAMPLES = Path(__file__).resolve().parents[2] / 'examples'
DATA = Path(os.environ.get('VBN_REAL_DATA', '/nowhere'))
pytestmark = pytest.mark.filterwarnings('ignore::vbn.ResultWarning')


class Page(HTMLParser):
    """Cells of the tables by the id of the table: the text and the value of each."""

    def __init__(self, text):
        super().__init__()
        self.tables, self.cell, self.ids, self.outside = {}, None, Counter(), []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        at = dict(attributes)
        self.ids.update([at['id']] if 'id' in at else [])
        self.outside += [v for k, v in attributes if k in ('src', 'href', 'xlink:href') and v[:1] != '#' and v[:5] != 'data:']
        if tag == 'table':
            self.rows = self.tables.setdefault(at.get('id', ''), [])
        elif tag == 'tr':
            self.rows.append([])
        elif tag in ('td', 'th'):
            self.cell = ['', None]
            self.rows[-1].append(self.cell)
        elif tag == 'data':
            self.cell[1] = float(at['value'])

    def handle_endtag(self, tag):
        self.cell = None if tag in ('td', 'th') else self.cell

    def handle_data(self, data):
        if self.cell is not None:
            self.cell[0] += data


def command(*arguments, folder):
    return subprocess.run([sys.executable, '-m', 'vbn.report', *map(str, arguments)], cwd=folder, capture_output=True,
                          text=True, errors='surrogateescape')


needs_data = pytest.mark.skipif(not DATA.is_dir(), reason='VBN_REAL_DATA is not set')


def formaldehyde():
    return vbn.analyse(EXAMPLES / 'formaldehyde/s0.out', EXAMPLES / 'formaldehyde/cation.out')


def test_the_numbers_of_the_page_are_those_of_the_analysis():
    for keys in ({'sort_mode': 1, 'point_group': True}, {'set_cart': True}):
        a = vbn.analyse(EXAMPLES / 'naphthalene/neutral.dat', EXAMPLES / 'naphthalene/cation.dat', **keys)
        html = report.page(a)
        page = Page(html)
        assert max(page.ids.values()) == 1 and not page.outside
        for svg in re.findall(r'<svg.*?</svg>', html, re.S):
            assert len(ElementTree.fromstring(svg).get('aria-label')) > 20
        for row, route in zip(page.tables['of-routes'][1:], [a.cartesian, a.internal]):
            assert [value for _, value in row[1:]] == [e / u for e in route.totals[::-1] for u in (1.0, 8065.544)]
        rows = page.tables['of-modes'][1:]
        shown = set()
        for state, number, *row in [[c for c in r if c[0] not in a.irreps[0] + a.irreps[1]] for r in rows]:
            k, i = int(state[1]) - 1, int(number[1]) - 1
            j = int(row[4][1]) - 1
            shown.add((k, i))
            pair = (i, j) if k == 0 else (j, i)
            assert list(pair) in a.pairs.tolist()
            inner = a.internal.reorganisation_energies[k][i] if a.internal else None
            assert [value for _, value in row[:6]] == [a.frequencies[k][i], a.huang_rhys[k][i],
                                                       a.reorganisation_energies[k][i], inner, j + 1, a.duschinsky[pair]]
            assert all(v is None or float(text) == pytest.approx(v, abs=0.5 * 10.0 ** -len(text.split('.')[1]))
                       for text, v in row[:4])
        for k in (0, 1):
            assert {(k, int(i)) for i in np.argsort(-a.reorganisation_energies[k])[:3]} < shown


def test_bands_lines_and_rates_are_those_of_the_spectrum(tmp_path):
    for name in ('neutral.dat', 'cation.dat'):
        (tmp_path / name).symlink_to(EXAMPLES / 'naphthalene' / name)
    group = "&vbn\n ffreq = 'neutral.dat', 'cation.dat'\n/\n&Spectrum\n energy = 27000\n dipole = 0, 0, 1.2\n fwhm = {}\n/\n"
    (tmp_path / 'band.inp').write_text(group.format(300))
    assert command('band.inp', folder=tmp_path).returncode == 0
    page = Page((tmp_path / 'report.html').read_text())
    s = vbn.spectrum(vbn.analyse_input(tmp_path / 'band.inp'), energy=27000.0, dipole=[0, 0, 1.2], fwhm=300)
    for band, name in ((s.absorption, 'absorption'), (s.emission, 'emission')):
        assert name in page.ids
        for at, strength, first, last in page.tables[f'lines-of-{name}'][1:]:
            i = int(np.argmin(abs(band.line_wavenumbers - at[1]) + abs(band.line_strengths - strength[1])))
            assert (at[1], strength[1], first[0]) == (band.line_wavenumbers[i], band.line_strengths[i], '0')
            assert last[0] == ' '.join(f'{m + 1}{q}' for m, q in band.final_levels[i]) or last[0] == '0'
    assert [[v for _, v in row[3:]] for row in page.tables['of-rates'][1:]] == \
        [[r.value, r.at_half_width, r.at_double_width] for r in s.rates] and len(s.rates) == 2
    (tmp_path / 'band.inp').write_text(group.format(-5))
    done = command('band.inp', '-o', 'none.html', folder=tmp_path)
    assert done.returncode == 1 and 'fwhm' in done.stderr and not (tmp_path / 'none.html').exists()


def check_coordinates(a):
    for k in (0, 1):
        for rows, atoms, value in assignment._by_kind(a, k):
            assert np.allclose(value(a.geometries[k][atoms]), a.internal_coordinates.values[k][rows], atol=1e-6)
        b = assignment.derivatives(a, k)
        assert np.allclose(b.reshape(len(b), -1, 3).sum(axis=1), 0.0, atol=1e-6), 'no shift changes them'
        assert np.allclose(assignment.energy_shares(a, k, range(6, 12)).sum(axis=0), 1.0)


def test_internal_coordinates_are_those_of_the_program_and_describe_modes():
    a = formaldehyde()
    check_coordinates(a)
    texts = assignment.describe(a, 0, [6, 7, 8, 9, 10, 11])
    kinds = ['out of plane', 'H-C-O bend', 'H-C-H bend', 'C-O stretch', 'C-H stretch', 'C-H stretch']
    assert all(kind in text.split(' (')[0] for kind, text in zip(kinds, texts)), texts


@needs_data
def test_torsions_and_linear_molecules():
    check_coordinates(vbn.analyse_input(DATA / 'xtb/azobenzene/numforce/azobenzene.inp'))
    linear = vbn.analyse_input(DATA / 'nwchem/hcn/hcn.inp')
    assert 'linear bend' in ' '.join(assignment.describe(linear, 0, [5, 6])) and 'mode 6' in report.page(linear)


def test_the_command_writes_a_whole_page_or_none(tmp_path):
    evil = 'a<script>alert(1)<b>&.out'
    for name, source in ((evil, 's0.out'), ('cation.out', 'cation.out')):
        (tmp_path / name).write_bytes((EXAMPLES / 'formaldehyde' / source).read_bytes())
    (tmp_path / '--help').write_text(f"&vbn\n ffreq = '{evil}', 'cation.out'\n/\n<script>alert(2)</script>\n")
    done = command('--help', '--pictures', '--viewer-files', folder=tmp_path)
    assert (done.returncode, done.stdout, done.stderr) == (0, '', '')
    html = (tmp_path / 'report.html').read_text()
    assert 'a&lt;script&gt;' in html and len(re.findall('<script', html)) == 1
    for picture in ('duschinsky', 'huang_rhys.internal', 'internal_coordinates', 'geometries', 'mode9_of_state2'):
        root = ElementTree.parse(tmp_path / f'report.{picture}.svg').getroot()
        assert root.get('width') == '241.2pt' and (tmp_path / f'report.{picture}.pdf').read_bytes()[:5] == b'%PDF-'
    assert {'report.modes1.cjson', 'report.modes2.molden', 'report.geometries.xyz'} < set(os.listdir(tmp_path))
    files = sorted(os.listdir(tmp_path))
    (tmp_path / 'wrong.inp').write_text("&vbn\n ffreq = 'cation.out', 'none.out'\n/\n")
    for arguments in (['wrong.inp'], ['--help', '-o', 'nowhere/page.html'], ['--help', '-o', 'cation.out'], ['--help', '-o', '.'], [],
                      ['--helps'], ['wrong.inp', '-o']):
        done = command(*arguments, folder=tmp_path)
        assert done.returncode == 1 and done.stderr.startswith('error: ') and 'Traceback' not in done.stderr
    assert sorted(os.listdir(tmp_path)) == sorted([*files, 'wrong.inp']) and (tmp_path / 'report.html').read_text() == html
    assert command('--version', folder=EXAMPLES).stdout == f'vbn-report {vbn.__version__}\n'
    assert '-o PAGE' in command('--help', folder=EXAMPLES).stdout


@needs_data
def test_a_large_molecule_gives_a_small_page_soon(tmp_path):
    before = os.times()
    assert command(DATA / 'xtb/octa3ht/gaussian/octa3ht.inp', folder=tmp_path).returncode == 0
    after = os.times()  # seconds of the processor, which other work on the machine hardly changes
    assert after.children_user - before.children_user < 15.0 and (tmp_path / 'report.html').stat().st_size < 3e6


@pytest.mark.skipif(bool(browser.missing()), reason=f'without {browser.missing()}')
def test_a_browser_shows_the_page_without_errors_and_requests_and_sorts(tmp_path):
    path = tmp_path / 'page.html'
    report.write(vbn.analyse_input(EXAMPLES / 'naphthalene/naphthalene.inp'), path)
    with browser.started() as chromium:
        for width in (375, 800, 1400):
            chromium.devtools('Emulation.setDeviceMetricsOverride', width=width, height=900, deviceScaleFactor=1, mobile=False)
            chromium.post('/url', url=path.as_uri())
            assert chromium.run('return document.documentElement.scrollWidth') == width, 'the page is wider than its window'
            assert chromium.errors_and_requests() == ([], [path.as_uri()])
        column = 'return [...document.querySelectorAll("#of-modes tbody tr td:nth-child(3) data")].map(d => Number(d.value))'
        before = chromium.run(column)
        for order in (sorted(before, reverse=True), sorted(before)):
            chromium.run('document.querySelectorAll("#of-modes th button")[2].click()')
            assert chromium.run(column) == order != before
        colours = []
        for scheme in ('light', 'dark'):
            chromium.devtools('Emulation.setEmulatedMedia', features=[{'name': 'prefers-color-scheme', 'value': scheme}])
            colours.append(chromium.run('return getComputedStyle(document.querySelector("#duschinsky text")).fill'))
        assert colours == ['rgb(35, 39, 46)', 'rgb(230, 233, 238)']
        place = 'return document.querySelector("svg.moving animate").ownerSVGElement.getCurrentTime()'
        chromium.run('document.getElementById("motion").click()')
        assert chromium.run(place) == chromium.run(place) and chromium.errors_and_requests() == ([], [])
