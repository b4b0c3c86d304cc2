#pragma once

#include "containers/linked_list.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

class ActiveFormattingList;
class CssDeclarationList;
class HtmlGenericNodeData;
class HtmlValue;
class OpenElements;
class ValueCache;
struct BuildFrame;
struct HTML_SOINFO;
struct HtmlFilterInternals;
struct StreamBlock;
struct TreeState;

namespace zorvan {
class WString;
template <class T> class ArrayList;
template <class T> class IndexedList;
template <class T> class LeftChildRightSibTree;
template <class T> class LeftChildRightSibTreeNode;
} // namespace zorvan

using HtmlTree = zorvan::LeftChildRightSibTree<HtmlGenericNodeData*>;
using HtmlTreeNode = zorvan::LeftChildRightSibTreeNode<HtmlGenericNodeData*>;

/// Sizes of the regions of the context, which the host knows.
constexpr std::size_t kSaveBlockSize = 352;
constexpr std::size_t kCallerAreaEnd = 3'288;
constexpr std::size_t kDocumentStateEnd = 3'976;
constexpr std::size_t kContextSize = 5'208;

constexpr std::size_t kListLevelCount = 10;
constexpr std::size_t kTagAttributeCapacity = 16;
constexpr std::size_t kPacketEndCapacity = 20;
constexpr std::size_t kSoRoutineCount = 150;

/// Units that the scanner is given as the limit of a token; the buffer has two more.
constexpr std::uint32_t kTokenLimit = 250'000;

/// Bits of statusFlags. Every loop that reads, builds or walks ends when the word is not 0.
enum StatusFlag : std::uint16_t {
    STATUS_END_OF_INPUT = 1,
    STATUS_HOST_STOP = 2,
    STATUS_OUT_OF_MEMORY = 0x100,
    STATUS_INTERNAL_ERROR = 0x200, ///< reserved: tested and mapped, never set
    STATUS_WALK_NOW = 0x800, ///< reserved: tested, never set
};

/// Bits of paragraphFlags.
enum ParagraphFlag : std::uint16_t {
    PARAGRAPH_MARKER = 0x10, ///< a list marker is owed or was just written
    PARAGRAPH_BREAK_OWED = 0x1000, ///< a break is owed because a block ended
    PARAGRAPH_HAS_CONTENT = 0x2000, ///< something was delivered in the paragraph
    PARAGRAPH_OPEN = 0x3000, ///< mask: the paragraph counts as open
};

/// Bits of walkState.
enum WalkStateBit : std::uint32_t {
    WALK_IN_LINK = 0x40,
    WALK_IN_SELECT = 0x100,
    WALK_IN_HEAD = 0x400,
    WALK_IN_BODY = 0x800,
    WALK_IN_HTML = 0x1000,
    WALK_IN_BOOKMARK = 0x2000,
    WALK_IN_CELL = 0x8000,
    WALK_IN_MAP = 0x10'0000,
    WALK_IN_APPLET = 0x20'0000,
    WALK_IN_STYLE = 0x40'0000,
    WALK_IN_TITLE = 0x400'0000,
    WALK_CAPTION_MET = 0x800'0000,
};

/// Values of rawTextMode.
enum RawTextMode : std::uint32_t {
    RAW_TEXT_NONE = 0,
    RAW_TEXT_STRICT = 1, ///< raw text until the matching end tag
    RAW_TEXT_LENIENT = 2, ///< raw text that a tag at the start of a line ends as well
    RAW_TEXT_TEXTAREA = 3, ///< no effect in the scanner
    RAW_TEXT_PLAINTEXT = 4, ///< no effect in the scanner
};

/// State of one list level.
struct ListLevel {
    std::uint16_t flags; ///< low 5 bits: kind; 0x1000 first item; 0x4000 compact
    std::uint16_t item; ///< number of the last item
    std::uint32_t style; ///< marker style
    std::uint32_t reserved; ///< 0
    std::uint16_t lastItem; ///< item at the list's end
    std::uint16_t skip; ///< added to the item number once
    std::uint16_t savedFlags; ///< flags at the last ol item
    std::uint16_t reserved18; ///< 0
};
static_assert(sizeof(ListLevel) == 20);

/// One known attribute of the tag just scanned.
struct TagAttribute {
    std::uint32_t attribute; ///< ZVHTMLAttribute
    std::uint32_t position; ///< stream position of the value, 0 for an attribute without a value
};

