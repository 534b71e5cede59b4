"""The pictures of vbn.plot in the width of a journal's column: as SVG within a page, whose colours follow the page, and
as SVG and PDF files."""
import io
import re

from matplotlib import rc_context
from matplotlib.figure import Figure

from vbn import plot

COLUMN = 3.35  # inches, 85 mm
STYLE = {'font.size': 8.0, 'axes.labelsize': 8.0, 'axes.titlesize': 8.0, 'xtick.labelsize': 7.5, 'ytick.labelsize': 7.5,
         'legend.fontsize': 7.5, 'axes.linewidth': 0.7, 'lines.linewidth': 1.2, 'savefig.transparent': True,
         'text.color': '#333333', 'axes.edgecolor': '#333333', 'axes.labelcolor': '#333333', 'xtick.color': '#333333',
         'ytick.color': '#333333', 'pdf.fonttype': 42}
COLOURS = {'#333333': 'var(--ink)', '#737373': 'var(--faint)', plot.STATE_COLOURS[0]: 'var(--state1)', plot.STATE_COLOURS[1]: 'var(--state2)'}


def figure_of(draw, height):
    """A figure as wide as a column with axes that `draw` has drawn into; height in inches."""
    with rc_context(STYLE):
        figure = Figure(figsize=(COLUMN, height), layout='constrained')
        draw(figure.subplots())
    return figure


def saved(figure, kind, text_as='path'):
    """The bytes of the figure as svg or pdf, the same for the same figure."""
    file = io.BytesIO()
    with rc_context(STYLE | {'svg.fonttype': text_as, 'svg.hashsalt': 'vbn'}):
        metadata = {'Date': None, 'Creator': 'vbn'} if kind == 'svg' else {'CreationDate': None}
        figure.savefig(file, format=kind, dpi=300, metadata=metadata)
    return file.getvalue()


def inlined(figure, name, alternative):
    """The SVG element of the figure for a page: its own ids, the colours of the page, and an alternative text, which is
    escaped by the caller."""
    text = saved(figure, 'svg', text_as='none').decode()
    text = text[text.index('<svg'):]
    # Its style sheet would be that of the whole page.
    text = re.sub(r'<metadata>.*?</metadata>|<style.*?</style>', '', text, flags=re.S)
    text = re.sub(r'(?<=[\s"])id="', f'id="{name}-', text)
    text = re.sub(r'(url\(#|href="#)', rf'\g<1>{name}-', text)
    text = re.sub(r'<svg [^>]*?(viewBox="[^"]*")[^>]*>', rf'<svg \1 role="img" aria-label="{alternative}" stroke-linejoin="round" '
                  'xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink">', text, count=1)
    for colour, of_page in COLOURS.items():
        text = text.replace(colour, of_page)
    return text


def of_routes(analysis):
    """Names, functions and heights (inches) of the pictures of Huang-Rhys factors and reorganisation energies."""
    routes = [route for route in ('cartesian', 'internal') if getattr(analysis, route) is not None]
    for what in ('huang_rhys', 'reorganisation_energies'):
        for route in routes:
            yield f'{what}.{route}', (lambda axes, w=what, r=route: getattr(plot, w)(analysis, axes, r)), 2.3


def of_bands(spectrum):
    """Names, functions and heights of the pictures of the bands of a spectrum, which may be None."""
    return [(which, lambda axes, w=which: plot.band(spectrum, w, axes), 2.3) for which in ('absorption', 'emission')
            if spectrum is not None and getattr(spectrum, which) is not None]


def print_pictures(analysis, spectrum=None):
    """Names and contents of the files of all pictures, SVG and PDF of each."""
    from vbn.report.content import strongest
    pictures = [*of_routes(analysis), ('duschinsky', lambda axes: plot.duschinsky(analysis, axes), 2.8),
                ('geometries', lambda axes: plot.geometries(analysis, axes), 2.6)]
    if analysis.internal_coordinates is not None:
        pictures.append(('internal_coordinates', lambda axes: plot.internal_coordinates(analysis, axes), 3.0))
    pictures += of_bands(spectrum)
    for state, number in strongest(analysis):
        pictures.append((f'mode{number + 1}_of_state{state + 1}',
                         lambda axes, s=state, n=number: plot.mode(analysis, s, n, axes), 2.6))
    for name, draw, height in pictures:
        figure = figure_of(draw, height)
        figure.draw_without_rendering()
        figure.set_layout_engine('none')  # once is enough
        for kind in ('svg', 'pdf'):
            yield f'{name}.{kind}', saved(figure, kind)
