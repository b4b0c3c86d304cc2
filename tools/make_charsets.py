#!/usr/bin/env python3
"""Makes input/charset_tables.h and .cpp, the names and identifiers of character sets, from
tools/data/charset_names.tsv and tools/data/charset_ids.tsv. With --check only tells whether they
are stale."""

import generated

SCRIPT = 'make_charsets.py'

HEADER = '''#pragma once

#include <cstdint>

/// A character set name of documents and the character set code.
struct CharSetName {
    const char* name;
    std::uint16_t code;
};

/// A host character set identifier and the character set code.
struct CharSetIdentifier {
    std::uint32_t id;
    std::uint16_t code;
};

constexpr std::uint32_t kCharSetNameCount = %(names)d;
constexpr std::uint32_t kCharSetIdentifierCount = %(ids)d;

/// In the order of the search, which is not quite that of the names: a row never moves.
extern const CharSetName kCharSetNames[kCharSetNameCount];

/// Ascending by identifier; each stands once.
extern const CharSetIdentifier kCharSetIdentifiers[kCharSetIdentifierCount];
'''


def files():
    names = generated.rows('charset_names.tsv')
    ids = [(int(number, 16), int(code, 16)) for number, code in generated.rows('charset_ids.tsv')]
    assert [row[0] for row in ids] == sorted({row[0] for row in ids})
    name_lines = ['    {"%s", %s},' % (name, code) for code, name in names]
    id_lines = ['    {0x%X, 0x%X},' % row for row in ids]
    header = HEADER % {'names': len(names), 'ids': len(ids)}
    source = '#include "input/charset_tables.h"\n\n'
    source += generated.array('constexpr CharSetName kCharSetNames[]', name_lines) + '\n'
    source += generated.array('constexpr CharSetIdentifier kCharSetIdentifiers[]', id_lines)
    return {
        'input/charset_tables.h': generated.header(SCRIPT) + header,
        'input/charset_tables.cpp': generated.header(SCRIPT) + source,
    }


if __name__ == '__main__':
    generated.main(files(), __doc__)
