#!/usr/bin/env python3
"""Makes support/css_names.h and .cpp, the numbers and names of properties and keywords, from
tools/data/css_properties.tsv and tools/data/css_values.tsv. With --check only tells whether they
are stale."""

import generated
import perfect_hash

SCRIPT = 'make_css_names.py'


def files():
    properties = generated.named_ids('css_properties.tsv')
    values = generated.named_ids('css_values.tsv')
    enumerations = [
        perfect_hash.enumeration(
            'ZVCSSProperty', 'Properties of CSS; 0 is unknown.', 'PROPERTY_', properties),
        # VALUE_NONE is the keyword "none", so the unknown one is called otherwise.
        perfect_hash.enumeration(
            'ZVCSSValue', 'Keywords of CSS; 0 is unknown.', 'VALUE_', values,
            unknown='VALUE_UNKNOWN'),
    ]
    types = ['ZVCSSProperty', 'ZVCSSValue']
    tables = [('Property', properties, 512, 64), ('Value', values, 512, 64)]
    return {
        'support/css_names.h': perfect_hash.enum_header(SCRIPT, enumerations, types),
        'support/css_names.cpp': perfect_hash.source(SCRIPT, 'support/css_names.h', tables),
    }


if __name__ == '__main__':
    generated.main(files(), __doc__)
