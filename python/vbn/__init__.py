"""Vibrations of two electronic states of a molecule, related mode by mode.

    import vbn
    a = vbn.analyse('s0.out', 's1.out', sort_mode=1)
    print(a)                                   # the modes with the largest reorganisation energy
    a.frequencies[0]                           # cm-1, state 1
    a.huang_rhys[1]                            # Huang-Rhys factors on the surface of state 2
    a.internal.reorganisation_energies[1]      # the same states through internal coordinates, cm-1
    a.write_modes('s0_modes.xyz')              # true motions for a molecule viewer
    a.to_json('s0_s1.json')
    s = vbn.spectrum(a, energy=27000, dipole=[0, 0, 1.2])      # bands, lines and rates

`analyse` takes two frequency calculations, `analyse_input` an input file of the program vbn; both return an
`Analysis`. The keys of the input group are keyword arguments of the same names; `keys()` lists them. Arrays are
numpy arrays, made once and not to be written to; atoms, modes and states count from 0 in them (in keys they count
from 1, as in input files). Warnings of the analysis are Python warnings, of the kind `ResultWarning`; what cannot be
analysed raises `Error`. Nothing is printed, and no file is written except by the methods that are asked to. `vbn.plot`
draws pictures with matplotlib, and `vbn.report` makes a page with tables and pictures.

The analysis does not hold the interpreter lock, so that threads run side by side. While one runs, the BLAS has one
thread, which makes the last bits of a result independent of the number of cores."""
from vbn._core import keys, version as __version__
from vbn._analysis import (Analysis, Couplings, Error, InternalCoordinates, ResultWarning, Route, analyse,
                          analyse_input)
from vbn._spectrum import Band, Rate, Spectrum, spectrum

__all__ = ['Analysis', 'Band', 'Couplings', 'Error', 'InternalCoordinates', 'Rate', 'ResultWarning', 'Route', 'Spectrum',
           'analyse', 'analyse_input', 'keys', 'spectrum', '__version__']

for _each in (Analysis, Couplings, Error, InternalCoordinates, ResultWarning, Route, analyse, analyse_input, Band,
              Rate, Spectrum, spectrum):
    _each.__module__ = 'vbn'
