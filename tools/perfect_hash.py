"""Name tables with a perfect hash, as support/name_table.h searches them."""

import generated

NAME_CAPACITY = 31


def name_hash(text, seed):
    value = seed
    for byte in text.encode('ascii'):
        value = ((value ^ byte) * 0x01000193) & 0xFFFFFFFF
    return value


def build_with_seed(named, slot_count, bucket_count, seed):
    """Slots and shifts for the names, the fullest buckets choosing their shift first; or None."""
    buckets = [[] for _ in range(bucket_count)]
    for number, text in named:
        value = name_hash(text, seed)
        buckets[value & (bucket_count - 1)].append((value >> 16, number))
    slots = [0] * slot_count
    shifts = [0] * bucket_count
    for index in sorted(range(bucket_count), key=lambda index: (-len(buckets[index]), index)):
        for shift in range(slot_count):
            places = [(first + shift) & (slot_count - 1) for first, _ in buckets[index]]
            if len(set(places)) == len(places) and not any(slots[place] for place in places):
                break
        else:
            return None
        shifts[index] = shift
        for place, (_, number) in zip(places, buckets[index]):
            slots[place] = number
    return slots, shifts


def build(named, slot_count, bucket_count):
    """The first seed that gives a perfect hash, with its slots and shifts."""
    for seed in range(0x811C9DC5, 0x811C9DC5 + 1000):
        found = build_with_seed(named, slot_count, bucket_count, seed)
        if found:
            return (seed, *found)
    raise SystemExit('no perfect hash with %d slots and %d buckets' % (slot_count, bucket_count))


def table(prefix, named, slot_count, bucket_count):
    """The sources of one table, `k<prefix>Names`."""
    seed, slots, shifts = build(named, slot_count, bucket_count)
    names = dict(named)
    row_count = max(names) + 1
    assert row_count <= 256 and all(0 < len(text) < NAME_CAPACITY for text in names.values())
    texts = [names.get(number, '') for number in range(row_count)]
    lines = ['    {%d, "%s"},' % (len(text), text) for text in texts]
    arrays = [
        ('NameRow k%sRows[]', lines),
        ('std::uint8_t k%sSlots[]', generated.numbers(slots)),
        ('std::uint16_t k%sShifts[]', generated.numbers(shifts)),
    ]
    text = ''
    for declaration, rows in arrays:
        text += generated.array('constexpr ' + declaration % prefix, rows) + '\n'
    return text, seed, row_count


def definition(prefix, seed, row_count, slot_count, bucket_count):
    values = ['0x%X' % seed, 'k%sRows' % prefix, row_count, 'k%sSlots' % prefix, slot_count - 1,
              'k%sShifts' % prefix, bucket_count - 1]
    lines = ''.join('    %s,\n' % value for value in values)
    return 'extern const NameTable k%sNames = {\n%s};\n' % (prefix, lines)


def source(script, own_header, tables):
    """A source with several tables, each (prefix, named, slots, buckets)."""
    text = generated.header(script)
    text += '#include "%s"\n\n#include "support/name_table.h"\n\n' % own_header
    text += '#include <cstdint>\n\nnamespace zorvan {\n\n'
    definitions = []
    for prefix, named, slot_count, bucket_count in tables:
        part, seed, row_count = table(prefix, named, slot_count, bucket_count)
        text += part
        definitions.append(definition(prefix, seed, row_count, slot_count, bucket_count))
    return text + '\n'.join(definitions) + '\n} // namespace zorvan\n'


def constant(prefix, name):
    return prefix + name.upper().replace('-', '_').replace(':', '_')


def enumeration(type_name, comment, prefix, named, extra=(), unknown=None):
    """An unscoped enumeration of the names. unknown: the enumerator of 0, by default NONE."""
    rows = [(0, unknown or prefix + 'NONE'), *extra]
    rows = sorted(rows + [(number, constant(prefix, text)) for number, text in named])
    assert len({name for _, name in rows}) == len(rows)
    lines = ['/// %s' % comment, 'enum %s : std::uint32_t {' % type_name]
    lines += ['    %s = %d,' % (name, number) for number, name in rows]
    return '\n'.join(lines) + '\n};\n\n'


def enum_header(script, enumerations, type_names):
    text = generated.header(script) + '#pragma once\n\n#include <cstdint>\n\n'
    text += ''.join(enumerations)
    text += 'namespace zorvan {\n\n'
    for name in type_names:
        text += 'using ::%s;\nusing enum ::%s;\n' % (name, name)
    return text + '\n} // namespace zorvan\n'
