#include "filter/section.h"

#include "containers/array_list.h"
#include "containers/indexed_list.h"
#include "filter/entry_points.h"
#include "filter/filter_internals.h"
#include "input/charset.h"
#include "output/host_calls.h"
#include "output/tree_walk.h"
#include "style/cascade.h"
#include "style/style_sheet.h"
#include "support/process_heap.h"
#include "support/wstring.h"
#include "tree/active_formatting.h"
#include "tree/html_tree.h"
#include "tree/tree_construction.h"
#include "tree/tree_state.h"

#include <cstring>
#include <memory>
#include <new>

using zorvan::newObject;

namespace {

constexpr std::uint16_t kBaseFontHeight = 24;
constexpr std::uint32_t kDefaultLinkColor = 0xFF0000;
constexpr std::uint32_t kNoPageColor = 0xFFFFFFFF;

void resetSaveBlock(HtmlFilterContext& context)
{
    const std::uint16_t readCount = context.readCount;
    std::memset(static_cast<void*>(&context), 0, kSaveBlockSize);
    context.readCount = readCount;
    context.lastStyleSheetId = -1;
}

void applyForcedCharSet(HtmlFilterContext& context)
{
    if (context.forcedCharSetId == 0)
        return;
    context.requestedCharSetId = context.forcedCharSetId;
    context.currentCharSet = charSetCodeFromId(context.forcedCharSetId);
}

void resetOutputState(HtmlFilterContext& context)
{
    context.statusFlags = 0;
    context.fieldCounter = 0;
    context.linkCounter = 0;
    context.bookmarkCounter = 0;
    context.pendingTab = 0;
    context.baseFontHeight = kBaseFontHeight;
    context.listDepth = -1;
    context.textColorMode = 1;
    context.textColor = 0;
    context.linkColor = kDefaultLinkColor;
    context.defaultLinkColor = kDefaultLinkColor;
    context.pageColor = kNoPageColor;
}

bool isByteOrderRequest(std::uint32_t charSetId)
{
    return charSetId == CHARSET_ID_UTF16_LITTLE_ENDIAN || charSetId == CHARSET_ID_UTF16_BIG_ENDIAN;
}

// The byte order that an earlier section found in its input is no use to the next one; that of a
// request that no mark has overruled is good for all.
void chooseCharSet(HtmlFilterContext& context)
{
    HtmlFilterInternals& internals = *context.internals;
    if (internals.byteOrderFromInput)
        context.unicodeBomMode = 0;
    context.bomSeen = 0;
    const std::uint16_t modeBefore = context.unicodeBomMode;
    context.unicodeBomMode = 0;
    chooseDefaultCharSet(context);
    internals.byteOrderFromInput = context.unicodeBomMode != 0;
    if (!internals.byteOrderFromInput)
        context.unicodeBomMode = modeBefore;
    resetOutputState(context);
    if (isByteOrderRequest(context.requestedCharSetId))
        internals.byteOrderFromInput = false;
    chooseSectionCharSet(context);
    if (context.bomSeen != 0)
        internals.byteOrderFromInput = true;
    context.sectionCharSet = context.currentCharSet;
    context.sectionCharSetId = charSetIdFromCode(context.currentCharSet);
}

void resetTreeConstruction(HtmlFilterContext& context)
{
    SetInsertionMode(InsertionMode::Initial, context);
    context.originalInsertionMode = 0;
    context.currentNode = nullptr;
    context.savedWalkNodeId = -1;
    context.pendingText->clear();
    context.pendingTextFoster = 0;
    context.pendingTableChars->clear();
    context.pendingChars->clear();
    context.internals->pendingCharsTaken = 0;
    context.internals->hasRetryToken = false;
    context.internals->cutMarkup = {}; // another section may read other bytes at the same places
    context.tableTextAllSpace = 0;
    context.rawTextMode = RAW_TEXT_NONE;
    context.rawTextElement = 0;
    context.rawTextAtLineStart = 0;
    context.framesetOk = 1;
    context.headElement = nullptr;
    context.formElement = nullptr;
    context.walkPending = 0;
    context.parseError = 0;
    ClearActiveFormatting(context);
    clearBuildFrames(context);
    clearDeferredList(context);
}

} // namespace

bool isOpenComplete(const HtmlFilterContext& context)
{
    return context.internals != nullptr && context.treeStates != nullptr
        && context.valueCache != nullptr && context.treeList != nullptr
        && context.pendingText != nullptr && context.pendingTableChars != nullptr
        && context.pendingChars != nullptr && context.fontNames != nullptr
        && context.activeFormatting != nullptr && context.initialStyle != nullptr
        && context.runningStyle != nullptr && context.tableBackground != nullptr
        && context.stream != nullptr;
}

void createTree(HtmlFilterContext& context)
{
    std::unique_ptr<HtmlTree> tree(newObject<HtmlTree>());
    std::unique_ptr<TreeState> state(newObject<TreeState>());
    std::unique_ptr<StyleSheet> sheet(newObject<StyleSheet>(context.valueCache, &context));
    if (tree == nullptr || state == nullptr || sheet == nullptr)
        throw std::bad_alloc();

    const std::int32_t index = context.treeList->getCount();
    state->index = static_cast<std::uint32_t>(index);
    context.treeList->add(tree.get());
    context.currentTreeRoot = tree.release()->root();
    context.currentTreeIndex = index;
    context.walkNode = nullptr;

    context.openElements = nullptr;
    context.treeStates->set(index, state.get());
    context.openElements = &state->openElements;
    state.release()->styleContext = sheet.release();
}

void initSection(StreamBlock* stream, HtmlFilterContext& context)
{
    context.stream = stream;
    if (!isOpenComplete(context))
        throw std::bad_alloc();
    resetSaveBlock(context);
    applyForcedCharSet(context);
    context.statusFlags = 0;
    chooseCharSet(context);
    createTree(context);
    resetTreeConstruction(context);
    if (context.readCount == 0)
        SOAnnounceFeatures(ANNOUNCED_FEATURES, context);
}

std::uint16_t VwStreamSection(StreamBlock* stream, HtmlFilterContext* context)
{
    SOAnnounceSection(ANNOUNCED_SECTION, 0, 0, *context);
    initSection(stream, *context);
    return 0;
}
