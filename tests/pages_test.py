#!/usr/bin/env python3
"""pages_test.py CHECKOUT - links between pages work, the tests that pages name exist, and no-ops.md and xmldom.h list
exactly the methods in dom/noop as no-ops."""
import pathlib
import re
import sys

top = pathlib.Path(sys.argv[1])
tests = {f'{suite}.{name}' for path in (top / 'tests').glob('*.cpp')
         for suite, name in re.findall(r'^TEST(?:_F)?\((\w+), (\w+)\)', path.read_text(), re.M)}
tests |= set(re.findall(r'^= (\w+\.\w+)$', (top / 'tests/tree_calls.txt').read_text(), re.M))
faults = []
for page in [*top.glob('*.md'), *top.glob('docs/**/*.md')]:
    text = page.read_text()
    faults += [f'{page.name} must not link to {link}, which does not exist' for link in re.findall(r'\]\(([\w./-]+)\)', text)
               if not (page.parent / link).exists()]
    faults += [f'{page.name} must not name the test {test}, which does not exist'
               for test in re.findall(r'`([A-Z]\w+\.[A-Z]\w+)`', text) if test not in tests]


def methods(pattern):
    """Returns, for each class, the methods that are defined in the files that match the pattern."""
    found = {}
    for path in top.glob(pattern):
        for owner, name in re.findall(r'^HRESULT CMorvXMLDOM(\w+)::(\w+)\(', path.read_text(), re.M):
            found.setdefault(owner, set()).add(name)
    return found


no_ops = methods('dom/noop/*.cpp')
every_no_op, working = set().union(*no_ops.values()), set().union(*methods('dom/*.cpp').values())
page = ' '.join(re.findall(r'^\| (`.*?) \|', (top / 'docs/no-ops.md').read_text(), re.M))
faults += [f'no-ops.md must list {name} if and only if dom/noop defines {name}' for name in every_no_op ^ set(re.findall(r'`(\w+)`', page))]
faults += [f'no-ops.md must write "{name} of" if and only if {name} is a no-op for some objects and works for others'
           for name in every_no_op & working ^ set(re.findall(r'`(\w+)` of ', page))]
header = (top / 'include/KelXmlLib/xmldom.h').read_text()
for interface, body in re.findall(r'^class IXMLDOM(\w+) : (.*?)^};', header, re.S | re.M):
    declared, grouped = (set(re.findall(r'virtual HRESULT (\w+)\(', text))
                         for text in (body, ' '.join(re.findall('@{.*?@}', body, re.S))))
    classes = ('Node', 'Document', 'Element', 'Attribute') if interface == 'Node' else (interface,)
    faults += [f'xmldom.h must mark IXMLDOM{interface}::{name} as a no-op if and only if dom/noop defines it for the whole interface'
               for name in declared & set.intersection(*(no_ops[owner] for owner in classes)) ^ grouped]
print('\n'.join(faults))
sys.exit(bool(faults))
