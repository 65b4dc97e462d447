#!/usr/bin/env python3
"""pages_test.py CHECKOUT - links between pages lead somewhere, and the tests that a page names exist."""
import pathlib
import re
import sys

top = pathlib.Path(sys.argv[1])
tests = {f'{suite}.{name}' for path in (top / 'tests').glob('*.cpp')
         for suite, name in re.findall(r'^TEST(?:_F)?\((\w+), (\w+)\)', path.read_text(), re.M)}
faults = []
for page in [*top.glob('*.md'), *top.glob('docs/**/*.md')]:
    text = page.read_text()
    faults += [f'{page.name} links to {link}' for link in re.findall(r'\]\(([\w./-]+)\)', text)
               if not (page.parent / link).exists()]
    faults += [f'{page.name} names the test {test}' for test in re.findall(r'`([A-Z]\w+\.[A-Z]\w+)`', text)
               if test not in tests]
print('\n'.join(faults))
sys.exit(bool(faults))
