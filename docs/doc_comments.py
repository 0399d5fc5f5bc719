#!/usr/bin/env python3
"""Doxygen input filter: turns the plain // comments of a public header into documentation.

The headers are written for people reading them: a block of // lines above a declaration says
what it does, and the block at the top of a file says what the file offers. Doxygen reads only
its own comment forms, so this filter (run on each file as it is read, the file itself unchanged)
makes the top block the file's description and every block that stands right above a declaration
that declaration's documentation. Blocks followed by a blank line (section rulers, notes) stay
plain comments. Characters Doxygen would take as commands or markup are escaped, except in
example lines (indented by three or more spaces), which become code blocks.
"""
import re
import sys

COMMENT = re.compile(r'^(\s*)//(?![/!])(.*)$')
SPECIAL = re.compile(r'([\\@<>&#%$"])')
CODE = ' ~~~{.cpp}'
END_CODE = ' ~~~'


def escaped(text):
    """Text with the characters Doxygen reads as commands or markup escaped."""
    return SPECIAL.sub(r'\\\1', text)


def is_example(text):
    return text.startswith('   ')


def doc_lines(indent, texts):
    """A block of // texts as documentation lines; runs of example lines become code blocks."""
    out = []
    in_code = False
    for text in texts:
        if is_example(text) != in_code:
            in_code = is_example(text)
            out.append(indent + '///' + (CODE if in_code else END_CODE) + '\n')
        out.append(indent + '///' + (text if in_code else escaped(text)) + '\n')
    if in_code:
        out.append(indent + '///' + END_CODE + '\n')
    return out


def filtered(lines):
    out = []
    i = 0
    at_top = True
    while i < len(lines):
        match = COMMENT.match(lines[i])
        if not match:
            at_top = at_top and lines[i].strip() == ''
            out.append(lines[i])
            i += 1
            continue
        block_end = i
        while block_end < len(lines) and COMMENT.match(lines[block_end]):
            block_end += 1
        follows_declaration = block_end < len(lines) and lines[block_end].strip() != ''
        block = [COMMENT.match(line).groups() for line in lines[i:block_end]]
        texts = [text for _, text in block]
        if at_top:
            out.append(block[0][0] + '/// \\file\n')
            out.extend(doc_lines(block[0][0], texts))
        elif follows_declaration:
            out.extend(doc_lines(block[0][0], texts))
        else:
            out.extend(lines[i:block_end])
        at_top = False
        i = block_end
    return out


def main():
    with open(sys.argv[1], encoding='utf-8') as source:
        sys.stdout.write(''.join(filtered(source.readlines())))


if __name__ == '__main__':
    main()
