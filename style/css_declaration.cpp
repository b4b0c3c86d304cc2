#include "style/css_declaration.h"

#include "containers/failures.h"
#include "support/process_heap.h"

#include <algorithm>
#include <utility>

CssDeclaration::CssDeclaration()
    : CssDeclaration(PROPERTY_NONE, nullptr, false, false)
{
}

CssDeclaration::CssDeclaration(
    ZVCSSProperty ofProperty, HtmlValue* onlyValue, bool isImportant, bool isEdgeMargin)
    : important(isImportant)
    , edgeMargin(isEdgeMargin)
    , property(ofProperty)
    , value(onlyValue)
{
}

CssDeclaration::CssDeclaration(const CssDeclaration& other)
    : important(other.important)
    , edgeMargin(other.edgeMargin)
    , property(other.property)
    , value(other.value)
    , values(copyOf(other.values.get()))
{
}

CssDeclaration& CssDeclaration::assignList(const CssDeclaration& other)
{
    if (this == &other)
        return *this;
    values = copyOf(other.values.get());
    important = other.important;
    edgeMargin = other.edgeMargin;
    property = other.property;
    value = other.value;
    return *this;
}

HtmlValue* CssDeclaration::getValueAt(std::int32_t index) const
{
    if (values == nullptr)
        return index == 0 ? value : nullptr;
    return index >= 0 && index < values->getCount() ? values->get(index) : nullptr;
}

std::int32_t CssDeclaration::getValueCount() const
{
    if (values == nullptr)
        return value != nullptr ? 1 : 0;
    return values->getCount();
}

void CssDeclaration::addValue(HtmlValue* added)
{
    if (added == nullptr)
        return;
    if (values == nullptr) {
        std::unique_ptr<Values> list = makeValues(2);
        if (value != nullptr)
            list->add(value);
        values = std::move(list);
        value = nullptr;
    }
    HtmlValue* const* const place = std::upper_bound(values->begin(), values->end(), added,
        [](const HtmlValue* a, const HtmlValue* b) { return compareValues(*a, *b) < 0; });
    values->insert(static_cast<std::int32_t>(place - values->begin()), added);
}

bool CssDeclaration::equals(const CssDeclaration& other, bool compareImportant) const
{
    if (property != other.property || edgeMargin != other.edgeMargin
        || getValueCount() != other.getValueCount())
        return false;
    if (compareImportant && important != other.important)
        return false;
    for (std::int32_t i = 0; i < getValueCount(); ++i) {
        if (getValueAt(i) != other.getValueAt(i))
            return false;
    }
    return true;
}

std::unique_ptr<CssDeclaration::Values> CssDeclaration::makeValues(std::int32_t count)
{
    std::unique_ptr<Values> made(zorvan::newObject<Values>());
    if (made == nullptr)
        zorvan::throwOutOfStorage();
    // The one more keeps the last addition from growing the list again.
    made->ensureCapacity(count + 1);
    return made;
}

std::unique_ptr<CssDeclaration::Values> CssDeclaration::copyOf(const Values* source)
{
    if (source == nullptr)
        return nullptr;
    std::unique_ptr<Values> copy = makeValues(source->getCount());
    for (HtmlValue* each : *source)
        copy->add(each);
    return copy;
}
