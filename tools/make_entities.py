#!/usr/bin/env python3
"""Makes scanner/named_entities.h and .cpp, the named character references, from
tools/data/entities.tsv. With --check only tells whether they are stale."""

import generated

SCRIPT = 'make_entities.py'

HEADER = '''#pragma once

#include <cstdint>

/// A named character reference. value: a UTF-16 unit; 0 for a name that is not resolved.
struct NamedEntity {
    const char* name;
    std::uint16_t value;
};

constexpr std::uint32_t kNamedEntityCount = %(count)d;

/// The references, ascending by the bytes of the name, which has neither "&" nor ";".
extern const NamedEntity kNamedEntityTable[kNamedEntityCount];
'''


def files():
    entities = [(name, int(value)) for value, name in generated.rows('entities.tsv')]
    assert entities == sorted(entities) and all(0 <= value <= 0xFFFF for _, value in entities)
    lines = ['    {"%s", 0x%X},' % row for row in entities]
    source = '#include "scanner/named_entities.h"\n\n'
    source += generated.array('constexpr NamedEntity kNamedEntityTable[]', lines)
    return {
        'scanner/named_entities.h': generated.header(SCRIPT) + HEADER % {'count': len(entities)},
        'scanner/named_entities.cpp': generated.header(SCRIPT) + source,
    }


if __name__ == '__main__':
    generated.main(files(), __doc__)
