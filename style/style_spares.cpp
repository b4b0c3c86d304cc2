#include "style/style_spares.h"

#include "containers/failures.h"
#include "filter/filter_internals.h"
#include "style/cascade.h"
#include "style/css_declaration.h"
#include "style/css_declaration_list.h"
#include "support/process_heap.h"

#include <utility>

namespace {

// The capacities of a new list. One that has grown has another order of iteration.
constexpr std::uint32_t kBuckets = 16;
constexpr std::uint32_t kOverflowSlots = 16;
constexpr std::uint32_t kMostBuckets = 64; // of a list that is worth its storage

template <class T> std::unique_ptr<T> checked(T* made)
{
    if (made == nullptr)
        zorvan::throwOutOfStorage();
    return std::unique_ptr<T>(made);
}

void deleteNewest(zorvan::LinkedList<BuildFrame*>& frames) { delete frames.pop(); }

} // namespace

StyleSpares::~StyleSpares()
{
    for (std::int32_t i = 0; i < listCount_; ++i)
        delete lists_[i];
    for (std::int32_t i = 0; i < declarationCount_; ++i)
        delete declarations_[i];
    while (!frames_.isEmpty())
        deleteNewest(frames_);
}

std::unique_ptr<CssDeclarationList> StyleSpares::takeList(ValueCache* values)
{
    if (listCount_ > 0 && lists_[listCount_ - 1]->valueCache == values)
        return std::unique_ptr<CssDeclarationList>(lists_[--listCount_]);
    return std::unique_ptr<CssDeclarationList>(zorvan::newObject<CssDeclarationList>(values));
}

void StyleSpares::giveBack(std::unique_ptr<CssDeclarationList> list)
{
    if (list == nullptr || listCount_ == kMostLists || !list->isOwning() || list->isInArena()
        || list->getCapacity() > kMostBuckets || list->getOverflowCapacity() != kOverflowSlots)
        return;
    for (auto cursor = list->first(); !cursor.isAtEnd(); cursor.advance()) {
        if (declarationCount_ == kMostDeclarations)
            delete cursor.value();
        else
            declarations_[declarationCount_++] = cursor.value();
    }
    list->startAnew(kBuckets, kOverflowSlots);
    lists_[listCount_++] = list.release();
}

void StyleSpares::setCopy(const CssDeclaration& declaration, CssDeclarationList& list)
{
    if (!list.replaceByCopy(declaration))
        addCopy(declaration, list);
}

void StyleSpares::addCopy(const CssDeclaration& declaration, CssDeclarationList& list)
{
    std::unique_ptr<CssDeclaration> copy;
    if (declarationCount_ > 0) {
        copy.reset(declarations_[--declarationCount_]);
        *copy = declaration;
    } else {
        copy = checked(zorvan::newObject<CssDeclaration>(declaration));
    }
    list.CssDeclarationList::Base::putNew(declaration.getProperty(), copy.get());
    copy.release();
}

void StyleSpares::reserveFrame()
{
    if (!frames_.isEmpty())
        return;
    auto frame = checked(zorvan::newObject<BuildFrame>());
    frames_.push(frame.get());
    frame.release();
}

void StyleSpares::pushFrame(const BuildFrame& frame, zorvan::LinkedList<BuildFrame*>& frames)
{
    *frames_.head->value = frame;
    frames_.moveHeadTo(frames);
}

void StyleSpares::popFrame(zorvan::LinkedList<BuildFrame*>& frames)
{
    if (frames_.getCount() == kMostFrames)
        deleteNewest(frames);
    else
        frames.moveHeadTo(frames_);
}

StyleSpares& styleSparesOf(HtmlFilterContext& context)
{
    auto& spares = context.internals->styleSpares;
    if (spares == nullptr) {
        auto made = checked(zorvan::newObject<StyleSpares>());
        spares = {made.release(), [](StyleSpares* old) { delete old; }};
    }
    return *spares;
}

std::unique_ptr<CssDeclarationList> takeUndoList(HtmlFilterContext& context)
{
    if (StyleSpares* const spares = context.internals->styleSpares.get())
        return spares->takeList(context.valueCache);
    return std::unique_ptr<CssDeclarationList>(
        zorvan::newObject<CssDeclarationList>(context.valueCache));
}

void setUndo(
    const CssDeclaration& declaration, CssDeclarationList& undoList, HtmlFilterContext& context)
{
    if (StyleSpares* const spares = context.internals->styleSpares.get())
        spares->setCopy(declaration, undoList);
    else
        undoList.setCopy(declaration);
}

void giveBackUndoList(std::unique_ptr<CssDeclarationList> undoList, HtmlFilterContext& context)
{
    if (StyleSpares* const spares = context.internals->styleSpares.get())
        spares->giveBack(std::move(undoList));
}
