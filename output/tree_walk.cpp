#include "output/tree_walk.h"

#include "filter/filter_internals.h"
#include "output/captions.h"
#include "output/frame_spares.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/open_tables.h"
#include "output/paragraphs.h"
#include "output/text.h"
#include "style/style_spares.h"
#include "support/process_heap.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::uint32_t kNoColor = 0xFF'FFFF; // what the background is when no frame is open
constexpr std::uint32_t kNoHandle = 0xFFFF'FFFF;
constexpr std::uint32_t kDefaultFontSize = 16;
// As openTables: the last walk was ended by an exception, and what is known of the open elements is
// not that of walkNode.
constexpr std::uint32_t kUnknownCount = 0xFFFF'FFFF;

using OpenNodes = zorvan::ArrayList<HtmlTreeNode*>;

void removeLast(OpenNodes& open)
{
    if (open.getCount() != 0)
        open.remove(open.getCount() - 1);
}

/// Counts a frame that has been put on deferredList.
void noteOpened(std::uint32_t element, HtmlTreeNode* node, HtmlFilterInternals& internals)
{
    switch (element) {
    case ELEMENT_TABLE:
        ++internals.openTables;
        break;
    case ELEMENT_PRE:
    case ELEMENT_LISTING:
    case ELEMENT_XMP:
        ++internals.openPreformatted;
        break;
    case ELEMENT_P:
        internals.openParagraphs.add(node);
        break;
    case ELEMENT_LI:
        internals.openListItems.add(node);
        break;
    default:
        break;
    }
}

void noteClosed(std::uint32_t element, HtmlFilterInternals& internals)
{
    switch (element) {
    case ELEMENT_TABLE:
        --internals.openTables;
        break;
    case ELEMENT_PRE:
    case ELEMENT_LISTING:
    case ELEMENT_XMP:
        --internals.openPreformatted;
        break;
    case ELEMENT_P:
        removeLast(internals.openParagraphs);
        break;
    case ELEMENT_LI:
        removeLast(internals.openListItems);
        break;
    default:
        break;
    }
}

/// Takes a node off that is left, when it is the innermost one.
void forgetOpen(const HtmlTreeNode& node, OpenNodes& open)
{
    if (open.getCount() != 0 && open.last() == &node)
        removeLast(open);
}

void clearCounts(HtmlFilterInternals& internals)
{
    internals.openTables = 0;
    internals.openPreformatted = 0;
    internals.openParagraphs.clear();
    internals.openListItems.clear();
}

/// Whether leaving the element can have something to undo: only then its frame needs a list. A
/// table is given its side margins while it is entered.
bool hasUndo(const HtmlTreeNode& node)
{
    const std::uint32_t element = elementOf(node);
    if (element == ELEMENT_TABLE)
        return true;
    const CssDeclarationList* declarations = declarationsOf(node);
    return element != ELEMENT_BODY && declarations != nullptr && !declarations->isEmpty();
}

/// One walk of a slice, with the walks over captions inside it.
class TreeWalk {
public:
    TreeWalk(HtmlTreeNode* root, HtmlTreeNode* start, HtmlFilterContext& context)
        : node_(start)
        , context_(context)
        , treeRoot_(root)
        , root_(root)
    {
    }

    TreeWalk(const TreeWalk&) = delete;
    TreeWalk& operator=(const TreeWalk&) = delete;

    /// The caller's next walk begins at walkNode again when an exception has ended this one.
    ~TreeWalk()
    {
        if (isDone_)
            return;
        abandonCaptions(context_);
        context_.internals->openTables = kUnknownCount;
    }

    HtmlTreeNode* run()
    {
        HtmlTreeNode* const end = walk();
        isDone_ = true;
        return end;
    }

private:
    /// Walks to the end of the slice.
    HtmlTreeNode* walk()
    {
        for (;;) {
            if (!hasEnded_ && (isFirst_ || node_ != root_)) {
                isFirst_ = false;
                if (step())
                    visit();
            } else if (root_ != treeRoot_) {
                endInnerWalk();
            } else {
                return node_;
            }
            if (hasToEnd()) {
                // The captions end all the same, so that their tables have been entered.
                while (root_ != treeRoot_) {
                    endInnerWalk();
                    dropHostStop();
                }
                return node_;
            }
        }
    }

    /// A table is delivered in one go: inside it the host's wish to stop is not granted.
    void dropHostStop()
    {
        if (context_.internals->openTables != 0)
            context_.statusFlags &= static_cast<std::uint16_t>(~STATUS_HOST_STOP);
    }

