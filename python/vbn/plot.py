"""Pictures of an analysis. Each function draws into matplotlib axes and returns them; without axes it makes a figure.

    import vbn.plot
    figure, axes = plt.subplots()
    vbn.plot.huang_rhys(a, axes)

Modes are numbered from 1 in labels, as in the tables of the program; arguments count from 0."""
import numpy as np

from vbn._viewer_files import cartesian_modes, vibrations

STATE_COLOURS = ('#3b6fb6', '#c8553d')
# Colours and radii (angstrom) of the balls of common elements.
BALLS = {'H': ('#f2f2f2', 0.22), 'B': ('#e8a79c', 0.36), 'C': ('#555555', 0.34), 'N': ('#3050c8', 0.33),
         'O': ('#cc2222', 0.32), 'F': ('#6ec05c', 0.30), 'Si': ('#c9a26b', 0.45), 'P': ('#e07b1f', 0.43),
         'S': ('#d8b520', 0.43), 'Cl': ('#2f9e44', 0.42), 'Br': ('#8a3324', 0.46)}
OTHER_BALL = ('#9a6fb0', 0.45)
LINE_STYLES = ('-', '--', ':', '-.')
BAND_LABELS = {'absorption': 'absorption (dm$^3$ mol$^{-1}$ cm$^{-1}$)', 'emission': 'emission (s$^{-1}$ per cm$^{-1}$)'}
TILT = np.radians(60.0)  # of the view of a motion along the line of sight


def _axes(axes):
    if axes is None:
        import matplotlib.pyplot as plt
        axes = plt.subplots(layout='constrained')[1]
    return axes


def _route(analysis, route):
    if route not in ('cartesian', 'internal'):
        raise ValueError(f"the route must be 'cartesian' or 'internal', not {route!r}")
    chosen = getattr(analysis, route)
    if chosen is None:
        raise ValueError('there is no internal route with the key set_cart')
    return chosen


def _spikes(analysis, values, axes, label):
    axes = _axes(axes)
    for state, sign in ((0, -1.0), (1, 1.0)):
        at = vibrations(analysis, state)
        axes.vlines(analysis.frequencies[state][at], 0.0, sign * values[state][at], STATE_COLOURS[state], linewidth=2.0,
                    label=f'state {state + 1}')
    axes.axhline(0.0, color='0.2', linewidth=0.8)
    axes.margins(y=0.25)
    axes.yaxis.set_major_formatter(lambda value, _: f'{abs(value):g}')
    axes.set_xlabel('frequency (cm$^{-1}$)')
    axes.set_ylabel(label)
    axes.legend(frameon=False, loc='upper left', ncols=2)
    return axes


def huang_rhys(analysis, axes=None, route='cartesian'):
    """Huang-Rhys factors over the frequency: state 2 up, state 1 down."""
    return _spikes(analysis, np.abs(_route(analysis, route).huang_rhys), axes, 'Huang-Rhys factor')


def reorganisation_energies(analysis, axes=None, route='cartesian'):
    """Reorganisation energies (cm-1) over the frequency: state 2 up, state 1 down."""
    values = _route(analysis, route).reorganisation_energies
    return _spikes(analysis, values, axes, 'reorganisation energy (cm$^{-1}$)')


def duschinsky(analysis, axes=None):
    """Magnitudes of the Duschinsky matrix of the vibrations, in the order of the pairs."""
    axes = _axes(axes)
    rows, columns = (analysis.pairs[np.isin(analysis.pairs[:, k], vibrations(analysis, k)), k] for k in (0, 1))
    last = len(analysis.pairs) + 0.5
    image = axes.imshow(np.abs(analysis.duschinsky[np.ix_(rows, columns)]), cmap='cividis', vmin=0.0, vmax=1.0,
                        extent=(last - len(columns), last, last, last - len(rows)), interpolation='nearest')
    axes.figure.colorbar(image, ax=axes, label='|S|')
    axes.set_xlabel('pair (modes of state 2)')
    axes.set_ylabel('pair (modes of state 1)')
    return axes


def internal_coordinates(analysis, axes=None, count=12):
    """The internal coordinates with the largest shares in the reorganisation energy (cm-1), as bars for both states."""
    ic = analysis.internal_coordinates
    if ic is None:
        raise ValueError('there are no internal coordinates with the key set_cart')
    axes = _axes(axes)
    largest = np.argsort(-np.abs(ic.shares).max(axis=0), kind='stable')[:count][::-1]
    rows = np.arange(len(largest))
    for state, shift in ((0, 0.2), (1, -0.2)):
        axes.barh(rows + shift, ic.shares[state][largest], 0.4, color=STATE_COLOURS[state], label=f'state {state + 1}')
    names = ['-'.join(f'{analysis.symbols[a]}{a + 1}' for a in ic.atoms[i] if a >= 0) for i in largest]
    axes.set_yticks(rows, names)
    axes.axvline(0.0, color='0.2', linewidth=0.8)
    axes.set_xlabel('share in the reorganisation energy (cm$^{-1}$)')
    axes.legend(frameon=False, loc='lower right')
    return axes


