"""Drawings of the molecule as SVG: balls and sticks with arrows, at rest, in motion, and both minima over each other.

The atoms of an element in one slice of the depth are one path, a dot for each atom, so that a large molecule needs few
elements and one animation moves many atoms."""
import numpy as np

from vbn._viewer_files import cartesian_modes
from vbn.plot import BALLS, OTHER_BALL, view_of

UNIT = 20.0  # of the drawing, for an angstrom
SLICES = 12
MARGIN = 16.0
MOST_NUMBERED = 40  # atoms; the numbers of more cannot be read
ARROW, SWING = 0.95, 0.45  # angstrom: the longest arrow, and the largest displacement in motion
PERIOD = '1.6s'
EASE = '.39 .58 .57 1;.47 0 .75 .72;.39 .58 .57 1;.47 0 .75 .72'  # a sine in four quarters


def _number(value):
    return f'{value:.1f}'.removesuffix('.0') if abs(value) >= 0.05 else '0'


def _points(x):
    return ''.join(f'M{_number(p[0])} {_number(p[1])}h.01' for p in x)  # browsers draw no cap without a length


def _segments(starts, ends):
    return ''.join(f'M{_number(p[0])} {_number(p[1])}L{_number(q[0])} {_number(q[1])}' for p, q in zip(starts, ends))


def _path(style, shapes):
    """A path, moving through the shapes if there are several."""
    if len(shapes) == 1:
        return f'<path {style} d="{shapes[0]}"/>'
    return (f'<path {style} d="{shapes[0]}"><animate attributeName="d" dur="{PERIOD}" repeatCount="indefinite" '
            f'calcMode="spline" keyTimes="0;.25;.5;.75;1" keySplines="{EASE}" values="{";".join(shapes)}"/></path>')


def _bonds(analysis, state):
    ic = analysis.internal_coordinates
    return np.argwhere(np.triu(ic.bonds[state])) if ic else np.empty((0, 2), int)


def _molecule(analysis, state, frames, outline='var(--outline)'):
    """Balls and sticks through the frames, each (N, 3) in units of the drawing, y down and z towards the eye."""
    x = frames[0]
    symbols = np.array(analysis.symbols)
    bonds = _bonds(analysis, state)
    parts = []
    slices = np.array_split(np.argsort(x[:, 2], kind='stable'), min(len(x), SLICES))
    depth = np.empty(len(x), int)
    for number, atoms in enumerate(slices):
        depth[atoms] = number
    of_bond = depth[bonds].min(axis=1)
    for number, atoms in enumerate(slices):
        i, j = bonds[of_bond == number].T
        if len(i):
            sticks = [_segments(f[i], f[j]) for f in frames]
            parts.append(_path(f'stroke="{outline}" stroke-width="4.6"', sticks))
            parts.append(_path('stroke="var(--stick)" stroke-width="2.8"', sticks))
        for symbol in dict.fromkeys(symbols[atoms]):
            here = atoms[symbols[atoms] == symbol]
            fill, radius = BALLS.get(symbol, OTHER_BALL)
            width = 2.0 * UNIT * radius
            balls = [_points(f[here]) for f in frames]
            parts.append(_path(f'stroke="{outline}" stroke-width="{width:g}"', balls))
            parts.append(_path(f'stroke="{fill}" stroke-width="{width - 1.6:g}"', balls))
    return f'<g fill="none" stroke-linecap="round">{"".join(parts)}</g>'


def _numbers(analysis, x):
    if len(x) > MOST_NUMBERED:
        return ''
    white = ' fill="#fff"'
    texts = ''.join(f'<text x="{_number(p[0])}" y="{_number(p[1] + 2.3)}"{"" if symbol == "H" else white}>{i}</text>'
                    for i, (symbol, p) in enumerate(zip(analysis.symbols, x), 1))
    return f'<g font-size="6.5" text-anchor="middle" fill="#222">{texts}</g>'


def _arrows(x, vectors, colour):
    lengths = np.hypot(vectors[:, 0], vectors[:, 1])
    seen = lengths > 0.08 * ARROW * UNIT
    start, along, lengths = x[seen, :2], vectors[seen, :2], lengths[seen]
    unit = along / lengths[:, None]
    across = np.stack([-unit[:, 1], unit[:, 0]], axis=1)
    head = np.minimum(5.5, lengths)[:, None]
    tip = start + along
    base = tip - head * unit
    heads = ''.join('M' + 'L'.join(f'{_number(p[0])} {_number(p[1])}' for p in corners) + 'Z'
                    for corners in zip(tip, base + 0.5 * head * across, base - 0.5 * head * across))
    shafts = _segments(start, base)
    return (f'<path d="{shafts}" stroke="var(--paper)" stroke-width="3.6"/>'
            f'<path d="{heads}" fill="{colour}" stroke="var(--paper)" stroke-width="1.6" paint-order="stroke"/>'
            f'<path d="{shafts}" stroke="{colour}" stroke-width="1.9"/>')


def _svg(parts, points, alternative, kind):
    """The drawing with a frame that holds all points; the alternative text is escaped by the caller."""
    low, high = points.min(axis=0) - MARGIN, points.max(axis=0) + MARGIN
    box = ' '.join(_number(v) for v in (*low[:2], *(high - low)[:2]))
    return (f'<svg class="{kind}" viewBox="{box}" role="img" aria-label="{alternative}" '
            f'xmlns="http://www.w3.org/2000/svg">{"".join(parts)}</svg>')


def _project(vectors, view):
    return vectors @ view.T * (UNIT, -UNIT, UNIT)


def mode(analysis, state, number, alternative):
    """The drawing of a mode (from 0) with arrows, and that of its motion."""
    motion = cartesian_modes(analysis, state, [number])[0]
    view = view_of(analysis, motion)
    x, vectors = _project(analysis.geometries[state], view), _project(motion, view)
    vectors /= np.linalg.norm(vectors, axis=1).max() / UNIT
    colour = f'var(--state{state + 1})'
    still = [_molecule(analysis, state, [x]), _arrows(x, ARROW * vectors, colour)]
    swing = SWING * vectors
    frames = [x, x + swing, x, x - swing, x]
    extent = np.concatenate([x, x + ARROW * vectors])
    return (_svg(still, extent, f'{alternative}, as arrows on the atoms', 'still'),
            _svg([_molecule(analysis, state, frames)], np.concatenate([extent, x - swing]),
                 f'{alternative}, in motion', 'moving'))


def _wire(analysis, state, x, colour):
    """Hollow balls and thin sticks."""
    i, j = _bonds(analysis, state).T
    rings = ''.join(f'<circle cx="{_number(p[0])}" cy="{_number(p[1])}" r="{UNIT * BALLS.get(s, OTHER_BALL)[1]:g}"/>'
                    for s, p in zip(analysis.symbols, x))
    return f'<g fill="none" stroke="{colour}" stroke-width="1.3"><path d="{_segments(x[i], x[j])}"/>{rings}</g>'


def overlay(analysis, alternative):
    """The minimum of state 1 as balls and sticks, and that of state 2 over it as lines, each in its colour."""
    x = [_project(geometry, view_of(analysis)) for geometry in analysis.geometries]
    parts = [_molecule(analysis, 0, [x[0]], 'var(--state1)'), _wire(analysis, 1, x[1], 'var(--state2)'),
             _numbers(analysis, x[0])]
    return _svg(parts, np.concatenate(x), alternative, 'still')
