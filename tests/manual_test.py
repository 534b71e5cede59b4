"""Runs what the manual shows, so that it cannot go stale: manual_test.py PROGRAM MAN_PAGES.

Every input group of the pages, on the real files of examples/; the message of docs/input.md; the steps of examples/README.md;
the worked example of docs/theory.md, number by number and sum by sum; the lines for PySCF; what `man` makes of the manual pages;
and the completion of the shell."""
import re
import shutil
import subprocess
import sys
import tempfile
import textwrap
import types
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
EXAMPLES = ROOT / 'examples'
PAGES = [ROOT / 'README.md', *sorted((ROOT / 'docs').glob('*.md')), *sorted((ROOT / 'docs/man').glob('*.adoc'))]
THEORY = (ROOT / 'docs/theory.md').read_text()
# The names that the pages give to files, and the files of an example that take their places.
STATE_1, STATE_2 = ('s0.out', 'ground.log', 'ground.out'), ('s1.out', 'cation.out', 'excited.log', 'excited.out')
STATES = {'formaldehyde': ('s0.out', 'cation.out'), 'naphthalene': ('neutral.dat', 'cation.dat'), 'glyoxal': ('s0.dat', 't1.dat')}


def blocks(text, start):
    """The blocks of code of a page, indented by four blanks or between dots, whose first word is `start`."""
    found = re.findall(r'(?:^ {4}.*\n)+', text, re.M) + re.findall(r'^\.{4}\n(.*?)^\.{4}', text, re.M | re.S)
    return [block for block in found if block.split()[0] == start]


def table(text, first):
    """The rows of the Markdown table whose first heading is `first`, as lists of cells."""
    rows = re.search(rf'^\| {first} \|.*\n\|[-|]*\n((?:\|.*\n)*)', text, re.M).group(1)
    return [[cell.strip() for cell in row.strip('|').split('|')] for row in rows.splitlines()]


