#!/usr/bin/env python3
"""Makes support/color_names.h and .cpp, the color names, from tools/data/colors.tsv. With --check
only tells whether they are stale."""

import generated

SCRIPT = 'make_color_names.py'

HEADER = '''#pragma once

#include "support/export.h"

#include <cstdint>

namespace zorvan {

/// A color and its name.
struct ColorName {
    const char* name;
    std::uint32_t rgb; // 0x00RRGGBB
};

constexpr std::uint32_t kColorNameCount = %d;

/// The colors, ascending by name without regard to case.
ZV_EXPORT extern const ColorName kColorNames[kColorNameCount];

} // namespace zorvan
'''


def files():
    colors = generated.rows('colors.tsv')
    lines = ['    {"%s", 0x%s},' % row for row in colors]
    source = '#include "support/color_names.h"\n\nnamespace zorvan {\n\n'
    source += generated.array('constexpr ColorName kColorNames[]', lines)
    source += '\n} // namespace zorvan\n'
    return {
        'support/color_names.h': generated.header(SCRIPT) + HEADER % len(colors),
        'support/color_names.cpp': generated.header(SCRIPT) + source,
    }


if __name__ == '__main__':
    generated.main(files(), __doc__)
