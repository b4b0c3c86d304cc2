#pragma once

#include "containers/array_list.h"
#include "support/css_names.h"
#include "tree/html_value.h"

#include <cstdint>
#include <memory>

/// A property with its value, or with a sorted list of values. The values live in the cache.
class CssDeclaration {
public:
    /// Of no property, without a value.
    CssDeclaration();

    CssDeclaration(ZVCSSProperty property, HtmlValue* value, bool important, bool edgeMargin);

    /// Copies share the values and have a list of their own.
    CssDeclaration(const CssDeclaration& other);
    CssDeclaration& operator=(const CssDeclaration& other)
    {
        if (values != nullptr || other.values != nullptr)
            return assignList(other);
        important = other.important;
        edgeMargin = other.edgeMargin;
        property = other.property;
        value = other.value;
        return *this;
    }

    ~CssDeclaration() = default;

    ZVCSSProperty getProperty() const { return property; }

    /// The first value; null when there is none.
    HtmlValue* getValue() const { return values == nullptr ? value : getValueAt(0); }

    /// Null for an index outside the list.
    HtmlValue* getValueAt(std::int32_t index) const;

    std::int32_t getValueCount() const;

    /// Whether the values are in a list, which the declaration then has to be destroyed for.
    bool hasList() const { return values != nullptr; }

    /// Makes this the only value.
    void setValue(HtmlValue* onlyValue)
    {
        value = onlyValue;
        values.reset();
    }

    /// Puts a value in, in front of the first greater one as compareValues sees it. Null is no
    /// value.
    void addValue(HtmlValue* added);

    /// Whether both have the same property and edgeMargin and the same values in turn, by pointer,
    /// and, when compareImportant is set, the same mark of importance.
    bool equals(const CssDeclaration& other, bool compareImportant) const;

    bool important; // written with !important
    bool edgeMargin; // a built-in margin of a paragraph

private:
    using Values = zorvan::ArrayList<HtmlValue*>;

    static std::unique_ptr<Values> makeValues(std::int32_t count);
    static std::unique_ptr<Values> copyOf(const Values* source);
    CssDeclaration& assignList(const CssDeclaration& other);

    ZVCSSProperty property;
    HtmlValue* value; // null when values is in use
    std::unique_ptr<Values> values; // null until addValue
};
