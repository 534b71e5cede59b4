"""One page to look at: what an analysis found, with tables and pictures, in one HTML file.

    import vbn, vbn.report
    a = vbn.analyse('s0.out', 's1.out', sort_mode=1)
    vbn.report.write(a, 'report.html')

The command vbn-report makes the same page of an input file. It needs matplotlib and jinja2."""
import os

from vbn._analysis import replace_file
from vbn.report.content import page
from vbn.report.pictures import print_pictures

__all__ = ['page', 'write']


def write(analysis, path='report.html', input_text='', pictures=False, viewer_files=False,
          spectrum=None):
    """Writes the page of an analysis; a file of this name is replaced when the new one is complete.

    input_text is shown as the keys of the run; the bands, lines and rates of a `vbn.Spectrum` are shown too. With `pictures` each picture is also written beside the page, as SVG and
    as PDF in the width of a journal's column, and with `viewer_files` the modes of both states and both geometries for
    molecule viewers. Names begin with that of the page. Returns the names of the files."""
    text = page(analysis, input_text, spectrum)
    beginning = os.path.splitext(os.fspath(path))[0]
    files = {f'{beginning}.{name}': content for name, content in print_pictures(analysis, spectrum)} if pictures else {}
    for name, content in files.items():
        replace_file(name, content)
    names = [os.fspath(path), *files]
    if viewer_files:
        for state in (0, 1):
            for ending in ('xyz', 'cjson', 'molden'):
                names.append(f'{beginning}.modes{state + 1}.{ending}')
                analysis.write_modes(names[-1], state)
        names.append(f'{beginning}.geometries.xyz')
        analysis.write_geometries(names[-1])
    replace_file(path, text)
    return names
