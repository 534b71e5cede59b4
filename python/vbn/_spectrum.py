"""Spectra, lines and rates of an analysis as arrays."""
import os
import warnings

import numpy as np

from vbn import _core
from vbn._analysis import Analysis, Error, ResultWarning, _attribute, _text, _Values


class Band(_Values):
    """A band of absorption or emission, with its lines. T temperatures, W widths, m energies, p times, n lines."""

    __slots__ = ()
    wavenumbers = _attribute('wavenumbers', """Shape (m,), cm-1, increasing: the energy of the photon, or without the key
        energy that from the 0-0 line.""")
    line_shapes = _attribute('line_shapes', "Shape (T, W, m), cm: the integral over wavenumbers is 1.")
    intensities = _attribute('intensities', """Shape (T, W, m): of absorption the molar absorption coefficient in
        dm3 mol-1 cm-1, of emission photons in 1/s per cm-1; None without a dipole or without the key energy.""")
    reorganisation_energy = _attribute('reorganisation_energy', "cm-1: that of the final state at the initial minimum.")
    means = _attribute('means', "Shape (T,), cm-1 from the 0-0 line towards more vibrational energy: the exact mean.")
    standard_deviations = _attribute('standard_deviations', "Shape (T,), cm-1: exact, without broadening.")
    band_means = _attribute('band_means', "Shape (T,), cm-1: the mean of the band of the first width.")
    band_standard_deviations = _attribute('band_standard_deviations', """Shape (T,), cm-1: that of the band, less its
        Gaussian broadening.""")
    sums = _attribute('sums', "Shape (T,): the integral of the band of the first width; 1 but for rounding.")
    times = _attribute('times', "Shape (p,), fs.")
    correlation = _attribute('correlation', "Shape (T, p), complex: chi(t) without operator and without broadening.")
    dipole_correlation = _attribute('dipole_correlation', """Shape (T, p), complex, e2 bohr2: the same with the dipole and its
        derivatives; None without a dipole.""")
    line_wavenumbers = _attribute('line_wavenumbers', "Shape (n,), cm-1, as `wavenumbers`.")
    line_strengths = _attribute('line_strengths', """Shape (n,): population of the initial level times the squared
        overlap; all lines together have 1.""")
    line_overlaps = _attribute('line_overlaps', "Shape (n,): their roots, with the sign of the overlap.")
    initial_levels = _attribute('initial_levels', """A list of n lists of pairs (mode, quanta), modes from 0 as in `Analysis`;
        an empty list is the lowest level.""")
    final_levels = _attribute('final_levels', "The same for the final state.")
    complete_above = _attribute('complete_above', "No line of at least this strength is missing.")


class Rate(_Values):
    """A rate in 1/s."""

    __slots__ = ()
    process = _attribute('process', "'radiative', 'internal conversion' or 'intersystem crossing'.")
    temperature = _attribute('temperature', "K.")
    fwhm = _attribute('fwhm', "The width, cm-1.")
    value = _attribute('value', "1/s.")
    at_half_width = _attribute('at_half_width', "1/s: with half the width.")
    at_double_width = _attribute('at_double_width', "1/s: with twice the width.")
    mode_shares = _attribute('mode_shares', """Of internal conversion, 1/s: the share of each mode of
        `Spectrum.vibrations[0]`; otherwise empty.""")


class Spectrum(_Values):
    """Bands, lines and rates of two states: what the program vbn-spectrum writes, in full precision."""

    __slots__ = ()
    absorption = _attribute('absorption', "The `Band` of absorption; None when it is not asked for.")
    emission = _attribute('emission', """The `Band` of emission, also when only other decays are asked for; None without
        any.""")
    rates = _attribute('rates', "A list of `Rate`.")
    temperatures = _attribute('temperatures', "Shape (T,), K.")
    widths = _attribute('widths', "Shape (W,), cm-1.")
    vibrations = _attribute('vibrations', """Shape (2, N): the modes of each state, from 0, that take part.""")
    left_out = _attribute('left_out', "Which modes were left out and why, a list of texts.")
    deviation = _attribute('deviation', """The largest element of S S^T - 1 of these vibrations, before S was made
        orthogonal.""")
    energy_of_minima = _attribute('energy_of_minima', "cm-1, from minimum to minimum; None without the key energy.")
    energy_of_origin = _attribute('energy_of_origin', "cm-1, of the 0-0 line; None without the key energy.")
    zero_point_difference = _attribute('zero_point_difference', "cm-1: state 2 less state 1.")
    warnings = _attribute('warnings', "The warnings, a list of texts.")

    def __repr__(self):
        parts = [name for name in ('absorption', 'emission') if getattr(self, name) is not None]
        return f'<vbn.Spectrum: {", ".join(parts)}, {self.vibrations.shape[1]} vibrations, {len(self.rates)} rates>'


def spectrum(analysis, **keys):
    """Bands, lines and rates of an `Analysis`, as a `Spectrum`.

    **keys: keys of the group &spectrum by their names (docs/spectra.md): what=['absorption', 'emission'], energy=3.4,
    energy_unit='eV', temperature=[0, 300], fwhm=200, dipole=[0, 0, 1.2]. A key that takes several values takes a list or
    one value. Modes count from 1 in leave_out. The dipole of the key `ftdipd` and the couplings of `fnacme` are those of
    the analysis.

    Raises `TypeError` for what is no analysis or no number, text or list of them, and `Error` for a key or value with a
    fault and for states that do not go together."""
    if not isinstance(analysis, Analysis):
        raise TypeError(f'vbn.spectrum takes an Analysis, not {type(analysis).__name__}')
    group = ''.join(f' {name} = {_value(name, value)}\n' for name, value in keys.items())
    return spectrum_of_group(analysis, f'&spectrum\n{group}/\n')


def spectrum_of_group(analysis, text):
    """The same with the keys as a text that has the group &spectrum, as that of an input file."""
    values = {name: getattr(analysis, name) for name in
              ('masses', 'geometries', 'normal_modes', 'frequencies', 'duschinsky', 'dipole_state', 'transition_dipole',
               'rotated_dipole_derivatives')}
    values['cartesian'] = analysis.cartesian.displacements
    values['internal'] = None if analysis.internal is None else analysis.internal.displacements
    values['couplings'] = None if analysis.couplings is None else analysis.couplings.along_modes_of_1
    raw = _core.spectrum(values, os.fsencode(text))
    for text in raw['warnings']:
        warnings.warn(text, ResultWarning, stacklevel=3)
    end = raw.get('end')
    if end is not None:
        raise Error(end['message'].strip(), end['file'] or None, end['line'] or None, end['expected'])
    return Spectrum(raw | {name: _band(raw[name]) for name in ('absorption', 'emission')}
                    | {'rates': [Rate(rate) for rate in raw['rates']]})


def _band(raw):
    if raw is None:
        return None
    moments = raw.pop('moments')
    names = ('means', 'standard_deviations', 'band_means', 'band_standard_deviations', 'sums')
    return Band(raw | {name: moments[:, i].copy() for i, name in enumerate(names)})


def _value(name, value):
    if isinstance(value, (list, tuple, np.ndarray)):
        return ', '.join(_value(name, each) for each in value)
    if isinstance(value, np.generic):
        value = value.item()
    if isinstance(value, str):
        return _text(value)
    if isinstance(value, bool) or not isinstance(value, (int, float)):
        raise TypeError(f'the key {name} takes numbers or texts, not {type(value).__name__}')
    return repr(value)