/// The one block of an open document, which every routine receives as its last argument. The host
/// allocates it through VwAllocProc, clears it through VwStreamOpen up to soRoutines and copies its
/// first 352 bytes out and in as the saved position; so nothing in it owns anything by type. Each
/// pointer says who owns what it points to.
struct HtmlFilterContext {
    // --- Region 1, the save block: what a position consists of. Reset at each section start,
    // readCount apart.
    std::uint32_t savedStreamPos; ///< 0xFFFFFFFF: the stream had reached its end
    std::uint16_t paragraphFlags; ///< ParagraphFlag bits
    std::uint16_t sectionCharSet; ///< character set code in force at the start of the section
    std::uint32_t sectionCharSetId; ///< its host identifier, under which text goes out
    std::uint32_t fieldCounter; ///< last value given to a field or noframes stretch
    std::uint16_t linkCounter; ///< last value given to a hyperlink stretch
    std::uint16_t bookmarkCounter; ///< last value given to a bookmark stretch
    std::uint16_t blockquoteDepth; ///< open blockquotes
    std::uint16_t readCount; ///< VwStreamRead calls of this context; key of positions
    std::uint16_t baseFontHeight; ///< half points
    std::uint16_t lastChar; ///< last character delivered in the paragraph, 0 at its start
    std::uint32_t textColorMode; ///< first word of SOSetTextColor when a link ends
    std::uint32_t textColor; ///< document text color
    std::uint32_t linkColor; ///< document link color
    std::uint32_t pageColor; ///< page background color, 0xFFFFFFFF none
    ListLevel listLevels[kListLevelCount];
    std::int16_t listDepth; ///< -1 outside lists
    std::uint16_t metaCharSet; ///< character set code taken from a meta element
    std::uint32_t walkState; ///< WalkStateBit bits
    std::uint32_t pendingTab; ///< 1: a dt of a nested list owes a tab to its dd
    std::uint32_t tableDepth; ///< open table elements of the walk
    std::uint32_t savedDeferredCount; ///< length of deferredList at Tell time
    std::int32_t savedWalkNodeId; ///< id of the walk's node at Tell time, -1 none
    std::int32_t currentTreeIndex; ///< index in treeList and treeStates
    std::uint32_t walkFinished; ///< 1: the walk of the last tree is back at the root
    std::uint32_t walkClimbing; ///< 0 descending, 1 climbing out of a finished node
    std::int32_t lastStyleSheetId; ///< last style id announced by the walk, -1 none
    std::uint32_t openInitMinusOne; ///< set to -1 at open; nothing reads it
    std::uint32_t lastBlockMargin; ///< bottom margin of the previous block in pixels
    std::uint32_t walkResume; ///< 1: the next step of the walk enters its node again
    std::uint32_t tableBreakSent; ///< 1 between the two breaks around an outermost table
    std::uint16_t savedLastChar; ///< lastChar kept across a title
    std::uint16_t reservedSaveBlock; ///< 0
    std::uint32_t reservedSaveWords[2]; ///< 0
    CssDeclarationList* savedDeclarationList; ///< borrowed from the tree's style context
    HtmlValue* savedValues[4]; ///< borrowed from valueCache