def band(spectrum, which='absorption', axes=None):
    """A band of a `vbn.Spectrum`, 'absorption' or 'emission', at each temperature with the first width, over the energy of
    the photon; its lines as sticks, the strongest half as high as the band."""
    shown = getattr(spectrum, which) if which in ('absorption', 'emission') else None
    if shown is None:
        raise ValueError(f'the spectrum has no band {which!r}')
    axes = _axes(axes)
    curves = (shown.line_shapes if shown.intensities is None else shown.intensities)[:, 0]
    colour = STATE_COLOURS[1 if which == 'absorption' else 0]
    if len(shown.line_strengths):
        heights = shown.line_strengths * (0.5 * np.nanmax(curves) / shown.line_strengths.max())
        axes.vlines(shown.line_wavenumbers, 0.0, heights, '0.45', linewidth=0.8, label='lines')
    for curve, temperature, style in zip(curves, spectrum.temperatures, LINE_STYLES * len(curves)):
        axes.plot(shown.wavenumbers, curve, style, color=colour, label=f'{temperature:g} K')
    axes.set_ylim(bottom=0.0)
    axes.set_xlim(shown.wavenumbers[0], shown.wavenumbers[-1])
    where = 'wavenumber' if spectrum.energy_of_origin is not None else 'from the 0-0 line'
    axes.set_xlabel(f'{where} (cm$^{{-1}}$)')
    axes.set_ylabel('line shape (cm)' if shown.intensities is None else BAND_LABELS[which])
    axes.ticklabel_format(axis='y', scilimits=(-2, 4))
    axes.legend(frameon=False)
    return axes


def view_of(analysis, motion=None):
    """The rotation (3, 3) after which the molecule is widest along x and thinnest along the line of sight, z; tilted
    where a motion (N, 3) would mostly go along the line of sight."""
    view = np.linalg.svd(analysis.geometries.reshape(-1, 3), full_matrices=False)[2]
    view[2] *= np.sign(np.linalg.det(view))
    if motion is not None and 2.0 * np.sum((motion @ view[2]) ** 2) > np.sum(motion ** 2):
        cosine, sine = np.cos(TILT), np.sin(TILT)
        view = np.array([[1.0, 0.0, 0.0], [0.0, cosine, sine], [0.0, -sine, cosine]]) @ view
    return view


def _draw(axes, analysis, state, view, colour=None):
    """Draws balls and sticks, those nearer to the eye in front; outlined in the colour if one is given."""
    x = analysis.geometries[state] @ view.T
    ic = analysis.internal_coordinates
    back = 1000.0 * (state - 2) if colour else 0.0  # one molecule wholly behind the other
    for i, j in np.argwhere(np.triu(ic.bonds[state])) if ic else ():
        axes.plot(x[[i, j], 0], x[[i, j], 1], color=colour or '0.45', linewidth=3.5 - 2.0 * state if colour else 2.5,
                  solid_capstyle='round', zorder=back + min(x[i, 2], x[j, 2]) - 50.0)
    from matplotlib.patches import Circle
    for symbol, position in zip(analysis.symbols, x):
        fill, radius = BALLS.get(symbol, OTHER_BALL)
        axes.add_patch(Circle(position[:2], radius, facecolor=fill, edgecolor=colour or '0.2', zorder=back + position[2],
                              linewidth=1.8 if colour else 0.8, alpha=0.6 if colour else 1.0))
    axes.set_aspect('equal')
    axes.set_axis_off()
    axes.autoscale_view()
    axes.margins(0.1)
    return x


def geometries(analysis, axes=None):
    """The minima of both states over each other, outlined in the colours of the states."""
    axes = _axes(axes)
    view = view_of(analysis)
    for state in (0, 1):
        _draw(axes, analysis, state, view, STATE_COLOURS[state])
        axes.plot([], [], color=STATE_COLOURS[state], label=f'state {state + 1}')
    axes.legend(frameon=False, loc='upper right')
    return axes


def mode(analysis, state, number, axes=None, length=1.0):
    """A mode of a state (both from 0) as arrows on the atoms; the longest is `length` angstrom."""
    axes = _axes(axes)
    motion = cartesian_modes(analysis, state, [number])[0]
    view = view_of(analysis, motion)
    x = _draw(axes, analysis, state, view)
    arrows = motion @ view.T
    arrows *= length / np.linalg.norm(arrows, axis=1).max()
    seen = np.hypot(arrows[:, 0], arrows[:, 1]) > 0.08 * length
    axes.quiver(x[seen, 0], x[seen, 1], arrows[seen, 0], arrows[seen, 1], angles='xy', scale_units='xy', scale=1.0,
                color=STATE_COLOURS[state], width=0.008, zorder=100.0)
    ends = x + arrows
    axes.update_datalim(ends[:, :2])
    axes.autoscale_view()
    axes.set_title(f'state {state + 1}, mode {number + 1}: {analysis.frequencies[state][number]:.0f} cm$^{{-1}}$')
    return axes
