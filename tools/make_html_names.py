#!/usr/bin/env python3
"""Makes support/html_names.h and .cpp, the numbers and names of elements and attributes, from
tools/data/elements.tsv and tools/data/attributes.tsv. With --check only tells whether they are
stale."""

import generated
import perfect_hash

SCRIPT = 'make_html_names.py'


def files():
    elements = generated.named_ids('elements.tsv')
    attributes = generated.named_ids('attributes.tsv')
    enumerations = [
        perfect_hash.enumeration(
            'ZVHTMLElement', 'Elements of HTML. 0 is unknown; 116 has no name.', 'ELEMENT_',
            elements, [(116, 'ELEMENT_UNNAMED_116')]),
        perfect_hash.enumeration(
            'ZVHTMLAttribute', 'Attributes of HTML; 0 is unknown.', 'ATTRIBUTE_', attributes),
    ]
    types = ['ZVHTMLElement', 'ZVHTMLAttribute']
    tables = [('Element', elements, 256, 128), ('Attribute', attributes, 512, 128)]
    return {
        'support/html_names.h': perfect_hash.enum_header(SCRIPT, enumerations, types),
        'support/html_names.cpp': perfect_hash.source(SCRIPT, 'support/html_names.h', tables),
    }


if __name__ == '__main__':
    generated.main(files(), __doc__)
