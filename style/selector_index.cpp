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
    bucketOf(*selector->sequences.last()).add(selector);
    isEmpty_ = false;
}

const zorvan::ArrayList<Selector*>& SelectorIndex::findMatches(
    const HtmlTreeNode& node, const HtmlTreeNode* root)
{
    matches_.clear();
    if (isEmpty_)
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
    const std::uint32_t seed = rarest->kind == SELECTOR_ID ? kIdSeed : kClassSeed;
    return bucketOfName(keyOf(name.data, name.data + name.length, seed));
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
        tryAll(names_.find(keyOf(id->text, id->text + id->length, kIdSeed)), node, root);
    const HtmlWStringValue* const classes = textOf(element, ATTRIBUTE_CLASS);
    if (classes == nullptr)
        return;
    const char16_t* const end = classes->text + classes->length;
    const char16_t* const first = classes->text;
    const char16_t* word = std::find_if_not(first, end, isSpace);
    while (word != end) {
        const char16_t* const wordEnd = std::find_if(word, end, isSpace);
        tryAll(names_.find(keyOf(word, wordEnd, kClassSeed)), node, root);
        word = std::find_if_not(wordEnd, end, isSpace);
    }
}

/// bucket: null is an empty one.
void SelectorIndex::tryAll(const Bucket* bucket, const HtmlTreeNode& node, const HtmlTreeNode* root)
{
    if (bucket == nullptr)
        return;
    for (Selector* selector : *bucket) {
        // A word that a class attribute has twice leads to the same selectors again.
        if (selector->visit == visit_)
            continue;
        selector->visit = visit_;
        if (selector->matches(node, root))
            matches_.add(selector);
    }
}
