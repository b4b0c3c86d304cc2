#include "output/captions.h"

#include "filter/filter_internals.h"
#include "output/host_calls.h"
#include "output/node_values.h"
#include "output/open_tables.h"
#include "output/style_delivery.h"
#include "output/tables.h"
#include "style/style_spares.h"

#include <memory>
#include <utility>

namespace {

using OpenNodes = zorvan::ArrayList<HtmlTreeNode*>;

void shorten(OpenNodes& open, std::int32_t count)
{
    while (open.getCount() > count)
        open.remove(open.getCount() - 1);
}

/// The paragraphs and items that are open outside are hidden from what a caption holds.
void pushWalk(
    FramePointer tableFrame, HtmlTreeNode& table, HtmlTreeNode& caption, HtmlFilterContext& context)
{
    HtmlFilterInternals& internals = *context.internals;
    TableWalk& walk = tableWalkOf(context);
    walk.captions.ensureCapacity(walk.captions.getCount() + 2);
    reserveOpenNodes(context);
    walk.captions.add({&table, &caption, tableFrame.release(), context.deferredList.getCount(),
        internals.openParagraphs.getCount(), internals.openListItems.getCount()});
    internals.openParagraphs.add(nullptr);
    internals.openListItems.add(nullptr);
    ++internals.openTables;
}

/// Takes the innermost record off and puts back what pushWalk has changed. Answers the table's
/// frame.
FramePointer popWalk(HtmlFilterContext& context)
{
    HtmlFilterInternals& internals = *context.internals;
    TableWalk& walk = *internals.tableWalk;
    const CaptionWalk caption = walk.captions.remove(walk.captions.getCount() - 1);
    FramePointer frame(caption.tableFrame);
    --internals.openTables;
    shorten(internals.openParagraphs, caption.paragraphCount);
    shorten(internals.openListItems, caption.listItemCount);
    return frame;
}

/// Drops what is still open in the caption that the walk is in, of which nobody will come out.
/// Nothing of it is undone; only the tables end, so that the host sees the end of each that it has
/// been told of.
void dropOpenContent(HtmlFilterContext& context)
{
    const std::int32_t kept = context.internals->tableWalk->captions.last().frameCount;
    while (context.deferredList.getCount() > kept) {
        if (newestFrame(context)->element == ELEMENT_TABLE)
            leaveTable(*innermostTable(context)->node, context);
        popFrame(context);
    }
}

/// Delivers the style of a caption and opens its frame. Answers false when there is no memory.
bool openCaption(HtmlTreeNode& caption, HtmlFilterContext& context)
{
    FramePointer frame = makeElementFrame(caption, context);
    if (frame == nullptr)
        return false;
    applyStyle(declarationsOf(caption), *frame, ELEMENT_CAPTION, context);
    pushFrame(std::move(frame), caption, context);
    return true;
}

/// Ends the paragraph of a caption and undoes its style.
void closeCaption(HtmlFilterContext& context)
{
    endParagraph(context);
    // The style is undone against the frame around the caption.
    std::unique_ptr<CssDeclarationList> undo(
        std::exchange(newestFrame(context)->undoList, nullptr));
    popFrame(context);
    if (undo != nullptr)
        deliverStyle(*undo, ELEMENT_CAPTION, /*restoring=*/1, context);
    giveBackUndoList(std::move(undo), context);
    const HTML_SOINFO* restored = newestFrame(context);
    if (restored != nullptr && restored->alignment != 0)
        SOSetProperty(PROPERTY_KIND_ALIGNMENT, restored->alignment, 0, 0, context);
}

} // namespace

HtmlTreeNode* beginCaption(FramePointer tableFrame, HtmlTreeNode& table, HtmlFilterContext& context)
{
    const OpenTable open = *innermostTable(context);
    if (open.alignment != 0)
        SOSetProperty(PROPERTY_KIND_ALIGNMENT, open.alignment, 0, 0, context);
    if (openCaption(*open.caption, context)) {
        if (open.caption->firstChild != nullptr) {
            pushWalk(std::move(tableFrame), table, *open.caption, context);
            return open.caption;
        }
        closeCaption(context);
    }
    completeTable(std::move(tableFrame), table, context);
    return nullptr;
}

HtmlTreeNode* captionInWalk(const HtmlFilterContext& context)
{
    const TableWalk* const walk = context.internals->tableWalk.get();
    return walk != nullptr && walk->captions.getCount() != 0 ? walk->captions.last().caption
                                                             : nullptr;
}

HtmlTreeNode* endCaption(HtmlFilterContext& context)
{
    HtmlTreeNode* const table = context.internals->tableWalk->captions.last().table;
    dropOpenContent(context);
    FramePointer tableFrame = popWalk(context);
    context.walkClimbing = 0;
    // A table in the caption that was to be met again goes with the rest of the content.
    context.walkResume = 0;
    closeCaption(context);
    completeTable(std::move(tableFrame), *table, context);
    return table;
}

void abandonCaptions(HtmlFilterContext& context)
{
    while (captionInWalk(context) != nullptr)
        popWalk(context);
}

bool enterCaption(HtmlFilterContext& context)
{
    if (context.flattenTables != 0)
        return false;
    context.walkState |= WALK_CAPTION_MET;
    return true;
}

void leaveCaption(HtmlFilterContext& context)
{
    if (context.flattenTables == 0)
        context.walkState &= ~std::uint32_t{WALK_CAPTION_MET};
}
