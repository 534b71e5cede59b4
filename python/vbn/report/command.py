"""The command line of vbn-report: an input file of vbn, and where the page goes."""
import argparse
import os
import re
import sys
import warnings

import vbn
from vbn._spectrum import spectrum_of_group

HELP = """vbn-report makes a page to look at: what vbn finds for two electronic states, with tables and pictures.

Usage: vbn-report [OPTIONS] FILE

FILE is an input file of vbn. Relative names in it are those of files beside it. With a group &spectrum, as vbn-spectrum
reads it, the page has the bands, lines and rates too.

  -o PAGE         the page, report.html without it; an earlier one is replaced
  --pictures      writes each picture beside the page too, as SVG and as PDF in the width of a journal's column
  --viewer-files  writes the modes and both geometries beside the page too, for molecule viewers
  --help          prints this text
  --version       prints the version

Manual: man vbn-report, and docs/report.md in share/doc/vbn of the installation.
"""


class _Parser(argparse.ArgumentParser):
    def error(self, message):
        sys.stderr.write(f'error: the command line is not understood: {message}\n'
                         'expected: vbn-report my.inp, or vbn-report my.inp -o page.html\n')
        raise SystemExit(1)


def _options(arguments):
    parser = _Parser(prog='vbn-report', add_help=False, allow_abbrev=False)
    parser.add_argument('file', nargs='?')
    parser.add_argument('-o', dest='page', default='report.html')
    parser.add_argument('--pictures', action='store_true')
    parser.add_argument('--viewer-files', action='store_true')
    parser.add_argument('-h', '--help', action='store_true')
    parser.add_argument('--version', action='store_true')
    # An argument that names a file is that file.
    return parser, parser.parse_args([f'./{each}' if each.startswith('-') and os.path.exists(each) else each
                                      for each in arguments])


def _error(text):
    sys.stderr.write(text if text.endswith('\n') else f'{text}\n')
    return 1


def main(arguments=None):
    """Runs the command; returns its exit status."""
    sys.stderr.reconfigure(errors='surrogateescape')
    parser, options = _options(sys.argv[1:] if arguments is None else arguments)
    if options.help or options.version:
        print(HELP if options.help else f'vbn-report {vbn.__version__}', end='' if options.help else '\n')
        return 0
    if options.file is None:
        parser.error('an input file is missing')
    try:
        from vbn import report
    except ImportError as missing:
        return _error(f'error: the page needs the Python package {missing.name}\n'
                      'expected: sudo apt install python3-jinja2 python3-matplotlib')
    try:
        with warnings.catch_warnings(record=True) as found:
            warnings.simplefilter('always', vbn.ResultWarning)
            analysis = vbn.analyse_input(options.file)
            with open(options.file, encoding='utf-8', errors='surrogateescape') as file:
                text = file.read()
            spectrum = spectrum_of_group(analysis, text) if re.search(r'^\s*&spectrum\b', text, re.M | re.I) else None
        for name in (options.file, *analysis.files):
            if os.path.exists(options.page) and os.path.samefile(name, options.page):
                return _error(f'error: the page would overwrite {name}\nexpected: another name after -o')
        report.write(analysis, options.page, text, options.pictures, options.viewer_files, spectrum)
    except vbn.Error as stop:
        return _error(''.join(f'warning: {each.message}\n' for each in found) + str(stop))
    except OSError as fault:
        return _error(f'error: cannot write: {fault.strerror}\nfile: {fault.filename}')
    sys.stderr.write(''.join(f'warning: {each.message}\n' for each in found))
    return 0
