#pragma once

#include "containers/linked_list.h"
#include "filter/html_filter_context.h"

#include <cstdint>
#include <memory>

class CssDeclaration;
class CssDeclarationList;
struct BuildFrame;

/// What style needs only while an element is open, kept for the next element: making it anew would
/// cost more than all else that is done with it. A document has one, which goes at close. However
/// deep a document is nested, a fixed number of objects is kept.
class StyleSpares {
public:
    StyleSpares() = default;
    StyleSpares(const StyleSpares&) = delete;
    StyleSpares& operator=(const StyleSpares&) = delete;
    ~StyleSpares();

    /// An empty owning list that can't be told from a new one; null when there is no memory.
    std::unique_ptr<CssDeclarationList> takeList(ValueCache* values);

    /// Takes a list back whose declarations nobody needs any more, whoever made it; null is fine.
    void giveBack(std::unique_ptr<CssDeclarationList> list);

    /// As CssDeclarationList::setCopy, for an owning list.
    void setCopy(const CssDeclaration& declaration, CssDeclarationList& list);

    /// The same for a property that the list has no declaration of.
    void addCopy(const CssDeclaration& declaration, CssDeclarationList& list);

    /// Sees to it that pushFrame needs no memory. Throws std::bad_alloc.
    void reserveFrame();

    /// Puts a copy of a frame on a list; reserveFrame must have been called.
    void pushFrame(const BuildFrame& frame, zorvan::LinkedList<BuildFrame*>& frames);

    /// Takes the newest frame, which must be there, off a list.
    void popFrame(zorvan::LinkedList<BuildFrame*>& frames);

private:
    static constexpr std::int32_t kMostLists = 64;
    static constexpr std::int32_t kMostDeclarations = 256;
    static constexpr std::int32_t kMostFrames = 64;

    CssDeclarationList* lists_[kMostLists] = {}; // owned, empty
    CssDeclaration* declarations_[kMostDeclarations] = {}; // owned
    std::int32_t listCount_ = 0;
    std::int32_t declarationCount_ = 0;
    zorvan::LinkedList<BuildFrame*> frames_ = {}; // owned with its frames
};

/// The spares of a document, made at the first call. Throws std::bad_alloc.
StyleSpares& styleSparesOf(HtmlFilterContext& context);

/// takeList, setCopy and giveBack of a document that may have no spares yet.
std::unique_ptr<CssDeclarationList> takeUndoList(HtmlFilterContext& context);
void setUndo(
    const CssDeclaration& declaration, CssDeclarationList& undoList, HtmlFilterContext& context);
void giveBackUndoList(std::unique_ptr<CssDeclarationList> undoList, HtmlFilterContext& context);
