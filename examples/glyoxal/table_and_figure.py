#!/usr/bin/env python3
"""From two frequency files to a table and a figure: the vibrations that an electronic excitation sets in motion.

    ./table_and_figure.py [STATE1 STATE2]

writes strongest_modes.csv and strongest_modes.svg into the current folder. The cells between "# %%" can be run one by
one in an editor that knows them, or in a notebook. Needs numpy, matplotlib and the package vbn."""

# %% The two states. sort_mode=1 puts each mode of state 1 beside the mode of state 2 that resembles it most.
import csv
import sys

import matplotlib.pyplot as plt
import numpy as np
import vbn

files = sys.argv[1:3] if len(sys.argv) == 3 else ('s0.dat', 't1.dat')
a = vbn.analyse(*files, sort_mode=1)
print(a)

# %% The modes of state 2 with the largest reorganisation energies: these make the absorption band.
energies = a.reorganisation_energies[1]
strongest = [mode for mode in np.argsort(-energies)[:8] if energies[mode] > 1.0]
partner = dict(zip(a.pairs[:, 1], a.pairs[:, 0]))

# %% What moves: the three internal coordinates that change most along each of them. A step dQ along mode i moves the
# atoms by normal_modes[:, i] / root of the mass; the change of each bond is the difference of its length.
def bond_changes(mode, step=0.01):
    ic = a.internal_coordinates
    x = a.geometries[1]
    moved = x + step * (a.normal_modes[1][:, mode].reshape(-1, 3) / np.sqrt(a.masses[1])[:, None])
    bonds = [atoms[:2] for kind, atoms in zip(ic.kinds, ic.atoms) if kind == 'bond']
    change = [np.linalg.norm(moved[i] - moved[j]) - np.linalg.norm(x[i] - x[j]) for i, j in bonds]
    names = [f'{a.symbols[i]}{i + 1}-{a.symbols[j]}{j + 1}' for i, j in bonds]
    return ', '.join(names[k] for k in np.argsort(-np.abs(change), kind='stable')[:3])


# %% The table.
with open('strongest_modes.csv', 'w', newline='', encoding='utf-8') as file:
    table = csv.writer(file)
    table.writerow(['mode of state 2', 'frequency (cm-1)', 'Huang-Rhys factor', 'reorganisation energy (cm-1)',
                    'mode of state 1', 'its frequency (cm-1)', 'overlap', 'bonds that change most'])
    for mode in strongest:
        other = partner[mode]
        table.writerow([mode + 1, f'{a.frequencies[1][mode]:.1f}', f'{a.huang_rhys[1][mode]:.4f}',
                        f'{energies[mode]:.1f}', other + 1, f'{a.frequencies[0][other]:.1f}',
                        f'{a.duschinsky[other, mode]:.3f}', bond_changes(mode)])

# %% The figure: Huang-Rhys factors of both states as lines over the frequency, one up and one down.
figure, axes = plt.subplots(figsize=(5.0, 3.2), layout='constrained')
for state, sign, colour in ((0, -1.0, 'tab:blue'), (1, 1.0, 'tab:red')):
    axes.vlines(a.frequencies[state][6:], 0.0, sign * a.huang_rhys[state][6:], colour, linewidth=2.0,
                label=f'on the surface of state {state + 1}')
axes.axhline(0.0, color='black', linewidth=0.8)
axes.yaxis.set_major_formatter(lambda value, _: f'{abs(value):g}')
axes.set_xlabel('frequency (cm$^{-1}$)')
axes.set_ylabel('Huang-Rhys factor')
axes.set_title(f'{a.formula}: {a.reorganisation_energies[1].sum():.0f} cm$^{{-1}}$ on the surface of state 2')
axes.legend(frameon=False, loc='upper left')
figure.savefig('strongest_modes.svg')
