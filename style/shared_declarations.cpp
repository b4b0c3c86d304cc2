#include "style/shared_declarations.h"

#include "style/make_object.h"

#include <algorithm>
#include <memory>

SharedDeclarations::~SharedDeclarations()
{
    entries_.forEach([](Entry* entry) {
        while (entry != nullptr) {
            const std::unique_ptr<Entry> owned(entry);
            entry = owned->next;
        }
    });
}

CssDeclarationList* SharedDeclarations::find(std::uint32_t elementId,
    const zorvan::ArrayList<Selector*>& matched, std::uint32_t fontSize) const
{
    const Entry* entry = entries_.find(keyOf(elementId, matched));
    while (entry != nullptr && !isFor(*entry, elementId, matched, fontSize))
        entry = entry->next;
    return entry != nullptr ? entry->list : nullptr;
}

bool SharedDeclarations::add(std::uint32_t elementId, const zorvan::ArrayList<Selector*>& matched,
    std::uint32_t fontSize, CssDeclarationList* list)
{
    if (matched.getCount() > kMostRules - ruleCount_)
        return false;
    bool added = false;
    Entry*& first = entries_.findOrAdd(keyOf(elementId, matched), added);
    if (lengthOf(first) == kMostPerKey)
        return false;
    auto made = makeObject<Entry>();
    made->elementId = elementId;
    made->fontSize = fontSize;
    made->list = list;
    made->rules.ensureCapacity(matched.getCount() + 1);
    for (const Selector* selector : matched)
        made->rules.add(selector->declarations);
    ruleCount_ += matched.getCount();
    made->next = first;
    first = made.release();
    return true;
}

std::uint32_t SharedDeclarations::keyOf(
    std::uint32_t elementId, const zorvan::ArrayList<Selector*>& matched)
{
    std::uint32_t key = elementId;
    for (const Selector* selector : matched)
        key = (key ^ static_cast<std::uint32_t>(selector->order)) * 0x01000193U;
    return key;
}

std::int32_t SharedDeclarations::lengthOf(const Entry* first)
{
    std::int32_t length = 0;
    for (const Entry* entry = first; entry != nullptr; entry = entry->next)
        ++length;
    return length;
}

bool SharedDeclarations::isFor(const Entry& entry, std::uint32_t elementId,
    const zorvan::ArrayList<Selector*>& matched, std::uint32_t fontSize)
{
    return entry.elementId == elementId
        && (entry.fontSize == kAnyFontSize || entry.fontSize == fontSize)
        && std::equal(entry.rules.begin(), entry.rules.end(), matched.begin(), matched.end(),
            [](const CssDeclarationList* rule, const Selector* selector) {
                return rule == selector->declarations;
            });
}
