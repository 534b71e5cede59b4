"""Files for viewers hold true motions, and pictures the numbers of the analysis."""
import json
from pathlib import Path

import numpy as np
import pytest

import vbn

EXAMPLES = Path(__file__).resolve().parents[2] / 'examples'


@pytest.fixture(scope='module')
def a():
    return vbn.analyse_input(EXAMPLES / 'glyoxal/glyoxal.inp')


def test_the_three_formats_hold_the_same_motions_whose_centre_of_mass_rests(a, tmp_path):
    for ending in ('xyz', 'cjson', 'molden'):
        a.write_modes(tmp_path / f'm.{ending}', state=1)
    lines = (tmp_path / 'm.xyz').read_text().splitlines()
    frames = [lines[i + 2:i + 8] for i in range(0, len(lines), 8)]
    rows = np.array([[[float(word) for word in row.split()[1:]] for row in frame] for frame in frames])
    assert [row.split()[0] for row in frames[0]] == a.symbols and rows.shape == (12, 6, 6)
    vectors = rows[:, :, 3:]
    assert np.allclose(rows[3, :, :3], a.geometries[1], atol=1e-7)
    assert np.allclose(np.linalg.norm(vectors, axis=(1, 2)), 1.0, atol=1e-7)
    assert np.allclose(np.einsum('i,mic->mc', a.masses[1], vectors), 0.0, atol=1e-4)
    # A displaced geometry feels the force of its mode alone.
    moved = vectors.reshape(12, 18)
    forces = moved @ a.force_constants[1] / np.repeat(a.masses[1], 3)
    assert np.allclose(forces, moved * np.sum(forces * moved, axis=1)[:, None], atol=1e-6)
    read = json.loads((tmp_path / 'm.cjson').read_text())
    assert np.allclose(read['vibrations']['eigenVectors'], moved, atol=1e-7)
    assert read['vibrations']['frequencies'] == a.frequencies[1][6:].tolist()
    assert sorted(map(tuple, np.reshape(read['bonds']['connections']['index'], (-1, 2)).tolist())) == \
        [(0, 1), (0, 2), (0, 4), (1, 3), (1, 5)]
    motion = (tmp_path / 'm.molden').read_text().split('vibration     5\n')[1].split('vibration')[0]
    assert np.allclose(np.array(motion.split(), float), moved[4], atol=1e-7)
    a.write_geometries(tmp_path / 'g.xyz')
    assert len((tmp_path / 'g.xyz').read_text().splitlines()) == 16
    for wrong in ({'path': tmp_path / 'm.pdb'}, {'path': tmp_path / 'm.xyz', 'state': 2},
                  {'path': tmp_path / 'm.xyz', 'modes': [18]}):
        with pytest.raises((ValueError, IndexError)):
            a.write_modes(**wrong)


def test_pictures_show_the_numbers_of_the_analysis(a):
    matplotlib = pytest.importorskip('matplotlib')
    matplotlib.use('Agg')
    from vbn import plot
    spikes = plot.huang_rhys(a, route='internal').collections[1].get_segments()
    assert np.allclose([s[1] for s in spikes], np.c_[a.frequencies[1], a.internal.huang_rhys[1]][6:])
    axes = plot.duschinsky(a)
    assert np.allclose(axes.images[0].get_array(), abs(a.paired_duschinsky[6:, 6:]))
    bars = plot.internal_coordinates(a, count=3).containers[0]
    assert np.isclose(bars[-1].get_width(), a.internal_coordinates.shares[0][[0, 1, 3]].max(), rtol=1e-6)
    assert len(plot.geometries(a).patches) == 12
    assert plot.mode(a, 0, 15, axes) is axes and 'mode 16' in axes.get_title()
    with pytest.raises(ValueError):
        plot.huang_rhys(vbn.analyse_input(EXAMPLES / 'glyoxal/glyoxal.inp'), route='both')