    // --- Region 2, the caller area: zero in stand-alone use, else a copy of an embedding filter's
    // block.
    std::uint8_t hostFilterContext[2'840];
    void* embeddedObjects; ///< attachment table, borrowed from the caller; null none
    std::uint8_t callerReserved[80];
    std::uint32_t forcedCharSetId; ///< host identifier that wins over the document, 0 none
    std::uint32_t lenientRawText; ///< 1: raw text also ends at a tag that opens a line

    // --- Region 3, document state.
    std::uint32_t embeddedMode; ///< 1 when driven through the embedded interface
    std::uint32_t currentAttribute; ///< ZVHTMLAttribute being scanned, 0 outside
    StreamBlock* stream; ///< borrowed from the host
    std::uint32_t requestedCharSetId; ///< host identifier handed in at open
    std::uint16_t defaultCharSet; ///< code chosen from file id, request or mark
    std::uint16_t statusFlags; ///< StatusFlag bits
    std::uint16_t tagAttributeCount; ///< entries of tagAttributes
    std::uint16_t fileId; ///< file identifier given to VwStreamOpen
    TagAttribute tagAttributes[kTagAttributeCapacity];
    std::uint16_t unicodeBomMode; ///< 0 bytes; 254 little-endian, 255 big-endian UTF-16
    std::uint16_t xmpPacketCount; ///< entries of xmpPacketEnds
    zorvan::ArrayList<zorvan::WString*>* fontNames; ///< owned with its strings, freed at close
    void* tokenBufferAlloc; ///< owned by the running VwStreamRead
    char16_t* tokenBuffer; ///< text of the current token, in tokenBufferAlloc
    std::uint32_t xmpPacketStart; ///< stream position of the current packet
    std::uint32_t xmpPacketLength; ///< bytes
    std::uint32_t xmpPacketEnds[kPacketEndCapacity]; ///< packet ends already delivered
    std::uint32_t xmpToSubdocument; ///< 1: packets go out as objects
    std::uint32_t xmpToProperties; ///< 1: packets become document properties
    std::uint32_t backgroundOption; ///< global option 0x45E29
    std::uint32_t backgroundSeen; ///< 1: the option has taken effect, page colors are off
    void* dynamicStore[2]; ///< handle of the dynamic store, given back at close
    std::uint16_t dynamicVar; ///< variable of the store that holds saved frames
    std::uint16_t bomSeen; ///< last byte of the section's byte order mark, 0 none
    std::uint32_t iso2022State; ///< designation in force in 7-bit sets, a host identifier
    std::uint16_t currentCharSet; ///< code that the character reader decodes by
    std::uint16_t reservedCharSet; ///< 0
    std::uint32_t insertionMode; ///< InsertionMode
    std::uint32_t originalInsertionMode; ///< mode to go back to from text-like modes
    std::uint32_t symbolCharSetId; ///< written by symbol spans; nothing reads it
    zorvan::ArrayList<HtmlTree*>* treeList; ///< owned with its trees, freed at close
    std::uint32_t noscriptRawText; ///< stays 0
    std::uint32_t framesetOk; ///< 0 once content rules out a frameset
    OpenElements* openElements; ///< borrowed from the current TreeState
    ActiveFormattingList* activeFormatting; ///< owned, freed at close
    std::uint32_t pendingTextFoster; ///< 1: a character of pendingText came with the foster flag
    std::uint32_t tableTextAllSpace; ///< 1 while pendingTableChars is white space only
    zorvan::WString* pendingTableChars; ///< owned, freed at close
    std::uint32_t rawTextMode; ///< RawTextMode
    std::uint32_t rawTextElement; ///< ZVHTMLElement whose end tag closes raw text
    zorvan::WString* pendingChars; ///< characters given back to the scanner; owned, freed at close
    HtmlTreeNode* currentNode; ///< top of openElements, borrowed from the tree
    HtmlTreeNode* walkNode; ///< where the walk stands, borrowed from the tree
    zorvan::LinkedList<BuildFrame*> buildFrames; ///< owned, emptied at close
    std::uint32_t preListingOpen; ///< nothing reads it
    std::uint32_t parseError; ///< 1 after the first parse error of the section
    std::uint32_t defaultLinkColor;
    std::uint32_t rawTextAtLineStart; ///< lenient raw text: only white space since the line began
    HtmlTreeNode* walkStopNode; ///< node at which the walk ends, borrowed from the tree
    std::uint32_t walkPending; ///< 1: the last slice stopped for the host
    std::uint32_t flattenTables; ///< 1: tables are delivered as plain paragraphs
    zorvan::WString* pendingText; ///< characters not yet a text node; owned, freed at close
    HtmlTreeNode* headElement; ///< borrowed from the tree
    HtmlTreeNode* formElement; ///< the open form, borrowed from the tree; null none
    HtmlTreeNode* currentTreeRoot; ///< borrowed from the tree
    zorvan::LinkedList<HTML_SOINFO*> deferredList; ///< frames of the walk; owned, emptied at close
    zorvan::IndexedList<TreeState>* treeStates; ///< owned with its records, freed at close
    ValueCache* valueCache; ///< owned, freed at close
    CssDeclarationList* initialStyle; ///< what tree construction changes; owned, freed at close
    CssDeclarationList* runningStyle; ///< what the walk changes; owned, freed at close
    HtmlValue* buildBodyBackground; ///< these eight are borrowed from valueCache
    HtmlValue* buildBlockBackground;
    HtmlValue* buildInlineBackground;
    HtmlValue* buildTableBackground;
    HtmlValue* bodyBackground;
    HtmlValue* blockBackground;
    HtmlValue* inlineBackground;
    HtmlValue* tableBackground;
    std::uint16_t recentBytes[4]; ///< last decoded bytes, newest last
    HtmlFilterInternals* internals; ///< what is the filter's alone; owned, freed at close
    std::uint8_t reservedDocumentState[56];

    // --- Region 4: the host's routines, entry n for the routine id n + 1. Survives open and close.
    void* soRoutines[kSoRoutineCount];

    // --- Region 5.
    void* userData1; ///< the words of VwSetUser, passed back with every output call
    void* userData2;
    void* reservedTail; ///< 0
    void* allocationBase; ///< the block itself, for VwFreeProc
};

static_assert(std::is_trivially_copyable_v<HtmlFilterContext>);
static_assert(std::is_standard_layout_v<HtmlFilterContext>);
static_assert(sizeof(HtmlFilterContext) == kContextSize);
static_assert(offsetof(HtmlFilterContext, hostFilterContext) == kSaveBlockSize);
static_assert(offsetof(HtmlFilterContext, embeddedObjects) == 3'192);
static_assert(offsetof(HtmlFilterContext, forcedCharSetId) == kSaveBlockSize + 2'928);
static_assert(offsetof(HtmlFilterContext, lenientRawText) == kSaveBlockSize + 2'932);
static_assert(offsetof(HtmlFilterContext, embeddedMode) == kCallerAreaEnd);
static_assert(offsetof(HtmlFilterContext, soRoutines) == kDocumentStateEnd);
static_assert(offsetof(HtmlFilterContext, userData1) == 5'176);
static_assert(offsetof(HtmlFilterContext, userData2) == 5'184);
static_assert(offsetof(HtmlFilterContext, allocationBase) == 5'200);

/// The host's routine for an id, as the type of the routine. Only the wrappers of
/// output/host_calls.cpp call this.
template <class Routine>
Routine routineAs(std::uint32_t routineId, const HtmlFilterContext& context)
{
    return reinterpret_cast<Routine>(context.soRoutines[routineId - 1]);
}
