"""What the page says: its tables, sentences and pictures, from the analysis alone."""
import math
import re
from datetime import datetime
from functools import partial
from pathlib import Path

import numpy as np
from jinja2 import Environment, FileSystemLoader
from markupsafe import Markup, escape

from vbn import _core, plot
from vbn._viewer_files import vibrations
from vbn.report import bands, drawing, pictures
from vbn.report.assignment import coordinate_name, describe

EV = 8065.544  # cm-1
IN_TABLE, DRAWN, IN_WORDS = 10, 3, 5  # the strongest modes of each state
LEAST_SHARE = 0.001  # of the reorganisation energy, of a mode in the table beyond those that are drawn
MOST_OF_IT = 0.8  # the share of the reorganisation energy that the modes of the summary carry
CLOSE, ROUTES_AGREE = 0.9, 0.05  # overlap of modes that hardly change; difference of the routes
STATES = ('state 1', 'state 2')
PROCESS = ('emission', 'absorption')


def _shown(value, digits, style='f'):
    return f'{value:.{digits}{style}}' if math.isfinite(value) else 'not defined'


def number(value, digits, style='f'):
    """A number as the page shows it, in an element with all its digits."""
    return Markup(f'<data value="{float(value)!r}">{_shown(float(value), digits, style)}</data>')


def strongest(analysis, count=DRAWN):
    """State and mode, from 0, of the modes of each state with the largest reorganisation energies."""
    found = []
    for state in (1, 0):
        modes = vibrations(analysis, state)
        sizes = np.nan_to_num(abs(analysis.reorganisation_energies[state][modes]))
        order = np.argsort(-sizes, kind='stable')[:count]
        found += [(state, int(modes[i])) for n, i in enumerate(order) if n < DRAWN or sizes[i] > LEAST_SHARE * sum(sizes)]
    return found


def mode_rows(analysis):
    """The rows of the table of the strongest modes."""
    listed = strongest(analysis, IN_TABLE)
    texts = {}
    for state in (0, 1):
        modes = [mode for k, mode in listed if k == state]
        texts |= {(state, mode): text for mode, text in zip(modes, describe(analysis, state, modes))}
    rows = []
    for state, mode in listed:
        row = int(np.flatnonzero(analysis.pairs[:, state] == mode)[0])
        partner = int(analysis.pairs[row, 1 - state])
        overlap = analysis.duschinsky[tuple(analysis.pairs[row])]
        inner = analysis.internal
        rows.append({'state': state, 'mode': mode, 'irrep': analysis.irreps[state][mode],
                     'frequency': analysis.frequencies[state][mode], 'huang_rhys': analysis.huang_rhys[state][mode],
                     'energy': analysis.reorganisation_energies[state][mode],
                     'internal_energy': inner.reorganisation_energies[state][mode] if inner else None,
                     'partner': partner, 'overlap': overlap, 'text': texts[state, mode]})
    return rows


def _energy(value):
    return f'{_shown(value, 0)} cm⁻¹ ({_shown(value / EV, 3)} eV)'


def _energy_sentences(analysis):
    totals = analysis.cartesian.totals
    yield (f'After absorption the molecule relaxes on the surface of state 2 by {_energy(totals[1])}, after emission on '
           f'that of state 1 by {_energy(totals[0])} (Cartesian coordinates, state 1 as the ground state).')
    if analysis.internal is None:
        return
    inner = analysis.internal.totals
    difference = np.max(abs(inner - totals) / np.maximum(np.maximum(abs(inner), abs(totals)), 1.0))
    if difference <= ROUTES_AGREE:
        yield f'Internal coordinates give the same to within {100.0 * difference:.1f} %.'
    else:
        yield (f'Internal coordinates give {_energy(inner[1])} and {_energy(inner[0])}: at least one of the two routes does '
               'not describe the change of the geometry well.')