    bool hasToEnd()
    {
        dropHostStop();
        return context_.statusFlags != 0;
    }

    /// Goes on by one node. Answers whether the node is to be visited, else it was climbed to.
    bool step()
    {
        if (context_.walkResume != 0) {
            context_.walkResume = 0;
            return context_.walkClimbing == 0;
        }
        if (!skipsChildren_ && context_.walkClimbing == 0 && node_->firstChild != nullptr) {
            node_ = node_->firstChild;
            return true;
        }
        leave();
        if (node_->nextSibling != nullptr) {
            node_ = node_->nextSibling;
            context_.walkClimbing = 0;
            return true;
        }
        context_.walkClimbing = 1;
        if (node_ == context_.walkStopNode || node_->parent == nullptr)
            hasEnded_ = true;
        else
            node_ = node_->parent;
        return false;
    }

    void leave()
    {
        const HTML_SOINFO* frame = newestFrame(context_);
        const std::uint32_t element = elementOf(*node_);
        if (frame != nullptr && element != ELEMENT_NONE && frame->element == element)
            leaveElement(*node_, context_);
        else
            leaveWithoutFrame(element);
    }

    /// Its frame is lost, as behind a position that was stored without; it is no longer open all
    /// the same.
    void leaveWithoutFrame(std::uint32_t element)
    {
        if (element == ELEMENT_TABLE)
            forgetTable(*node_, context_);
        else if (element == ELEMENT_P)
            forgetOpen(*node_, context_.internals->openParagraphs);
        else if (element == ELEMENT_LI)
            forgetOpen(*node_, context_.internals->openListItems);
    }

    void visit()
    {
        skipsChildren_ = false;
        if (elementOf(*node_) == ELEMENT_NONE) {
            deliverTextNode(*node_, context_);
            return;
        }
        skipsChildren_ = enterElement(*node_, context_) == 1;
        if (skipsChildren_)
            context_.walkClimbing = 1;
        else if (elementOf(*node_) == ELEMENT_TABLE)
            beginInnerWalk();
    }

    /// Goes on in the caption of the table that has just been met, when it has begun.
    void beginInnerWalk()
    {
        HtmlTreeNode* const caption = captionInWalk(context_);
        if (caption == nullptr || caption == root_)
            return;
        node_ = caption;
        root_ = caption;
        isFirst_ = true;
    }

    /// Goes on in the table whose caption is done.
    void endInnerWalk()
    {
        node_ = endCaption(context_);
        HtmlTreeNode* const caption = captionInWalk(context_);
        root_ = caption != nullptr ? caption : treeRoot_;
        skipsChildren_ = false;
        hasEnded_ = false;
    }

    HtmlTreeNode* node_;
    HtmlFilterContext& context_;
    HtmlTreeNode* const treeRoot_;
    HtmlTreeNode* root_; // of the innermost walk
    bool isFirst_ = true;
    bool skipsChildren_ = false;
    bool hasEnded_ = false;
    bool isDone_ = false;
};

} // namespace

void freeFrame(HTML_SOINFO* frame)
{
    if (frame == nullptr)
        return;
    delete frame->undoList;
    delete frame;
}

HTML_SOINFO emptyFrame()
{
    HTML_SOINFO frame{};
    frame.handle = kNoHandle;
    frame.bookmark = kNoHandle;
    frame.backColor = kNoColor;
    frame.fontSizePx = kDefaultFontSize;
    return frame;
}

FramePointer makeFrame(HtmlFilterContext& context)
{
    FrameSpares* const spares = frameSparesOf(context);
    HTML_SOINFO* frame = spares != nullptr ? spares->take() : nullptr;
    if (frame == nullptr)
        frame = zorvan::newObject<HTML_SOINFO>();
    if (spares == nullptr || frame == nullptr) {
        delete frame;
        context.statusFlags |= STATUS_OUT_OF_MEMORY;
        return nullptr;
    }
    const HTML_SOINFO* newest = newestFrame(context);
    *frame = newest != nullptr ? *newest : emptyFrame();
    frame->undoList = nullptr;
    return FramePointer(frame);
}

