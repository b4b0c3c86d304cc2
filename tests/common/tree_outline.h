#pragma once

#include "tools/htmltree/tree_outline.h"

namespace testing_support {

using htmltree::declarationsText;
using htmltree::nodeText;
using htmltree::outlineOf;
using htmltree::quotedText;
using htmltree::shortOutlineOf;
using htmltree::valueText;

} // namespace testing_support
