"""The files for viewers, as the viewers themselves read them: frames, elements, positions and motions."""
import json
import re
import shutil
import subprocess
from pathlib import Path

import numpy as np
import pytest

import vbn

EXAMPLES = Path(__file__).resolve().parents[2] / 'examples'
JMOL = Path('/usr/share/java/JmolData.jar')
BOHR = 0.529177249


@pytest.fixture(scope='module')
def a():
    return vbn.analyse_input(EXAMPLES / 'glyoxal/glyoxal.inp')


def check(a, state, mode, symbols, positions, vectors, tolerance=1e-6):
    """One frame: the displacements are the mass-weighted mode over the root of the mass, and the centre of mass rests."""
    assert list(symbols) == a.symbols and np.allclose(positions, a.geometries[state], atol=tolerance)
    true = a.normal_modes[state][:, mode].reshape(-1, 3) / np.sqrt(a.masses[state])[:, None]
    assert np.allclose(vectors, true / np.linalg.norm(true), atol=tolerance)
    assert np.allclose(a.masses[state] @ vectors, 0.0, atol=10.0 * tolerance)


def test_ase(a, tmp_path):
    io = pytest.importorskip('ase.io')
    a.write_modes(tmp_path / 'm.xyz', state=1)
    frames = io.read(tmp_path / 'm.xyz', ':')
    assert [frame.info['frequency'] for frame in frames] == [round(f, 4) for f in a.frequencies[1][6:]]
    for mode, frame in enumerate(frames, 6):
        check(a, 1, mode, frame.get_chemical_symbols(), frame.positions, frame.arrays['displacement'])
    a.write_geometries(tmp_path / 'g.xyz')
    both = io.read(tmp_path / 'g.xyz', ':')
    assert [frame.get_chemical_symbols() for frame in both] == [a.symbols] * 2
    assert np.allclose([frame.positions for frame in both], a.geometries, atol=1e-7)


def test_open_babel(a, tmp_path):
    ob = pytest.importorskip('openbabel.openbabel')
    a.write_modes(tmp_path / 'm.molden', state=1)
    a.write_geometries(tmp_path / 'g.xyz')
    reader, molecule = ob.OBConversion(), ob.OBMol()
    assert reader.SetInFormat('molden') and reader.ReadFile(molecule, str(tmp_path / 'm.molden'))
    atoms = list(ob.OBMolAtomIter(molecule))
    found = ob.toVibrationData(molecule.GetData(ob.VibrationData))
    assert np.allclose(list(found.GetFrequencies()), a.frequencies[1][6:], atol=1e-4)
    for mode, vectors in enumerate(found.GetLx(), 6):
        check(a, 1, mode, [ob.GetSymbol(x.GetAtomicNum()) for x in atoms], [[x.GetX(), x.GetY(), x.GetZ()] for x in atoms],
              np.array([[v.GetX(), v.GetY(), v.GetZ()] for v in vectors]))
    assert reader.SetInFormat('xyz') and reader.ReadFile(molecule, str(tmp_path / 'g.xyz'))
    assert molecule.NumAtoms() == 6 and reader.Read(molecule) and not reader.Read(molecule)


@pytest.mark.skipif(shutil.which('java') is None or not JMOL.is_file(), reason='Jmol is not there')
def test_jmol(a, tmp_path):
    script = ''
    for ending in ('xyz', 'molden'):
        a.write_modes(tmp_path / f'm.{ending}', state=1)
        script += (f'load "{tmp_path}/m.{ending}"; for (var i = 1; i <= getProperty("modelInfo").modelCount; i++) '
                   '{ for (x in {model=i}) { print "ATOM " + i + " " + x.element + " " + x.x + " " + x.y + " " + x.z + " " + '
                   'x.vx + " " + x.vy + " " + x.vz; } } print "END";\n')
    (tmp_path / 'all.spt').write_text(script)
    said = subprocess.run(['java', '-Djava.awt.headless=true', '-jar', JMOL, '-n', '-o', '-s', tmp_path / 'all.spt'],
                          capture_output=True, text=True, timeout=120).stdout
    # Jmol shows the minimum of a Molden file as a frame of its own, and takes its motions to be in bohr.
    for part, first, unit in zip(said.split('END'), (6, 5), (1.0, BOHR)):
        rows = [row.split() for row in re.findall(r'^ATOM (.*)$', part, re.M)]
        frames = [[row[1:] for row in rows if int(row[0]) == i + 1] for i in range(len(rows) // 6)]
        assert len(frames) == 18 - first
        for mode, frame in list(enumerate(frames, first))[6 - first:]:
            numbers = np.array([row[1:] for row in frame], float)
            check(a, 1, mode, [row[0] for row in frame], numbers[:, :3], numbers[:, 3:] / unit, 2e-6)


def test_avogadro(a, tmp_path):
    avogadro = pytest.importorskip('avogadro')
    from avogadro import core, io  # the reader and writer of the program
    a.write_modes(tmp_path / 'm.cjson', state=1)
    molecule, files = core.Molecule(), io.FileFormatManager()
    assert files.read_file(molecule, str(tmp_path / 'm.cjson'), 'cjson'), avogadro
    assert (molecule.atom_count(), molecule.bond_count()) == (6, 5)
    read = json.loads(files.write_string(molecule, 'cjson'))
    assert np.allclose(read['vibrations']['frequencies'], a.frequencies[1][6:])
    for mode, vectors in enumerate(read['vibrations']['eigenVectors'], 6):
        check(a, 1, mode, [a.symbols[a.atomic_numbers.tolist().index(z)] for z in read['atoms']['elements']['number']],
              np.reshape(read['atoms']['coords']['3d'], (-1, 3)), np.reshape(vectors, (-1, 3)))
