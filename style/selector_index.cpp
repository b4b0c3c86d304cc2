#include "style/selector_index.h"

#include "style/make_object.h"
#include "support/smoothsort.h"
#include "support/text_search.h"
#include "tree/html_node_data.h"
#include "tree/html_value.h"

#include <algorithm>

namespace {

// Different beginnings keep ids and classes of the same name apart.
constexpr std::uint32_t kClassSeed = 0x811C9DC5;
constexpr std::uint32_t kIdSeed = 0x01000193;

constexpr std::uint32_t kAnyElement = 0xFFFFFFFF;

bool isSpace(char16_t unit)
{
    return unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\f' || unit == u'\r';
}

/// A number of a name, the same for a text of the sheet and one of the document. That names share a
/// number costs time only: what they lead to is tried, not taken.
template <class Ch> std::uint32_t keyOf(const Ch* text, const Ch* end, std::uint32_t seed)
{
    std::uint32_t key = seed;
    for (; text != end; ++text)
        key = (key ^ zorvan::characterNumber(*text)) * 0x01000193U;
    return key;
}

std::uint32_t seedOf(SimpleSelectorKind kind) { return kind == SELECTOR_ID ? kIdSeed : kClassSeed; }

Selector::WholeName wholeNameOf(const Selector& selector)
{
    if (selector.sequences.getCount() != 1)
        return {};
    const auto& conditions = selector.sequences.last()->selectors;
    if (conditions.getCount() != 1)
        return {};
    const SimpleSelector& only = *conditions.last();
    if (only.negated || (only.kind != SELECTOR_CLASS && only.kind != SELECTOR_ID))
        return {};
    return {only.kind, only.value.length, only.value.data};
}

bool equals(const char16_t* text, const char16_t* end, const Selector::WholeName& name)
{
    return end - text == name.length
        && std::equal(text, end, name.text, [](char16_t unit, char character) {
               return unit == zorvan::characterNumber(character);
           });
}

/// The element that a sequence asks for; kAnyElement for none.
std::uint32_t elementOf(const SimpleSelectorSequence& sequence)
{
    for (const SimpleSelector* selector : sequence.selectors) {
        if (selector->kind == SELECTOR_ELEMENT && !selector->negated)
            return static_cast<const ElementSelector*>(selector)->elementId;
    }
    return kAnyElement;
}

const HtmlWStringValue* textOf(const HtmlTagNodeData& element, ZVHTMLAttribute id)
{
    return HtmlWStringValue::from(element.findAttribute(id));
}

} // namespace

SelectorIndex::~SelectorIndex()
{
    for (const Bucket* bucket : elements_)
        delete bucket;
    names_.forEach([](const Bucket* bucket) { delete bucket; });
}

void SelectorIndex::add(Selector* selector)
{
    if (!selector->canMatch())
        return;
    selector->wholeName = wholeNameOf(*selector);
    const SimpleSelectorSequence& last = *selector->sequences.last();
    bucketOf(last).add({selector, elementOf(last), neededBy(*selector)});
    isEmpty_ = false;
}

const zorvan::ArrayList<Selector*>& SelectorIndex::findMatches(
    const HtmlTreeNode& node, const HtmlTreeNode* root)
{
    matches_.clear();
    if (isEmpty_ || &node == root)
        return matches_;
    ++visit_;
    const std::uint32_t element = elementOf(node);
    if (element < kElementLimit)
        tryAll(elements_[element], node, root);
    tryAll(&others_, node, root);
    tryNames(node, root);
    if (matches_.getCount() > 1)
        sortMatches();
    return matches_;
}

std::array<std::uint8_t, SelectorIndex::kMostNeeded> SelectorIndex::neededBy(
    const Selector& selector)
{
    std::array<std::uint8_t, kMostNeeded> needed = {};
    std::size_t count = 0;
    for (std::int32_t i = selector.sequences.getCount() - 2; i >= 0 && count < kMostNeeded; --i) {
        // The root of the tree passes for whatever stands in front of a ">".
        if (selector.sequences.get(i + 1)->combinator == COMBINATOR_CHILD)
            continue;
        // An unknown name is a text's, and nobody tells of texts.
        const std::uint32_t element = elementOf(*selector.sequences.get(i));
        if (element != kAnyElement && element != ELEMENT_NONE)
            needed[count++] = static_cast<std::uint8_t>(element);
    }
    return needed;
}

