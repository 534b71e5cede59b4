#!/usr/bin/env python3
"""Analyses one pair of files: analyse.py STATE1 STATE2 RESULT KEYS, the keys as JSON. The result holds what the tables need,
or the reason why there is none."""
import json
import os
import sys
import warnings

import numpy as np

import vbn

state1, state2, result, keys = sys.argv[1:]
with warnings.catch_warnings(record=True) as found:
    warnings.simplefilter('always', vbn.ResultWarning)
    try:
        a = vbn.analyse(state1, state2, **json.loads(keys))
        routes = {'': a.cartesian} | ({'internal_': a.internal} if a.internal else {})
        values = {'symbols': a.symbols, 'masses': a.masses, 'geometries': a.geometries, 'normal_modes': a.normal_modes,
                  'frequencies': a.frequencies, 'vibrations1': a.vibrations[0], 'vibrations2': a.vibrations[1]}
        for name, route in routes.items():
            values |= {f'{name}huang_rhys': route.huang_rhys, f'{name}energies': route.reorganisation_energies}
    except vbn.Error as stop:
        print(stop)
        values = {'failure': [str(stop).split('\n')[0].removeprefix('error: '), stop.file or '', stop.line or '',
                              stop.expected or '']}
values['warnings'] = np.array([str(each.message) for each in found], dtype=str)
with open(f'{result}.part', 'wb') as file:
    np.savez_compressed(file, **values)
os.replace(f'{result}.part', result)
