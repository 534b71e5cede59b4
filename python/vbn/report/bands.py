"""What the page says of a spectrum: sentences, pictures, the strongest lines and the rates."""
import math

import numpy as np
from markupsafe import Markup

from vbn.report import pictures

LINES = 8  # in the table of each band


def _level(pairs):
    """A vibrational level by its excited modes, counted from 1, with their quanta; 0 is the lowest level."""
    return Markup(' ').join(Markup('{}<sup>{}</sup>').format(mode + 1, quanta) for mode, quanta in pairs) if pairs else '0'


def _lines(band):
    return [{'at': band.line_wavenumbers[i], 'strength': band.line_strengths[i], 'initial': _level(band.initial_levels[i]),
             'final': _level(band.final_levels[i])} for i in np.argsort(-band.line_strengths, kind='stable')[:LINES]]


def _sentences(spectrum, names):
    if spectrum.energy_of_origin is not None:
        yield (f'The 0-0 line is at {spectrum.energy_of_origin:.0f} cm⁻¹; the minima are {spectrum.energy_of_minima:.0f} cm⁻¹ '
               'apart.')
    for name in names:
        band = getattr(spectrum, name)
        parts = [f'{mean:.0f} cm⁻¹ with a standard deviation of {width:.0f} cm⁻¹ at {temperature:g} K'
                 for mean, width, temperature in zip(band.means, band.standard_deviations, spectrum.temperatures)
                 if math.isfinite(mean)]
        side = 'above' if name == 'absorption' else 'below'
        yield f'{name.capitalize()} has its mean {side} the 0-0 line by {", ".join(parts)}, without broadening.'
    if spectrum.left_out:
        yield f'Left out: {"; ".join(spectrum.left_out)}.'


def content(spectrum, picture):
    """What the template shows of a spectrum, None without one; `picture` makes a picture of a drawing function."""
    if spectrum is None:
        return None
    drawn = pictures.of_bands(spectrum)
    names = [name for name, _, _ in drawn]
    sentences = list(_sentences(spectrum, names))
    made = []
    for name, draw, height in drawn:
        caption = (f'{name.capitalize()}, full width at half maximum {spectrum.widths[0]:g} cm⁻¹; the sticks are the lines '
                   'without broadening.')
        made.append(picture(name, draw, height, caption, f'{caption} {" ".join(sentences)}'))
    return {'sentences': sentences, 'pictures': made, 'rates': spectrum.rates,
            'lines': [(name, _lines(getattr(spectrum, name))) for name in names if len(getattr(spectrum, name).line_strengths)],
            'axis': 'wavenumber' if spectrum.energy_of_origin is not None else 'from the 0-0 line'}
