#include "style/css_declaration_list.h"

#include "containers/array.h"
#include "containers/failures.h"
#include "support/process_heap.h"

#include <new>
#include <utility>

namespace {

constexpr std::uint32_t kBuckets = 16;
constexpr std::uint32_t kOverflowSlots = 16;

} // namespace

/// Copies of declarations that have not found their list yet.
class CssDeclarationList::PendingCopies {
public:
    explicit PendingCopies(CssDeclarationList& list)
        : list_(list)
        , copies_(static_cast<std::int32_t>(list.getCount()))
    {
    }

    PendingCopies(const PendingCopies&) = delete;
    PendingCopies& operator=(const PendingCopies&) = delete;

    ~PendingCopies()
    {
        for (std::int32_t i = 0; i < copies_.getLength(); ++i)
            list_.deleteDeclaration(copies_[i]);
    }

    void set(std::int32_t index, CssDeclaration* copy) { copies_[index] = copy; }

    CssDeclaration* take(std::int32_t index) { return std::exchange(copies_[index], nullptr); }

private:
    CssDeclarationList& list_;
    zorvan::Array<CssDeclaration*> copies_;
};

CssDeclarationList::CssDeclarationList(ValueCache* cache, bool owning)
    : CssDeclarationList(cache, owning, nullptr)
{
}

CssDeclarationList::CssDeclarationList(ValueCache* cache, zorvan::Arena& arena)
    : CssDeclarationList(cache, /*owning=*/true, &arena)
{
}

CssDeclarationList::CssDeclarationList(ValueCache* cache, bool owning, zorvan::Arena* arena)
    : Base(kBuckets, kOverflowSlots, arena)
    , valueCache(cache)
    , arena_(arena)
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
    if (arena_ != nullptr && ownsDeclarations && !holds(declaration))
        moveToArena(declaration);
    place(declaration);
}

/// Stores a declaration of the list's own making, or that the list only points at.
void CssDeclarationList::place(CssDeclaration* declaration)
{
    const auto deleter = [this](CssDeclaration* unplaced) { deleteDeclaration(unplaced); };
    std::unique_ptr<CssDeclaration, decltype(deleter)> guard(
        ownsDeclarations ? declaration : nullptr, deleter);
    // Taking the old one out makes room for the new one, so that only a new property can fail.
    CssDeclaration* old = nullptr;
    Base::tryRemove(declaration->getProperty(), old);
    if (ownsDeclarations && old != declaration)
        deleteDeclaration(old);
    Base::putNew(declaration->getProperty(), declaration);
    guard.release();
}

void CssDeclarationList::set(
    ZVCSSProperty property, HtmlValue* value, bool important, bool edgeMargin)
{
    takeOwnership();
    if (value == nullptr)
        return;
    place(makeDeclaration(property, value, important, edgeMargin));
}

void CssDeclarationList::setCopy(const CssDeclaration& declaration)
{
    takeOwnership();
    if (!replaceByCopy(declaration))
        place(makeDeclaration(declaration));
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
    hasValueLists_ |= declaration.hasList();
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
        deleteDeclaration(old);
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
    CssDeclarationList copy(valueCache, /*owning=*/false, arena_);
    copy.copyExactly(source);
    copy.takeOwnership();
    swapEntries(copy);
    std::swap(ownsDeclarations, copy.ownsDeclarations);
    std::swap(hasValueLists_, copy.hasValueLists_);
}

void CssDeclarationList::clear()
{
    if (ownsDeclarations)
        deleteDeclarations();
    Base::clear();
}

/// A new declaration where this list keeps its own.
template <typename... Arguments>
CssDeclaration* CssDeclarationList::makeDeclaration(Arguments&&... arguments)
{
    if (arena_ != nullptr) {
        void* const storage = arena_->allocate(sizeof(CssDeclaration), alignof(CssDeclaration));
        auto* const made = new (storage) CssDeclaration(std::forward<Arguments>(arguments)...);
        hasValueLists_ |= made->hasList();
        return made;
    }
    auto* const made = zorvan::newObject<CssDeclaration>(std::forward<Arguments>(arguments)...);
    if (made == nullptr)
        zorvan::throwOutOfStorage();
    return made;
}

/// declaration: null is fine.
void CssDeclarationList::deleteDeclaration(CssDeclaration* declaration)
{
    if (arena_ == nullptr)
        delete declaration;
    else if (declaration != nullptr)
        declaration->~CssDeclaration();
}

bool CssDeclarationList::holds(const CssDeclaration* declaration) const
{
    CssDeclaration* const* own = find(declaration->getProperty());
    return own != nullptr && *own == declaration;
}

/// Takes a declaration of the heap over.
void CssDeclarationList::moveToArena(CssDeclaration*& declaration)
{
    const std::unique_ptr<CssDeclaration> guard(declaration);
    declaration = makeDeclaration(*guard);
}

void CssDeclarationList::deleteDeclarations()
{
    if (arena_ != nullptr && !hasValueLists_)
        return;
    forEach([this](ZVCSSProperty, CssDeclaration* declaration) { deleteDeclaration(declaration); });
}

void CssDeclarationList::replaceByCopies()
{
    PendingCopies copies(*this);
    std::int32_t made = 0;
    forEach([&](ZVCSSProperty, const CssDeclaration* declaration) {
        copies.set(made++, makeDeclaration(*declaration));
    });
    std::int32_t placed = 0;
    forEach([&](ZVCSSProperty, CssDeclaration*& entry) { entry = copies.take(placed++); });
}

void CssDeclarationList::addFrom(CssDeclaration* declaration)
{
    place(ownsDeclarations ? makeDeclaration(*declaration) : declaration);
}

/// Moves a property to where a new one would stand, as replacing does.
void CssDeclarationList::putAgain(ZVCSSProperty property)
{
    if (!isLastOfChain(property))
        Base::put(property, Base::remove(property));
}