def _mode_sentence(analysis, rows, state):
    total = np.nansum(abs(analysis.reorganisation_energies[state][vibrations(analysis, state)]))
    if not total > 0.0:
        return f'No mode of {STATES[state]} is displaced.'
    chosen, carried = [], 0.0
    for row in [r for r in rows if r['state'] == state][:IN_WORDS]:
        chosen.append(row)
        carried += abs(row['energy']) / total
        if carried >= MOST_OF_IT:
            break
    parts = []
    for row in chosen:
        what = f', {row["text"].split(" (")[0]}' if row['text'] else ''
        parts.append(f'mode {row["mode"] + 1} ({_shown(row["frequency"], 0)} cm⁻¹{what}; '
                     f'S = {_shown(row["huang_rhys"], 2)})')
    return (f'{STATES[state].capitalize()}: {"one mode carries" if len(parts) == 1 else f"{len(parts)} modes carry"} '
            f'{100.0 * carried:.0f} % of the reorganisation energy: {"; ".join(parts)}.')


def _mixing_sentence(analysis):
    both = np.isin(analysis.pairs[:, 0], vibrations(analysis, 0)) & np.isin(analysis.pairs[:, 1],
                                                                            vibrations(analysis, 1))
    pairs = analysis.pairs[both]
    overlaps = abs(analysis.duschinsky[pairs[:, 0], pairs[:, 1]])
    if not len(pairs):
        return 'No vibration of state 1 is beside one of state 2.'
    least = int(np.argmin(overlaps))
    by_number = bool(np.all(analysis.pairs[:, 0] == analysis.pairs[:, 1]))
    hint = ' Modes of one number are paired; sort_mode = 1 pairs them by overlap.' if by_number and overlaps[least] < 0.5 \
        else ''
    return (f'{np.sum(overlaps >= CLOSE)} of {len(pairs)} pairs of vibrations have an overlap of at least {CLOSE}; the '
            f'least is {overlaps[least]:.2f}, of mode {pairs[least, 0] + 1} of state 1 and mode {pairs[least, 1] + 1} '
            f'of state 2.{hint}')


def _geometry_sentence(analysis):
    ic = analysis.internal_coordinates
    parts = []
    for kind, unit, factor, digits in (('bond', ' Å', 1.0, 3), ('bend', '°', 180.0 / math.pi, 1),
                                       ('dihedral', '°', 180.0 / math.pi, 1)):
        rows = [i for i, k in enumerate(ic.kinds) if k == kind] if ic else []
        if rows:
            i = max(rows, key=lambda r: abs(ic.differences[r]))
            if abs(factor * ic.differences[i]) < 0.5 * 10.0 ** -digits:
                continue
            parts.append(f'{kind} {coordinate_name(analysis, i)} by {factor * ic.differences[i]:+.{digits}f}{unit} to '
                         f'{factor * ic.values[1][i]:.{digits}f}{unit}')
    return f'From state 1 to state 2 the largest changes are: {", ".join(parts)}.' if parts else ''


def _imaginary_sentences(analysis):
    for state in (0, 1):
        found = [f for f in analysis.frequencies[state][vibrations(analysis, state)] if f < 0.0]
        if found:
            values = ', '.join(f'i{-f:.0f}' for f in found)
            yield (f'{STATES[state].capitalize()} is no minimum: it has {len(found)} imaginary '
                   f'{"frequency" if len(found) == 1 else "frequencies"} ({values} cm⁻¹).')


def summary(analysis, rows):
    """The sentences of the summary."""
    return [*_energy_sentences(analysis), *(_mode_sentence(analysis, rows, state) for state in (1, 0)),
            _mixing_sentence(analysis), *filter(None, [_geometry_sentence(analysis)]), *_imaginary_sentences(analysis)]


