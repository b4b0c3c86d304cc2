#include "output/tree_walk.h"

#include "filter/filter_internals.h"
#include "output/frame_spares.h"
#include "output/host_calls.h"
#include "output/node_values.h"
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

/// Makes room for what noteOpened keeps, so that it can't fail behind the push of a frame.
void reserveNote(HtmlFilterInternals& internals)
{
    internals.openParagraphs.ensureCapacity(internals.openParagraphs.getCount() + 2);
    internals.openListItems.ensureCapacity(internals.openListItems.getCount() + 2);
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

void clearCounts(HtmlFilterInternals& internals)
{
    internals.openTables = 0;
    internals.openPreformatted = 0;
    internals.openParagraphs.clear();
    internals.openListItems.clear();
}

/// A walk inside the walk, over the subtree of an element: its nodes don't see the paragraphs and
/// items that are open outside.
class InnerWalk {
public:
    InnerWalk(const HtmlTreeNode& root, HtmlFilterContext& context)
        : internals_(*context.internals)
        , isInner_(root.parent != nullptr)
        , paragraphs_(internals_.openParagraphs.getCount())
        , items_(internals_.openListItems.getCount())
    {
        if (!isInner_)
            return;
        reserveNote(internals_);
        internals_.openParagraphs.add(nullptr);
        internals_.openListItems.add(nullptr);
    }

    InnerWalk(const InnerWalk&) = delete;
    InnerWalk& operator=(const InnerWalk&) = delete;

    ~InnerWalk()
    {
        if (!isInner_)
            return;
        while (internals_.openParagraphs.getCount() > paragraphs_)
            removeLast(internals_.openParagraphs);
        while (internals_.openListItems.getCount() > items_)
            removeLast(internals_.openListItems);
    }

private:
    HtmlFilterInternals& internals_;
    const bool isInner_;
    const std::int32_t paragraphs_;
    const std::int32_t items_;
};

/// One walk of a slice.
class TreeWalk {
public:
    TreeWalk(HtmlTreeNode* start, HtmlFilterContext& context)
        : node_(start)
        , context_(context)
    {
    }

    HtmlTreeNode* run(const HtmlTreeNode* root)
    {
        bool isFirst = true;
        while ((isFirst || node_ != root) && !hasEnded_) {
            isFirst = false;
            if (step())
                visit();
            // A table is delivered in one go: inside it the host's wish to stop is not granted.
            if (context_.internals->openTables != 0)
                context_.statusFlags &= static_cast<std::uint16_t>(~STATUS_HOST_STOP);
            if (context_.statusFlags != 0)
                break;
        }
        return node_;
    }

private:
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
    }

    HtmlTreeNode* node_;
    HtmlFilterContext& context_;
    bool skipsChildren_ = false;
    bool hasEnded_ = false;
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

void pushFrame(FramePointer frame, HtmlTreeNode& node, HtmlFilterContext& context)
{
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
    reserveNote(*context.internals);
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

void reindexOpenFrames(HtmlFilterContext& context)
{
    HtmlFilterInternals& internals = *context.internals;
    clearCounts(internals);
    for (auto* link = context.deferredList.head; link != nullptr; link = link->next) {
        const std::uint32_t element = link->value->element;
        if (element != ELEMENT_P && element != ELEMENT_LI)
            noteOpened(element, nullptr, internals);
    }
    // Climbing meets the innermost ones first.
    for (HtmlTreeNode* node = context.walkNode; node != nullptr; node = node->parent) {
        if (elementOf(*node) == ELEMENT_P)
            internals.openParagraphs.add(node);
        else if (elementOf(*node) == ELEMENT_LI)
            internals.openListItems.add(node);
    }
    std::reverse(internals.openParagraphs.begin(), internals.openParagraphs.end());
    std::reverse(internals.openListItems.begin(), internals.openListItems.end());
}

HtmlTreeNode* walkTree(HtmlTreeNode* root, HtmlTreeNode* start, HtmlFilterContext& context)
{
    if (context.statusFlags != 0)
        return start;
    const InnerWalk inner(*root, context);
    return TreeWalk(start != nullptr ? start : root, context).run(root);
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
    if (context.internals != nullptr)
        clearCounts(*context.internals);
}
