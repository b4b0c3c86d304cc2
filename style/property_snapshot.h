#pragma once

#include "style/css_declaration_list.h"
#include "support/css_names.h"

#include <cstdint>

/// The properties of a list as they stand at one moment, for loops that change the list.
class PropertySnapshot {
public:
    explicit PropertySnapshot(const CssDeclarationList& list)
        : count_(list.keys(properties_, kCapacity))
    {
    }

    const ZVCSSProperty* begin() const { return properties_; }
    const ZVCSSProperty* end() const { return properties_ + count_; }

private:
    // Each property stands in a list once.
    static constexpr std::int32_t kCapacity = PROPERTY_ZOOM + 1;

    ZVCSSProperty properties_[kCapacity];
    std::int32_t count_;
};