def _route_pictures(analysis):
    names = {'huang_rhys': ('Huang-Rhys factors', 'S', 2), 'reorganisation_energies': ('Reorganisation energies', 'λ', 0)}
    for name, draw, height in pictures.of_routes(analysis):
        what, route = name.split('.')
        title, sign, digits = names[what]
        values = getattr(getattr(analysis, route), what)
        largest = []
        for k in (1, 0):
            at = vibrations(analysis, k)
            top = at[np.argmax(np.nan_to_num(abs(values[k][at])))] if len(at) else None
            if top is not None:
                largest.append(f'{STATES[k]} {_shown(abs(values[k][top]), digits)} at '
                               f'{analysis.frequencies[k][top]:.0f} cm⁻¹')
        caption = f'{title} by frequency, {route.capitalize() if route == "cartesian" else route} coordinates: state 2 up, ' \
                  f'state 1 down.'
        yield picture(name, draw, height, caption, f'{caption} The largest: {", ".join(largest)}.')


def picture(name, draw, height, caption, alternative):
    """A picture for the template: name, SVG and caption."""
    figure = pictures.figure_of(draw, height)
    svg = pictures.inlined(figure, name.replace('.', '-'), str(escape(alternative)).replace('\\', ''))
    return {'name': name, 'svg': Markup(svg), 'caption': caption}


def _other_pictures(analysis):
    yield picture('duschinsky', partial(_into, plot.duschinsky, analysis), 2.8,
                   'Duschinsky matrix of the vibrations: magnitudes, modes in the order of their pairs.',
                   f'Magnitudes of the Duschinsky matrix, from 0 to 1. {_mixing_sentence(analysis)}')
    caption = 'The minima of both states over each other: state 1 filled, state 2 in outline; atoms are numbered as in the files.'
    yield {'name': 'geometries', 'caption': caption, 'svg': Markup(drawing.overlay(
        analysis, escape(f'Ball-and-stick drawing. {caption} {_geometry_sentence(analysis)}')))}
    ic = analysis.internal_coordinates
    if ic is not None and len(ic.kinds):
        first = [coordinate_name(analysis, i) for i in np.argsort(-abs(ic.shares).max(axis=0), kind='stable')[:3]]
        caption = 'Reorganisation energy by internal coordinate: the largest shares, which may be negative.'
        yield picture('internal_coordinates', partial(_into, plot.internal_coordinates, analysis), 3.0, caption,
                       f'{caption} First: {", ".join(first)}.')


def _into(draw, analysis, axes):
    return draw(analysis, axes)


def _drawings(analysis, rows):
    texts = {(row['state'], row['mode']): row for row in rows}
    for state, mode in strongest(analysis):
        row = texts[state, mode]
        name = f'{STATES[state]}, mode {mode + 1}: {_shown(row["frequency"], 0)} cm⁻¹'
        if row['text']:
            name += f', {row["text"]}'
        still, moving = drawing.mode(analysis, state, mode, escape(name))
        yield {'still': Markup(still), 'moving': Markup(moving), 'row': row}


def _formula(analysis):
    return Markup(re.sub(r'(\d+)', r'<sub>\1</sub>', str(escape(analysis.formula))))


def page(analysis, input_text='', spectrum=None):
    """The HTML of the page."""
    rows = mode_rows(analysis)
    here = Path(__file__).parent
    environment = Environment(loader=FileSystemLoader(here), autoescape=True, trim_blocks=True, lstrip_blocks=True)
    html = environment.get_template('page.html').render(
        a=analysis, formula=_formula(analysis), input_text=input_text, version=_core.version, number=number, eV=EV,
        date=datetime.now().astimezone(), states=STATES, process=PROCESS, summary=summary(analysis, rows), rows=rows,
        irreps=any(row['irrep'] != 'A' for row in rows),
        routes=[(name, route) for name, route in (('Cartesian', analysis.cartesian), ('internal', analysis.internal))
                if route is not None],
        bands=bands.content(spectrum, picture), warnings=analysis.warnings + (spectrum.warnings if spectrum else []),
        spikes=list(_route_pictures(analysis)), others=list(_other_pictures(analysis)),
        drawings=list(_drawings(analysis, rows)), style=Markup((here / 'page.css').read_text(encoding='utf-8')),
        script=Markup((here / 'page.js').read_text(encoding='utf-8')))
    # Names of files need not be UTF-8.
    return html.encode('utf-8', 'surrogateescape').decode('utf-8', 'replace')