class Manual(unittest.TestCase):
    def setUp(self):
        self.folder = Path(self.enterContext(tempfile.TemporaryDirectory()))

    def run_in(self, example, group, program=None):
        shutil.copytree(EXAMPLES / example, self.folder, dirs_exist_ok=True)
        for names, source in zip((STATE_1, STATE_2), STATES[example]):
            for name in names:
                if name != source:
                    shutil.copy(EXAMPLES / example / source, self.folder / name)
        (self.folder / 'my.inp').write_text(group)
        return subprocess.run([program or PROGRAM, 'my.inp'], cwd=self.folder, capture_output=True, text=True)

    def section(self, file, begin, end):
        return [row.split() for row in
                (self.folder / file).read_text().split(begin, 1)[1].split(end, 1)[0].splitlines() if row.strip()]

    def test_every_input_group_runs(self):
        groups = [(page.name, group) for page in PAGES for group in blocks(page.read_text(), '&vbn')]
        self.assertGreaterEqual(len(groups), 7)
        for page, group in groups:
            example = 'naphthalene' if 'def_add' in group else 'glyoxal' if 'fnacme' in group else 'formaldehyde'
            with self.subTest(page=page, group=group):
                group = group.replace('nac.out', 'nac_molpro.out')
                if '&spectrum' in group:
                    run = self.run_in(example, group, PROGRAM.parent / 'vbn-spectrum')
                    self.assertEqual((run.returncode, run.stderr), (0, ''))
                    self.assertTrue((self.folder / 'vbn.absorption.csv').exists())
                run = self.run_in(example, group)
                self.assertEqual((run.returncode, run.stdout, run.stderr), (0, '', ''))
                self.assertIn('END_DUSH_2', (self.folder / 'vbn.cart.dat').read_text())

    def test_the_message_of_the_input_page(self):
        said = re.sub('^ {4}', '', blocks((ROOT / 'docs/input.md').read_text(), 'error:')[0], flags=re.M)
        run = self.run_in('formaldehyde', "&vbn\n ffreq(1) = 's0.out'\n ffreq(2) = 's1.out'\n ekcart_rot = 1\n/\n")
        self.assertEqual((run.returncode, run.stderr), (1, said))

    def test_the_steps_of_the_dipole_example(self):
        steps, = blocks((EXAMPLES / 'README.md').read_text(), 'sed')
        shutil.copytree(EXAMPLES / 'naphthalene', self.folder, dirs_exist_ok=True)
        (self.folder / 'tdip_frame.dat').unlink()
        subprocess.run(['sh', '-ec', re.sub(r'^ *vbn ', f'"{PROGRAM}" ', steps, flags=re.M)], cwd=self.folder, check=True)
        self.assertEqual((self.folder / 'tdip_frame.dat').read_text(), (EXAMPLES / 'naphthalene/tdip_frame.dat').read_text())

    def test_the_worked_example_is_that_of_the_run(self):
        run = self.run_in('formaldehyde', (EXAMPLES / 'formaldehyde/formaldehyde.inp').read_text())
        self.assertEqual(run.stderr, '')
        states = [self.section('vbn.out', f'Inertial Coordinate (Angstrom) for state {n}', '___')[1:5] for n in (1, 2)]
        squares = 0
        for row, one, two in zip(table(THEORY, 'Atom'), *states, strict=True):
            self.assertEqual(row[:6], [one[1], one[2], one[3], two[3], one[4], two[4]])
            square = float(one[2]) * sum((float(a) - float(b))**2 for a, b in zip(one[3:], two[3:]))
            self.assertEqual(row[6], f'{square:.7f}')
            squares += square
        self.assertIn(f'adds up to {squares:.7f} ', THEORY)
        modes = {row[0]: row for row in self.section('vbn.cart.dat', 'BEGIN_OUTPUT_1', 'END_OUTPUT_1') if row[0].isdigit()}
        for row in table(THEORY, 'Mode'):
            self.assertEqual(row, [row[0]] + modes[row[0]][3:8])
        self.assertIn(f'the table says {modes["9"][10]}.', THEORY)
        total, = [row[4] for row in self.section('vbn.cart.dat', 'BEGIN_OUTPUT_1', 'END_OUTPUT_1') if row[0] == 'Total']
        self.assertIn(f'The sum of lam1 is {float(total):.2f} cm-1', THEORY)

    def test_the_sums_of_the_theory_page(self):
        sums = re.findall(r'([-(]*\d[\d.]*(?:[\s()x^/+-]+\d[\d.]*\)*)*) = (-?\d[\d.]*\d(?: / [\d.]+\^\(1/2\))?)', THEORY)
        self.assertGreaterEqual(len(sums), 8)
        for left, right in sums:
            values = [eval(' '.join(side.split()).replace('x', '*').replace('^', '**')) for side in (left, right)]
            digits = max(len(side.partition('.')[2].split(' ')[0]) for side in (left, right) if ' ' not in side)
            self.assertAlmostEqual(*values, delta=1.5 * 10**-digits, msg=f'{left} = {right}')

    def test_the_shell_completes_the_options_that_help_lists_and_input_files(self):
        for name in ('a.inp', 'a.out'):
            (self.folder / name).touch()
        script = (f'source "{ROOT}/packaging/completion.bash"; COMP_WORDS=(vbn "$1") COMP_CWORD=1; _vbn "$2"; '
                  'echo "${COMPREPLY[@]}"')
        for word, program, offered in (('--', 'vbn', '--help --version'), ('--v', 'vbn', '--version'), ('a', 'vbn', 'a.inp'),
                                       ('-', 'vbn-spectrum', '--from --help --version')):
            shown = subprocess.check_output(['bash', '-c', script, 'bash', word, PROGRAM.with_name(program)],
                                            cwd=self.folder, text=True)
            self.assertEqual(shown.strip(), offered)

    def test_the_lines_for_pyscf_write_the_force_constants(self):
        lines = textwrap.dedent(re.search(r'^ {6}import json\n(?: {6}.*\n)+', (ROOT / 'docs/programs.md').read_text(), re.M)[0])
        try:
            import numpy
        except ImportError:
            self.skipTest('numpy is not there')
        symbols, masses = ['C', 'O', 'H', 'F'], numpy.repeat([12.0, 15.99491461957, 1.00782503223, 18.99840316273], 3)
        numbers = numpy.random.default_rng(3)
        x, a = numbers.normal(size=(4, 3)) * 2.0, numbers.normal(size=(12, 12)) * 0.3
        motions = [numpy.tile(e, 4) for e in numpy.eye(3)] + [numpy.cross(e, x).ravel() for e in numpy.eye(3)]
        inner = numpy.linalg.svd(numpy.array(motions))[2][6:]  # without translations and rotations
        h = inner.T @ inner @ a @ a.T @ inner.T @ inner
        by_atoms = h.reshape(4, 3, 4, 3).transpose(0, 2, 1, 3)
        self.assertEqual(by_atoms[1, 2, 0, 1], h[3, 7])  # x of atom 2, y of atom 3
        mol = types.SimpleNamespace(natm=4, atom_symbol=lambda i: symbols[i], atom_coords=lambda: x)
        mf = types.SimpleNamespace(mol=mol, Hessian=lambda: types.SimpleNamespace(kernel=lambda: by_atoms))
        exec(lines.replace("'mol.json'", repr(str(self.folder / 'mol.json'))), {'mf': mf})
        (self.folder / 'my.inp').write_text("&vbn ffreq = 2*'mol.json', set_cart = t /")
        subprocess.run([PROGRAM, 'my.inp'], cwd=self.folder, capture_output=True, check=True)
        values = numpy.linalg.eigvalsh(h / numpy.sqrt(numpy.outer(masses, masses)) / 1822.888486)[6:]
        rows = [row for row in self.section('vbn.cart.dat', 'BEGIN_OUTPUT_1', 'END_OUTPUT_1') if row[0].isdigit() and row[1] != '0']
        numpy.testing.assert_allclose([float(row[3]) for row in rows], numpy.sqrt(values) * 219474.6313632, atol=0.01)

    @unittest.skipUnless(shutil.which('man'), 'man is not there')
    def test_man_shows_the_pages(self):
        if not (pages := sorted(MAN_PAGES.glob('*.[1-9].gz'))):
            self.skipTest('the manual pages were not built: asciidoctor is not there')
        self.assertLessEqual({'vbn.1.gz', 'vbn.5.gz'}, {page.name for page in pages})
        for page in pages:
            shown = subprocess.run(['man', '--warnings', '-E', 'UTF-8', '-l', page], capture_output=True, text=True,
                                   env={'MANWIDTH': '100', 'PATH': '/usr/bin:/bin', 'LC_ALL': 'C.UTF-8'})
            self.assertEqual((shown.returncode, shown.stderr), (0, ''), page.name)
            self.assertIn('NAME', shown.stdout)


PROGRAM, MAN_PAGES = Path(sys.argv.pop(1)).resolve(), Path(sys.argv.pop(1))
unittest.main()