/// Whether the tree has all elements that a selector needs, so that it is worth a try.
bool SelectorIndex::isPossible(const Entry& entry) const
{
    if (!countsElements_)
        return true;
    return std::all_of(entry.needed.begin(), entry.needed.end(),
        [this](std::uint8_t element) { return element == ELEMENT_NONE || isSeen_[element]; });
}

/// Where the selectors of a last sequence wait: under the rarest thing that it asks for.
SelectorIndex::Bucket& SelectorIndex::bucketOf(const SimpleSelectorSequence& sequence)
{
    const SimpleSelector* rarest = nullptr;
    for (const SimpleSelector* selector : sequence.selectors) {
        if (selector->negated)
            continue;
        const bool isName = selector->kind == SELECTOR_CLASS || selector->kind == SELECTOR_ID;
        if (!isName && selector->kind != SELECTOR_ELEMENT)
            continue;
        if (rarest == nullptr || selector->getSpecificity() > rarest->getSpecificity())
            rarest = selector;
    }
    if (rarest == nullptr)
        return others_;
    if (rarest->kind == SELECTOR_ELEMENT)
        return bucketOfElement(static_cast<const ElementSelector*>(rarest)->elementId);
    const zorvan::String& name = rarest->value;
    return bucketOfName(keyOf(name.data, name.data + name.length, seedOf(rarest->kind)));
}

SelectorIndex::Bucket& SelectorIndex::bucketOfElement(std::uint32_t elementId)
{
    Bucket*& bucket = elements_[elementId];
    if (bucket == nullptr)
        bucket = makeObject<Bucket>().release();
    return *bucket;
}

SelectorIndex::Bucket& SelectorIndex::bucketOfName(std::uint32_t key)
{
    bool added = false;
    Bucket*& bucket = names_.findOrAdd(key, added);
    if (bucket == nullptr)
        bucket = makeObject<Bucket>().release();
    return *bucket;
}

void SelectorIndex::sortMatches()
{
    sorted_.clear();
    for (const Selector* match : matches_)
        sorted_.add(match);
    zorvan::Smoothsort(sorted_.begin(), sorted_.getCount());
    std::transform(sorted_.begin(), sorted_.end(), matches_.begin(),
        [](const auto* item) { return const_cast<Selector*>(static_cast<const Selector*>(item)); });
}

void SelectorIndex::tryNames(const HtmlTreeNode& node, const HtmlTreeNode* root)
{
    const auto& element = static_cast<const HtmlTagNodeData&>(*node.data);
    if (!element.hasAttributes())
        return;
    if (const HtmlWStringValue* id = textOf(element, ATTRIBUTE_ID))
        tryNamed({SELECTOR_ID, id->text, id->text + id->length}, node, root);
    const HtmlWStringValue* const classes = textOf(element, ATTRIBUTE_CLASS);
    if (classes == nullptr)
        return;
    const char16_t* const end = classes->text + classes->length;
    const char16_t* const first = classes->text;
    const char16_t* word = std::find_if_not(first, end, isSpace);
    while (word != end) {
        const char16_t* const wordEnd = std::find_if(word, end, isSpace);
        tryNamed({SELECTOR_CLASS, word, wordEnd}, node, root);
        word = std::find_if_not(wordEnd, end, isSpace);
    }
}

void SelectorIndex::tryNamed(const Name& name, const HtmlTreeNode& node, const HtmlTreeNode* root)
{
    const Bucket* const bucket = names_.find(keyOf(name.text, name.end, seedOf(name.kind)));
    if (bucket == nullptr)
        return;
    const std::uint32_t element = elementOf(node);
    for (const Entry& entry : *bucket) {
        if ((entry.element != element && entry.element != kAnyElement) || !isPossible(entry))
            continue;
        Selector* const selector = entry.selector;
        // A word that a class attribute has twice leads to the same selectors again.
        if (selector->visit == visit_)
            continue;
        const Selector::WholeName& whole = selector->wholeName;
        if (whole.kind != 0) {
            // Another name of the element may have the same number and be the one.
            if (whole.kind != name.kind || !equals(name.text, name.end, whole))
                continue;
        } else if (!selector->matches(node, root)) {
            selector->visit = visit_;
            continue;
        }
        selector->visit = visit_;
        matches_.add(selector);
    }
}

/// bucket: null is an empty one.
void SelectorIndex::tryAll(const Bucket* bucket, const HtmlTreeNode& node, const HtmlTreeNode* root)
{
    if (bucket == nullptr)
        return;
    for (const Entry& entry : *bucket) {
        if (isPossible(entry) && entry.selector->matches(node, root))
            matches_.add(entry.selector);
    }
}
