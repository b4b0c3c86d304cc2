#include "containers/indexed_list.h"
#include "filter/entry_points.h"
#include "filter/heap_block.h"
#include "filter/prescan.h"
#include "filter/read_buffers.h"
#include "filter/section.h"
#include "output/host_calls.h"
#include "output/tree_walk.h"
#include "tree/html_tree.h"
#include "tree/tree_construction.h"
#include "tree/tree_state.h"

#include <new>

namespace {

constexpr std::uint16_t kReadDone = 0;

/// The token buffer of a call, which the context holds for its time only.
class TokenBuffer {
public:
    explicit TokenBuffer(HtmlFilterContext& context)
        : context_(context)
        , block_(kTokenBufferBytes)
    {
        context_.tokenBufferAlloc = block_.get();
        context_.tokenBuffer = static_cast<char16_t*>(block_.get());
        if (block_.get() == nullptr)
            context_.statusFlags |= STATUS_OUT_OF_MEMORY;
    }

    TokenBuffer(const TokenBuffer&) = delete;
    TokenBuffer& operator=(const TokenBuffer&) = delete;

    ~TokenBuffer()
    {
        context_.tokenBufferAlloc = nullptr;
        context_.tokenBuffer = nullptr;
    }

    bool isThere() const { return block_.get() != nullptr; }

private:
    HtmlFilterContext& context_;
    HeapBlock block_;
};

constexpr std::uint16_t kFailureBits = STATUS_OUT_OF_MEMORY | STATUS_INTERNAL_ERROR;

std::uint32_t abandonCodeOf(std::uint16_t status)
{
    if ((status & STATUS_OUT_OF_MEMORY) != 0)
        return ABANDON_OUT_OF_MEMORY;
    if ((status & STATUS_INTERNAL_ERROR) != 0)
        return ABANDON_INTERNAL_ERROR;
    return ABANDON_UNKNOWN_STATUS;
}

/// The input is exhausted: the tree stands as it is, whatever is still open.
void finishTree(TreeState& state, HtmlFilterContext& context)
{
    context.statusFlags = 0;
    state.parsed = 1;
    state.openElements.clear();
    context.currentNode = nullptr;
    context.walkStopNode = context.currentTreeRoot;
}

/// What a round of parse and walk asks of the loop.
enum class Round { Again, Leave, Abandoned };

/// Gives the filter up when a failure bit is set. The host's routine is not expected to return.
bool abandonOnFailure(HtmlFilterContext& context)
{
    if ((context.statusFlags & kFailureBits) == 0)
        return false;
    SOAbandonFilter(abandonCodeOf(context.statusFlags), context);
    return true;
}

Round walkSlice(HtmlFilterContext& context)
{
    context.walkNode = walkTree(context.currentTreeRoot, context.walkNode, context);
    if (context.walkNode == context.currentTreeRoot)
        context.walkFinished = 1;
    if (context.statusFlags == STATUS_HOST_STOP) {
        context.walkPending = 1;
        return Round::Leave;
    }
    context.walkPending = 0;
    if (abandonOnFailure(context))
        return Round::Abandoned;
    return context.statusFlags != 0 ? Round::Leave : Round::Again;
}

Round runRound(HtmlFilterContext& context)
{
    TreeState* const state = context.treeStates->get(context.currentTreeIndex);
    if (state == nullptr) {
        SOAbandonFilter(ABANDON_NO_TREE_OR_BUFFER, context);
        return Round::Abandoned;
    }
    if (state->parsed != 0 && context.walkFinished != 0)
        return Round::Leave;
    if (state->parsed == 0 && context.walkPending == 0)
        InsertNode(context);

    // The word is looked at as a value: a second bit beside these changes the path.
    if (context.statusFlags == STATUS_END_OF_INPUT)
        finishTree(*state, context);
    else if (context.statusFlags == STATUS_WALK_NOW) {
        context.statusFlags = 0;
        return walkSlice(context);
    }
    if (abandonOnFailure(context))
        return Round::Abandoned;
    if (context.statusFlags != 0)
        return Round::Leave;
    return walkSlice(context);
}

bool isDocumentDone(HtmlFilterContext& context)
{
    if (context.walkFinished != 1)
        return false;
    const TreeState* const state = context.treeStates->get(context.currentTreeIndex);
    return state != nullptr && state->parsed == 1;
}

} // namespace

// One call: on the first of a section the whole input becomes a tree; then, and on each later call,
// the walk goes on until the host wants control back or the tree is done.
std::uint16_t VwStreamRead(StreamBlock* stream, HtmlFilterContext* context)
{
    HtmlFilterContext& document = *context;
    document.stream = stream;
    document.statusFlags = 0;
    if (!isOpenComplete(document))
        throw std::bad_alloc();

    // A block beside the token buffer, of its size, that only has to be there for a read to begin.
    const HeapBlock scratch(kTokenBufferBytes);
    if (scratch.get() == nullptr) {
        document.statusFlags |= STATUS_OUT_OF_MEMORY;
        return kReadDone;
    }
    const TokenBuffer tokenBuffer(document);
    if (!tokenBuffer.isThere())
        return kReadDone;

    ++document.readCount; // 16 bits: after 65,536 reads there is a first one again
    if (document.readCount == 1)
        prescanCharSet(document);

    Round round = Round::Again;
    while (round == Round::Again && document.statusFlags == 0)
        round = runRound(document);
    if (round == Round::Abandoned)
        return kReadDone;

    if (!isDocumentDone(document))
        return kReadDone;
    if (document.embeddedMode != 0)
        return READ_FINISHED;
    SOEmitBreak(BREAK_DOCUMENT, 0, document);
    return kReadDone;
}