FramePointer makeElementFrame(const HtmlTreeNode& node, HtmlFilterContext& context)
{
    FramePointer frame = makeFrame(context);
    if (frame == nullptr || !hasUndo(node))
        return frame;
    frame->undoList = takeUndoList(context).release();
    if (frame->undoList == nullptr)
        context.statusFlags |= STATUS_OUT_OF_MEMORY;
    return frame;
}

void pushFrame(FramePointer frame, HtmlTreeNode& node, HtmlFilterContext& context)
{
    if (frame->undoList != nullptr && frame->undoList->isEmpty()) {
        giveBackUndoList(
            std::unique_ptr<CssDeclarationList>(std::exchange(frame->undoList, nullptr)), context);
    }
    const HTML_SOINFO* newest = newestFrame(context);
    CssDeclarationList* declarations = declarationsOf(node);
    frame->backColor = newest != nullptr ? newest->backColor : kNoColor;
    if (declarations != nullptr) {
        const HtmlColorValue* color
            = HtmlColorValue::from(declarations->findValue(PROPERTY_BACKGROUND_COLOR));
        if (color != nullptr)
            frame->backColor = color->color;
    }
    frame->element = elementOf(node);
    buildFrame(*frame, newest != nullptr ? *newest : *frame, declarations, context);
    reserveOpenNodes(context);
    if (FrameSpares* const spares = frameSparesOf(context))
        spares->push(frame.get(), context.deferredList);
    else
        context.deferredList.push(frame.get());
    frame.release();
    noteOpened(elementOf(node), &node, *context.internals);
}

void popFrame(HtmlFilterContext& context)
{
    HTML_SOINFO* const frame = newestFrame(context);
    noteClosed(frame->element, *context.internals);
    giveBackUndoList(
        std::unique_ptr<CssDeclarationList>(std::exchange(frame->undoList, nullptr)), context);
    // There are no spares yet when the frames come from a stored position.
    if (FrameSpares* const spares = context.internals->frameSpares.get())
        spares->pop(context.deferredList);
    else
        delete context.deferredList.pop();
}

void reserveOpenNodes(HtmlFilterContext& context)
{
    HtmlFilterInternals& internals = *context.internals;
    internals.openParagraphs.ensureCapacity(internals.openParagraphs.getCount() + 2);
    internals.openListItems.ensureCapacity(internals.openListItems.getCount() + 2);
}

void reindexOpenFrames(HtmlFilterContext& context)
{
    HtmlFilterInternals& internals = *context.internals;
    clearCounts(internals);
    // Stays so if what follows fails: the next walk tries again.
    internals.openTables = kUnknownCount;
    // Climbing meets the innermost ones first.
    for (HtmlTreeNode* node = context.walkNode; node != nullptr; node = node->parent) {
        if (elementOf(*node) == ELEMENT_P)
            internals.openParagraphs.add(node);
        else if (elementOf(*node) == ELEMENT_LI)
            internals.openListItems.add(node);
    }
    std::reverse(internals.openParagraphs.begin(), internals.openParagraphs.end());
    std::reverse(internals.openListItems.begin(), internals.openListItems.end());
    reindexOpenTables(context);
    internals.openTables = 0;
    for (auto* link = context.deferredList.head; link != nullptr; link = link->next) {
        const std::uint32_t element = link->value->element;
        if (element != ELEMENT_P && element != ELEMENT_LI)
            noteOpened(element, nullptr, internals);
    }
}

HtmlTreeNode* walkTree(HtmlTreeNode* root, HtmlTreeNode* start, HtmlFilterContext& context)
{
    if (context.statusFlags != 0)
        return start;
    if (context.internals->openTables == kUnknownCount)
        reindexOpenFrames(context);
    return TreeWalk(root, start != nullptr ? start : root, context).run();
}

void emitParagraphBreak(HtmlFilterContext& context)
{
    if (SOEmitBreak(BREAK_PARAGRAPH, 0, context) == 1)
        context.statusFlags |= STATUS_HOST_STOP;
}

void endParagraph(HtmlFilterContext& context)
{
    constexpr std::uint32_t kParagraphBits = PARAGRAPH_MARKER | PARAGRAPH_OPEN;
    context.lastChar = 0;
    context.paragraphFlags &= static_cast<std::uint16_t>(~kParagraphBits);
    emitParagraphBreak(context);
}

void clearDeferredList(HtmlFilterContext& context)
{
    while (!context.deferredList.isEmpty())
        freeFrame(context.deferredList.pop());
    if (context.internals == nullptr)
        return;
    forgetAllTables(context);
    clearCounts(*context.internals);
}
