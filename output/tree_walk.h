#pragma once

#include "filter/html_filter_context.h"

#include <cstddef>
#include <cstdint>
#include <memory>

/// Where a row stands among its siblings.
enum RowPlace : std::uint32_t { ROW_HAS_PREVIOUS = 1, ROW_HAS_NEXT = 2 };

/// The frame of an open element during the walk, newest first on deferredList. It is saved with a
/// position as bytes; undoList is owned by the frame.
struct HTML_SOINFO {
    std::uint32_t reserved0;
    std::uint32_t handle; ///< value of a link, field, row or cell; -1 in the empty frame
    std::uint32_t bookmark; ///< value of a bookmark stretch; -1 in the empty frame
    std::uint16_t savedListDepth; ///< listDepth at a table's start
    std::uint16_t reserved14;
    std::uint32_t columnIndex; ///< tr: index of the next column
    std::uint32_t columnCount; ///< tr: columns of this row, with pending spans
    std::uint16_t savedBlockquoteDepth; ///< blockquoteDepth at a table's start
    std::uint16_t reserved26;
    std::uint32_t element; ///< ZVHTMLElement of the owner
    std::uint32_t backColor; ///< background in force; -1 none, 0xFFFFFF when no frame is open
    std::uint32_t fontSizePx; ///< 16 when no frame is open
    std::int32_t firstIndentPx;
    std::int32_t leftIndentPx;
    std::int32_t rightIndentPx;
    std::uint32_t alignment; ///< 0 not set, 1 left, 2 right, 3 other
    std::uint32_t rowPlace; ///< tr: RowPlace bits
    std::uint32_t reserved60;
    CssDeclarationList* undoList; ///< owned; null when empty
};
static_assert(sizeof(HTML_SOINFO) == 72);
static_assert(offsetof(HTML_SOINFO, undoList) == 64);

/// Deletes a frame with its undo list; null is fine.
void freeFrame(HTML_SOINFO* frame);

struct FrameDeleter {
    void operator()(HTML_SOINFO* frame) const { freeFrame(frame); }
};
/// A frame that is not on deferredList yet.
using FramePointer = std::unique_ptr<HTML_SOINFO, FrameDeleter>;

/// The frame of the innermost open element; null when none is open.
inline HTML_SOINFO* newestFrame(const HtmlFilterContext& context)
{
    return context.deferredList.isEmpty() ? nullptr : context.deferredList.head->value;
}

/// What a frame starts from when none is open.
HTML_SOINFO emptyFrame();

/// A new frame: a copy of the newest one, or the empty one, with no undo list. Null, with
/// STATUS_OUT_OF_MEMORY set, when there is no memory.
FramePointer makeFrame(HtmlFilterContext& context);

/// The same for an element, with an empty undo list when leaving it can have something to undo.
FramePointer makeElementFrame(const HtmlTreeNode& node, HtmlFilterContext& context);

/// Completes the frame of an element that is being entered (its background, indents and owner),
/// drops an undo list that has stayed empty, and puts the frame on deferredList.
void pushFrame(FramePointer frame, HtmlTreeNode& node, HtmlFilterContext& context);

/// Takes the newest frame off deferredList and deletes it.
void popFrame(HtmlFilterContext& context);

/// Makes room for one more in openParagraphs and openListItems, so that adding it can't fail.
void reserveOpenNodes(HtmlFilterContext& context);

/// Makes anew what is known of the open elements, after deferredList and walkNode were set by other
/// means than a walk.
void reindexOpenFrames(HtmlFilterContext& context);

/// Walks the tree from start (null: the root) and tells the host. Answers the node at which the
/// slice ended; the root means that the tree is done.
HtmlTreeNode* walkTree(HtmlTreeNode* root, HtmlTreeNode* start, HtmlFilterContext& context);

/// The entry dispatcher. Answers 1 when the node's children are not to be visited.
std::uint32_t enterElement(HtmlTreeNode& node, HtmlFilterContext& context);

/// The exit dispatcher; answers 0. The newest frame is the node's.
std::uint32_t leaveElement(HtmlTreeNode& node, HtmlFilterContext& context);

/// Ends the paragraph: clears its state, sends the break, notes the host's wish to stop.
void endParagraph(HtmlFilterContext& context);

/// Whether content or an owed break has opened the paragraph.
inline bool isParagraphOpen(const HtmlFilterContext& context)
{
    return (context.paragraphFlags & PARAGRAPH_OPEN) != 0;
}

/// Sends a break of kind 1 and notes the host's wish to stop; the paragraph's state stays.
void emitParagraphBreak(HtmlFilterContext& context);

/// Frees all frames with their undo lists.
void clearDeferredList(HtmlFilterContext& context);
