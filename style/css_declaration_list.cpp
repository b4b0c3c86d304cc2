#include "style/css_declaration_list.h"

#include "containers/array.h"
#include "containers/failures.h"
#include "support/process_heap.h"

#include <utility>

namespace {

constexpr std::uint32_t kBuckets = 16;
constexpr std::uint32_t kOverflowSlots = 16;

std::unique_ptr<CssDeclaration> checked(CssDeclaration* made)
{
    if (made == nullptr)
        zorvan::throwOutOfStorage();
    return std::unique_ptr<CssDeclaration>(made);
}

std::unique_ptr<CssDeclaration> copyOf(const CssDeclaration& declaration)
{
    return checked(zorvan::newObject<CssDeclaration>(declaration));
}

/// Copies of declarations that have not found their list yet.
class PendingCopies {
public:
    explicit PendingCopies(std::uint32_t count)
        : copies_(static_cast<std::int32_t>(count))
    {
    }

    PendingCopies(const PendingCopies&) = delete;
    PendingCopies& operator=(const PendingCopies&) = delete;

    ~PendingCopies()
    {
        for (std::int32_t i = 0; i < copies_.getLength(); ++i)
            delete copies_[i];
    }

    void set(std::int32_t index, std::unique_ptr<CssDeclaration> copy)
    {
        copies_[index] = copy.release();
    }

    CssDeclaration* take(std::int32_t index) { return std::exchange(copies_[index], nullptr); }

private:
    zorvan::Array<CssDeclaration*> copies_;
};

} // namespace

CssDeclarationList::CssDeclarationList(ValueCache* cache, bool owning)
    : Base(kBuckets, kOverflowSlots)
    , valueCache(cache)
    , ownsDeclarations(owning)
{
}

CssDeclarationList::~CssDeclarationList()
{
    if (ownsDeclarations)
        deleteDeclarations();
}

void CssDeclarationList::add(CssDeclaration* declaration)
{
    std::unique_ptr<CssDeclaration> guard(ownsDeclarations ? declaration : nullptr);
    // Taking the old one out makes room for the new one, so that only a new property can fail.
    CssDeclaration* old = nullptr;
    Base::tryRemove(declaration->getProperty(), old);
    if (ownsDeclarations && old != declaration)
        delete old;
    Base::put(declaration->getProperty(), declaration);
    guard.release();
}

void CssDeclarationList::set(
    ZVCSSProperty property, HtmlValue* value, bool important, bool edgeMargin)
{
    takeOwnership();
    if (value == nullptr)
        return;
    add(checked(zorvan::newObject<CssDeclaration>(property, value, important, edgeMargin))
            .release());
}

void CssDeclarationList::setCopy(const CssDeclaration& declaration)
{
    takeOwnership();
    if (!replaceByCopy(declaration))
        add(copyOf(declaration).release());
}

bool CssDeclarationList::replaceByCopy(const CssDeclaration& declaration)
{
    bool isLast = false;
    CssDeclaration* const* own = find(declaration.getProperty(), isLast);
    if (own == nullptr)
        return false;
    takeOwnership();
    // The declaration that is there becomes the copy: style is entered and left for each element,
    // and nearly always replaces.
    **own = declaration;
    if (!isLast)
        putAgain(declaration.getProperty());
    return true;
}

void CssDeclarationList::replaceValue(ZVCSSProperty property, HtmlValue* value)
{
    const CssDeclaration* declaration = get(property);
    const bool isSame = declaration->getValueCount() == 1 && declaration->getValue() == value;
    if (isSame && isLastOfChain(property))
        return;
    takeOwnership();
    get(property)->setValue(value);
    putAgain(property);
}

void CssDeclarationList::remove(ZVCSSProperty property)
{
    CssDeclaration* old = nullptr;
    if (Base::tryRemove(property, old) && ownsDeclarations)
        delete old;
}

void CssDeclarationList::merge(const CssDeclarationList& source, bool copy)
{
    if (source.isEmpty() || &source == this)
        return;
    if (copy)
        takeOwnership();
    source.forEach([this](ZVCSSProperty property, CssDeclaration* declaration) {
        CssDeclaration* const* own = find(property);
        if (own == nullptr || (!(*own)->important && declaration->important))
            addFrom(declaration);
    });
}

void CssDeclarationList::takeOwnership()
{
    if (ownsDeclarations)
        return;
    if (!isEmpty())
        replaceByCopies();
    ownsDeclarations = true;
}

std::uint32_t CssDeclarationList::getIntValue(ZVCSSProperty property, std::int32_t* out) const
{
    if (out == nullptr)
        return KIND_NONE;
    const HtmlValue* value = findValue(property);
    if (value == nullptr)
        return KIND_NONE;
    switch (value->kind) {
    case KIND_PERCENT:
        *out = truncateToInt32(static_cast<const HtmlPercentValue*>(value)->number);
        break;
    case KIND_NUMBER:
        *out = truncateToInt32(static_cast<const HtmlNumberValue*>(value)->number);
        break;
    case KIND_COLOR:
        *out = static_cast<std::int32_t>(static_cast<const HtmlColorValue*>(value)->color);
        break;
    case KIND_KEYWORD:
        *out = static_cast<std::int32_t>(static_cast<const HtmlCssKeywordValue*>(value)->keyword);
        break;
    case KIND_ENUM:
        *out = static_cast<std::int32_t>(static_cast<const HtmlEnumValue*>(value)->enumerator);
        break;
    case KIND_LENGTH:
        *out = truncateToInt32(static_cast<const HtmlLengthValue*>(value)->pixels());
        break;
    case KIND_NONE:
    case KIND_STRING:
        break;
    }
    return value->kind;
}

void CssDeclarationList::copyExactlyFrom(const CssDeclarationList& source)
{
    if (&source == this)
        return;
    CssDeclarationList copy(valueCache, /*owning=*/false);
    copy.copyExactly(source);
    copy.takeOwnership();
    swapEntries(copy);
    std::swap(ownsDeclarations, copy.ownsDeclarations);
}

void CssDeclarationList::clear()
{
    if (ownsDeclarations)
        deleteDeclarations();
    Base::clear();
}

void CssDeclarationList::deleteDeclarations()
{
    forEach([](ZVCSSProperty, CssDeclaration* declaration) { delete declaration; });
}

void CssDeclarationList::replaceByCopies()
{
    PendingCopies copies(getCount());
    std::int32_t made = 0;
    forEach([&](ZVCSSProperty, const CssDeclaration* declaration) {
        copies.set(made++, copyOf(*declaration));
    });
    std::int32_t placed = 0;
    forEach([&](ZVCSSProperty, CssDeclaration*& place) { place = copies.take(placed++); });
}

void CssDeclarationList::addFrom(CssDeclaration* declaration)
{
    add(ownsDeclarations ? copyOf(*declaration).release() : declaration);
}

/// Moves a property to where a new one would stand, as replacing does.
void CssDeclarationList::putAgain(ZVCSSProperty property)
{
    if (!isLastOfChain(property))
        Base::put(property, Base::remove(property));
}
