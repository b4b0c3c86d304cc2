#include "tree/html_node_data.h"

#include "containers/failures.h"
#include "containers/storage.h"
#include "style/css_declaration_list.h"
#include "support/exception.h"
#include "support/process_heap.h"
#include "support/sp_vector.h"

#include <cstring>
#include <memory>
#include <string>
#include <utility>

namespace {

constexpr std::uint32_t FAILURE_NO_ELEMENT = 15;

ZVHTMLElement checkedElement(ZVHTMLElement element)
{
    if (element == ELEMENT_NONE)
        zorvan::throwContainerFailure(
            FAILURE_NO_ELEMENT, "HtmlTagNodeData(): invalid elementId for non-privileged child!");
    return element;
}

template <typename T> std::unique_ptr<T> checked(T* made)
{
    if (made == nullptr)
        zorvan::throwOutOfStorage();
    return std::unique_ptr<T>(made);
}

} // namespace

HtmlGenericNodeData::~HtmlGenericNodeData() = default;

bool HtmlGenericNodeData::hasAttributes() const { return false; }

CssDeclarationList* HtmlGenericNodeData::getDeclarations() const { return nullptr; }

CssDeclarationList* HtmlGenericNodeData::getUndoDeclarations() const { return nullptr; }

void HtmlGenericNodeData::copyFrom(const HtmlGenericNodeData* source, ValueCache*)
{
    if (source != nullptr)
        elementId = source->elementId;
}

HtmlTextNodeData::HtmlTextNodeData(const char16_t* units, std::uint32_t unitCount)
    : HtmlTextNodeData()
{
    setText(units, unitCount);
}

HtmlTextNodeData::~HtmlTextNodeData() { zorvan::releaseStorage(text); }

void HtmlTextNodeData::copyFrom(const HtmlGenericNodeData* source, ValueCache*)
{
    if (const auto* other = dynamic_cast<const HtmlTextNodeData*>(source))
        setText(other->text, other->length);
}

void HtmlTextNodeData::setText(const char16_t* units, std::uint32_t unitCount)
{
    if (!trySetText(units, unitCount))
        zorvan::throwOutOfStorage();
}

bool HtmlTextNodeData::trySetText(const char16_t* units, std::uint32_t unitCount)
{
    if (units == nullptr)
        unitCount = 0;
    const char16_t* const end = std::char_traits<char16_t>::find(units, unitCount, u'\0');
    const auto kept = end != nullptr ? static_cast<std::uint32_t>(end - units) : unitCount;
    auto copy = zorvan::tryAllocateElements<char16_t>(std::int64_t{kept} + 1);
    if (copy == nullptr)
        return false;
    if (kept != 0)
        std::memcpy(copy.get(), units, kept * sizeof(char16_t));
    copy.get()[kept] = 0;
    zorvan::releaseStorage(std::exchange(text, copy.release()));
    length = kept;
    return true;
}

HtmlTagNodeData::HtmlTagNodeData(ZVHTMLElement element)
    : HtmlGenericNodeData(checkedElement(element))
    , attributes()
{
}

HtmlTagNodeData::~HtmlTagNodeData() { clearAttributes(); }

bool HtmlTagNodeData::hasAttributes() const { return attributes.getCount() > 0; }

CssDeclarationList* HtmlTagNodeData::getDeclarations() const { return declarations; }

CssDeclarationList* HtmlTagNodeData::getUndoDeclarations() const { return undoDeclarations; }

void HtmlTagNodeData::copyFrom(const HtmlGenericNodeData* source, ValueCache* cache)
{
    if (source == nullptr || source == this)
        return;
    if (source->elementId == ELEMENT_NONE || source->elementId == ELEMENT_IMG
        || source->elementId == ELEMENT_TR)
        return;
    const auto& other = static_cast<const HtmlTagNodeData&>(*source);
    // An element that has been popped has no undo list any more; what this one's own entering has
    // to undo must stay then.
    if (other.undoDeclarations != nullptr) {
        auto undo = checked(zorvan::newObject<CssDeclarationList>(cache));
        undo->copyExactlyFrom(*other.undoDeclarations);
        delete std::exchange(undoDeclarations, undo.release());
    }
    elementId = other.elementId;
    declarations = other.declarations;
    clearAttributes();
    for (const auto* link = other.attributes.head; link != nullptr; link = link->next) {
        if (link->value->value != nullptr)
            setAttribute(link->value->key, link->value->value);
    }
}

bool HtmlTagNodeData::getAttribute(ZVHTMLAttribute id, HtmlValue*& value) const
{
    for (const auto* link = attributes.head; link != nullptr; link = link->next) {
        if (link->value->key == id) {
            value = link->value->value;
            return true;
        }
    }
    return false;
}

HtmlValue* HtmlTagNodeData::findAttribute(ZVHTMLAttribute id) const
{
    HtmlValue* value = nullptr;
    getAttribute(id, value);
    return value;
}

void HtmlTagNodeData::setAttribute(ZVHTMLAttribute id, HtmlValue* value)
{
    auto* link = attributes.head;
    while (link != nullptr && link->value->key < id)
        link = link->next;
    if (link != nullptr && link->value->key == id) {
        link->value->value = value;
        return;
    }
    auto attribute = checked(zorvan::newObject<HtmlAttribute>(id, value));
    attributes.insertBefore(link, attribute.get());
    attribute.release();
}

void HtmlTagNodeData::clearAttributes()
{
    while (!attributes.isEmpty())
        delete attributes.pop();
}

HtmlImgNodeData::~HtmlImgNodeData() { delete srcRange; }

void HtmlImgNodeData::copyFrom(const HtmlGenericNodeData* source, ValueCache*)
{
    if (source == nullptr || source == this || source->elementId != ELEMENT_IMG)
        return;
    const HtmlSrcRange* range = static_cast<const HtmlImgNodeData*>(source)->srcRange;
    if (range != nullptr)
        setSrcRange(range->start, range->end);
    else
        delete std::exchange(srcRange, nullptr);
}

void HtmlImgNodeData::setSrcRange(std::uint32_t start, std::uint32_t end)
{
    if (srcRange == nullptr)
        srcRange = checked(zorvan::newObject<HtmlSrcRange>()).release();
    *srcRange = {start, end};
}

HtmlTrNodeData::~HtmlTrNodeData()
{
    if (spanInfo == nullptr)
        return;
    SPVectorDestroy(spanInfo->hSpanInfo);
    delete spanInfo;
}

HtmlSpanInfo& HtmlTrNodeData::ensureSpanInfo()
{
    if (spanInfo == nullptr) {
        auto made = checked(zorvan::newObject<HtmlSpanInfo>());
        made->hSpanInfo = SPVectorCreate();
        if (made->hSpanInfo == nullptr)
            zorvan::throwOutOfStorage();
        spanInfo = made.release();
    }
    return *spanInfo;
}
