#!/usr/bin/env python3
"""layers_test.py CHECKOUT - files include only files of their own folder and of the lower layers that BELOW
lists for the folder, and no includes form a cycle."""
import pathlib
import re
import sys

BELOW = {
    'platform': {'KelComWrapper'},
    'text': {'KelComWrapper'},
    'limits': set(),
    'qt': set(),
    'files': {'KelComWrapper', 'limits', 'qt', 'text'},
    'lists': {'qt'},
    'trees': {'limits', 'lists', 'qt'},
    'parsing': {'files', 'limits', 'lists'},
    'serialize': {'limits', 'qt', 'trees'},
    'com': {'KelComWrapper', 'KelXmlLib'},
    'filer': {'KelXmlLib', 'files', 'qt', 'text'},
    'dom': {'KelComWrapper', 'KelXmlLib', 'com', 'files', 'lists', 'parsing', 'platform', 'qt', 'serialize', 'text',
            'trees'},
    'layer': {'KelComWrapper', 'KelXmlLib', 'dom', 'files', 'limits', 'parsing', 'qt', 'serialize', 'text', 'trees'},
    'module': {'KelComWrapper', 'KelXmlLib'},
}

top = pathlib.Path(sys.argv[1])
faults = []
includes = {}
for folder, below in BELOW.items():
    files = [path for path in (top / folder).rglob('*') if path.suffix in ('.h', '.cpp')]
    if not files:
        faults.append(f'{folder} must contain sources')
    for path in files:
        named = re.findall(r'^#include "(.+)"', path.read_text(), re.M)
        included = [name if '/' in name else f'{folder}/{name}' for name in named]
        includes[f'{path.relative_to(top)}'] = included
        faults += [f'{path.relative_to(top)} must not include {name}' for name in included
                   if name.split('/')[0] not in below | {folder}]


def cycle(name, path):
    if name in path:
        return path[path.index(name):] + [name]
    return next(filter(None, (cycle(other, path + [name]) for other in includes.get(name, []))), None)


faults += {'includes must not form a cycle: ' + ' -> '.join(found) for found in (cycle(name, []) for name in includes) if found}
print('\n'.join(faults))
sys.exit(bool(faults))
