#!/usr/bin/env python3
"""The documentation as a newcomer meets it: a README read in two minutes, with the two commands
and a picture near the top; every document and picture it names there; short paragraphs; and a
picture of every page of both windows in the gallery. One PASS or FAIL line a check."""
import os
import re
import sys

root = os.path.abspath(os.path.join(os.path.dirname(__file__), '..', '..'))
failed = 0


def check(ok, what, why=''):
    global failed
    print(('PASS ' if ok else 'FAIL ') + what + ('' if ok or not why else ': ' + why))
    failed += 0 if ok else 1


def read(rel):
    with open(os.path.join(root, rel), encoding='utf-8') as f:
        return f.read()


readme = read('README.md')
lines = readme.split('\n')
if lines and lines[-1] == '':
    lines.pop()
docs = ['README.md'] + ['docs/' + n for n in sorted(os.listdir(os.path.join(root, 'docs'))) if n.endswith('.md')]

check(len(lines) <= 150, 'README.md is 150 lines or fewer', f'{len(lines)} lines')
first30 = '\n'.join(lines[:30])
check('make run' in first30 and 'make test' in first30, 'the two commands stand in the first 30 lines')
check(any(re.search(r'!\[[^\]]*\]\([^)]+\.png\)', l) for l in lines[:40]), 'a picture stands in the first 40 lines')
for name in ('docs/32-bit.md', 'docs/compagnon.md', 'docs/testing.md', 'docs/windows.md', 'docs/pages.md'):
    check(f']({name})' in readme, f'README.md links {name}')


def paragraphs(text):
    """Runs of prose lines: not headings, tables, code (fenced or indented), nor blank. A list
    item starts a paragraph of its own."""
    runs, run, fenced = [], [], False
    for number, line in enumerate(text.split('\n'), 1):
        if line.startswith('```'):
            fenced = not fenced
        prose = not fenced and line.strip() and not line.startswith(('#', '|', '    ', '```', '!['))
        starts_item = re.match(r'\s*([-*]|\d+\.) ', line) is not None
        if not prose or starts_item:
            if run:
                runs.append(run)
            run = []
        if prose:
            run.append(number)
    if run:
        runs.append(run)
    return runs


for doc in docs:
    text = read(doc)
    longest = max((len(r) for r in paragraphs(text)), default=0)
    at = next((r[0] for r in paragraphs(text) if len(r) == longest), 0)
    check(longest <= 8, f'{doc}: no paragraph runs longer than 8 lines', f'{longest} lines from line {at}')
    folder = os.path.dirname(os.path.join(root, doc))
    for target in re.findall(r'\]\(([^)#\s]+)', text):
        if re.match(r'[a-z]+:', target):
            continue  # an address outside the project
        path = os.path.normpath(os.path.join(folder, target))
        exists = os.path.exists(path)
        check(exists, f'{doc} names {target}, which exists')
        if exists and target.endswith('.png'):
            size = os.path.getsize(path)
            check(size <= 80 * 1024, f'{doc}: {target} is 80 KB or less', f'{size} bytes')

# One picture of every page of both windows, by the names make screenshots gives them.
gallery = read('docs/pages.md')
pages = ['accueil', 'windows', 'internet', 'protection', 'a-propos', 'testlab-windows', 'testlab-pc',
         'testlab-disques', 'testlab-bios', 'testlab-processeur', 'testlab-son', 'outils-dossiers-speciaux',
         'outils-personnaliser-dossier', 'outils-information-oem', 'outils-resolution', 'outils-arret']
for page in pages:
    check(f'(pages/{page}.png)' in gallery, f'the gallery shows pages/{page}.png')

sys.exit(1 if failed else 0)
