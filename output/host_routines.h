#pragma once

/**
 * What the filter says to its host: the output routines, their codes and records. Plain C, so that
 * hosts in C and C++ can include it.
 *
 * Every routine ends with the two user words given to VwSetUser. Lengths are twips (15 to the CSS
 * pixel) unless a line says otherwise, colors are 0x00BBGGRR, strings are zero-terminated UTF-16 or
 * code units of the character set that the call names; strings and records belong to the filter and
 * are good for the call only. A host leaves a routine by returning or by a C++ exception.
 */

#include <stdint.h>

#ifdef __cplusplus
#include <cstddef>
extern "C" {
#else
#include <stddef.h>
#include <uchar.h>
#endif

/** Routine ids for VwSetSoRtn. The ids run from 1 to SO_ROUTINE_COUNT; those that the filter never
 * calls are stored as well. */
enum {
    SO_EMIT_SPECIAL = 2,
    SO_SET_FONT_HEIGHT = 3,
    SO_EMIT_BREAK = 5,
    SO_ANNOUNCE_SECTION = 18,
    SO_ABANDON_FILTER = 20,
    SO_SELECT_FONT = 31,
    SO_SET_LINE_SPACING = 33,
    SO_DEFINE_FONT = 35,
    SO_FINISH_TABLE = 41,
    SO_PLACE_GRAPHIC = 45,
    SO_PLACE_RULE = 47,
    SO_BEGIN_TAGGED = 49,
    SO_END_TAGGED = 50,
    SO_STORE_STRING = 51,
    SO_SET_PAGE_BORDERS = 71,
    SO_SET_PARAGRAPH_BORDER = 86,
    SO_SET_PARAGRAPH_SHADING = 87,
    SO_SET_TEXT_COLOR = 88,
    SO_SET_BACK_COLOR = 89,
    SO_BEGIN_REFERENCE = 96,
    SO_SET_EXTRA_PROPERTY = 99,
    SO_ATTACH_REFERENCE = 123,
    SO_DEFINE_TABLE = 124,
    SO_DEFINE_TABLE_CELL = 126,
    SO_DEFINE_TABLE_ROW = 127,
    SO_EMIT_TEXT = 129,
    SO_RESERVE_CHARS = 131,
    SO_COMMIT_CHARS = 132,
    SO_MARK_SOURCE_TAG = 138,
    SO_SET_PROPERTY = 141,
    SO_ANNOUNCE_FEATURES = 142,
    SO_ADD_REFERENCE_PART = 147,
    SO_END_REFERENCE = 148,
    SO_EMIT_TEXT_AT = 150,
    SO_ROUTINE_COUNT = 150
};

/** Character set identifiers that the filter itself names; every other one comes from the document.
 */
enum {
    CHARSET_ID_UTF16 = 0x14B00000,
    CHARSET_ID_UTF16_LITTLE_ENDIAN = 0x14B00001,
    CHARSET_ID_UTF16_BIG_ENDIAN = 0x14B00002,
    CHARSET_ID_WINDOWS_1252 = 0x14E40100, /**< single characters in the range 128 to 159 */
    CHARSET_ID_ASCII_STATE = 0x10000100, /**< 7-bit sets: ASCII state */
    CHARSET_ID_JIS_ROMAN_STATE = 0x000A0102,
    CHARSET_ID_JIS_X_0208_STATE = 0x0F0C0000,
    CHARSET_ID_GB_STATE = 0x0F050000,
    CHARSET_ID_KOREAN_STATE = 0x0F060000
};

/** Kinds of SOEmitBreak. */
enum {
    BREAK_PARAGRAPH = 1, /**< end of a paragraph */
    BREAK_DOCUMENT = 2, /**< end of the document, sent by the read driver */
    BREAK_TABLE = 9, /**< in front of an outermost table and behind it */
    BREAK_ROW = 19, /**< end of a table row; the handle is the row's */
    BREAK_CELL = 20 /**< end of a table cell; the handle is the cell's */
};

/** Codes of SOEmitSpecial. */
enum { SPECIAL_TAB = 1, SPECIAL_MARKER_GAP = 6 };

/** Kinds of SOSetProperty. */
enum {
    PROPERTY_KIND_CHARACTER = 8, /**< sub: a CHARACTER_ code; flag: 1 on, 0 off */
    PROPERTY_KIND_ALIGNMENT = 12, /**< sub: 1 left, 2 right, 3 center, 4 justified */
    PROPERTY_KIND_SIDE_MARGINS = 20, /**< sub: left page margin; flag: right page margin */
    PROPERTY_KIND_TOP_BOTTOM_MARGINS = 37, /**< sub: top page margin; flag: bottom page margin */
    PROPERTY_KIND_TAB_DISTANCE = 88, /**< sub: distance of the default tab stops */
    PROPERTY_KIND_INDENT = 97, /**< sub: 0 left, 1 right, 2 first line; value: indent */
    PROPERTY_KIND_SPACE_BEFORE = 98, /**< sub: 1; flag: space before the paragraph */
    PROPERTY_KIND_SPACE_AFTER = 99, /**< sub: 1; flag: space after the paragraph */
    PROPERTY_KIND_PAGE_COLOR = 117, /**< sub: color of the page */
    PROPERTY_KIND_DIRECTION = 172 /**< sub: 0 left to right, 1 right to left */
};

/** Indents, the sub codes of PROPERTY_KIND_INDENT. */
enum { INDENT_LEFT = 0, INDENT_RIGHT = 1, INDENT_FIRST_LINE = 2 };

/** Alignments, the sub codes of PROPERTY_KIND_ALIGNMENT and in the records of tables. */
enum { ALIGNMENT_LEFT = 1, ALIGNMENT_RIGHT = 2, ALIGNMENT_CENTER = 3, ALIGNMENT_JUSTIFIED = 4 };

/** Character attributes, the sub codes of PROPERTY_KIND_CHARACTER. */
enum {
    CHARACTER_BOLD = 2,
    CHARACTER_ITALIC = 3,
    CHARACTER_UNDERLINE = 4,
    CHARACTER_SMALL_CAPITALS = 6,
    CHARACTER_ALL_CAPITALS = 9,
    CHARACTER_SUBSCRIPT = 10,
    CHARACTER_SUPERSCRIPT = 11,
    CHARACTER_STRIKE_THROUGH = 12,
    CHARACTER_LOWER_CASE = 16,
    CHARACTER_INITIAL_CAPITALS = 17,
    CHARACTER_INSERTED = 19,
    CHARACTER_DELETED = 20,
    CHARACTER_BLINK = 21
};

/** Kinds of SOSetExtraProperty, and the notices of kind 249. */
enum {
    EXTRA_PROPERTY_SPACING = 62, /**< sub: 1 widened (0: normal), 2 narrowed; value: twips */
    EXTRA_PROPERTY_NOTICE = 249,
    NOTICE_FORM = 4,
    NOTICE_PARSE_ERROR = 14,
    NOTICE_WIDE_IMAGE = 18
};

/** Tags of SOBeginTagged; the low 16 bits are the byte size of the tag's record. */
#define TAG_HYPERLINK 0x8003000Cu
#define TAG_BOOKMARK 0x80020008u
#define TAG_FIELD 0xA0010004u
#define TAG_FIELD_NAME 0x201C0000u
#define TAG_NOFRAMES 0xA00A0000u
#define TAG_SOURCE_STYLE 0xA008001Cu
#define TAG_PACKET_PROPERTIES 0x80400000u

/** Field codes, the record of TAG_FIELD. */
enum {
    FIELD_DESCRIPTION = 1,
    FIELD_KEYWORDS = 2,
    FIELD_AUTHOR = 4,
    FIELD_SUBJECT = 5,
    FIELD_TITLE = 6,
    FIELD_GENERATOR = 29,
    FIELD_VERSION = 57,
    FIELD_BASE = 59,
    FIELD_OTHER = 500
};

/** Codes of SOAddReferencePart. */
enum {
    REFERENCE_PART_STREAM = 8, /**< a: stream offset; b: length in bytes */
    REFERENCE_PART_TARGET = 128, /**< a: string handle of a URL or file name */
    REFERENCE_PART_BOOKMARK = 512, /**< a: string handle of a bookmark name */
    REFERENCE_PART_ENCODING = 8192 /**< a: 2 base64 */
};

/** Codes of SOAbandonFilter. */
enum {
    ABANDON_OUT_OF_MEMORY = 13,
    ABANDON_NO_TREE_OR_BUFFER = 30,
    ABANDON_INTERNAL_ERROR = 260,
    ABANDON_UNKNOWN_STATUS = 461
};

/** The handle of a string that is not there. */
#define SO_NO_STRING 0xFFFFFFFFu
/** The id of a reference that is not there. */
#define SO_NO_REFERENCE 0xFFFFFFFFu

/** The fourth word of SOEmitTextAt. */
#define EMIT_TEXT_AT_WORD 0x1234u
/** The units that SOReserveChars is asked for. */
#define RESERVED_CHARS_CAPACITY 511u
/** The word of SOAnnounceFeatures and the first of SOAnnounceSection. */
#define ANNOUNCED_FEATURES 0x148098u
#define ANNOUNCED_SECTION 12u

/** One side of a border. */
typedef struct BorderSide {
    uint32_t width; /**< twips; a side that was not given has 15 */
    uint32_t color; /**< 0x00BBGGRR */
    uint32_t style; /**< a BORDER_STYLE_ code */
    uint32_t reserved[2]; /**< 0 */
} BorderSide;

/** Styles of a border side. */
enum {
    BORDER_STYLE_SOLID = 0,
    BORDER_STYLE_NONE = 1,
    BORDER_STYLE_DOUBLE = 2,
    BORDER_STYLE_GROOVE = 0x10,
    BORDER_STYLE_DOTTED = 0x20,
    BORDER_STYLE_DASHED = 0x80
};

/** Record of SOSetPageBorders. */
typedef struct PageBorderRecord {
    BorderSide top;
    BorderSide left;
    BorderSide bottom;
    BorderSide right;
} PageBorderRecord;

/** Record of SOSetParagraphBorder. */
typedef struct ParagraphBorderRecord {
    uint32_t reserved0; /**< 0 */
    BorderSide top;
    BorderSide left;
    BorderSide bottom;
    BorderSide right;
    uint32_t reserved84[5]; /**< 0 */
} ParagraphBorderRecord;

/** Record of SOSetParagraphShading; all zero when clearing. */
typedef struct ParagraphShadingRecord {
    uint32_t fill; /**< 13: solid */
    uint32_t reserved4[2];
    uint32_t color;
    uint32_t reserved16;
} ParagraphShadingRecord;

/** Record of SOPlaceGraphic. */
typedef struct GraphicRecord {
    uint32_t size; /**< 196 */
    uint32_t flags; /**< 4: altString is valid */
    uint32_t word8; /**< 1 */
    uint32_t reserved12[10];
    uint32_t height; /**< twips, 0 unknown */
    uint32_t width; /**< twips, 0 unknown */
    BorderSide left;
    BorderSide top;
    BorderSide bottom;
    BorderSide right;
    uint32_t sizing; /**< 0 both sizes known, 4 one known, 1 none known */
    uint32_t reserved144[4];
    uint32_t object; /**< payload of the matched attachment, 0 none */
    uint32_t word164; /**< 0xFFFFFFFF */
    uint32_t altString; /**< string handle, SO_NO_STRING none */
    uint32_t reserved172[5];
    uint32_t titleString; /**< string handle, SO_NO_STRING none */
} GraphicRecord;

/** Record of SOPlaceRule. */
typedef struct RuleRecord {
    uint32_t kind; /**< 2 */
    uint32_t anchor; /**< 257 in a table, 33 left, 36 right, 128 centered */
    int32_t offset; /**< twips */
    uint32_t reserved12[5];
} RuleRecord;

/** Bits of HyperlinkRecord::flags. */
enum {
    LINK_TARGET_STRING = 1, /**< targetString is valid */
    LINK_TARGET_FRAME = 2, /**< the target opens in a frame; one of the kinds below goes with it */
    LINK_FRAME_SELF = 0x10000,
    LINK_FRAME_TOP = 0x20000,
    LINK_FRAME_BLANK = 0x30000,
    LINK_FRAME_PARENT = 0x40000,
    LINK_FRAME_MASK = 0xF0000
};

/** Record of TAG_HYPERLINK. */
typedef struct HyperlinkRecord {
    uint32_t flags; /**< LINK_ bits */
    uint32_t referenceId; /**< SO_NO_REFERENCE none */
    uint32_t targetString; /**< handle of a bookmark name, SO_NO_STRING none */
} HyperlinkRecord;

/** Record of TAG_BOOKMARK. */
typedef struct BookmarkRecord {
    uint32_t reserved0; /**< 0 */
    uint32_t nameString; /**< string handle */
} BookmarkRecord;

/** Words of shading, in the records of paragraphs, tables and cells. */
enum { FILL_SOLID = 13, FILL_TABLE = 15 };

/** How a height of a row or cell is meant. */
enum { HEIGHT_AUTOMATIC = 1, HEIGHT_EXACT = 2 };

/** Flags of TableRecord::present. */
enum {
    TABLE_ALIGNMENT = 4,
    TABLE_BACKGROUND = 8,
    TABLE_BORDER_LEFT = 0x10,
    TABLE_BORDER_RIGHT = 0x20,
    TABLE_BORDER_TOP = 0x40,
    TABLE_BORDER_BOTTOM = 0x80,
    TABLE_CELL_SPACING = 0x4000,
    TABLE_LEFT_INDENT = 0x8000,
    TABLE_WIDTH = 0x10000
};

/** Bits of TableRecord::options. */
enum {
    TABLE_RIGHT_TO_LEFT = 1,
    TABLE_PERCENT_WIDTH = 4, /**< width is a percentage */
    TABLE_FIXED_OPTIONS = 0x60 /**< always set */
};

/** Flags of TableRowRecord::present. */
enum { ROW_HEIGHT = 0x10, ROW_CELL_PADDING = 0x1E0, ROW_ALIGNMENT = 0x200 };

/** Flags of TableCellRecord::present. */
enum {
    CELL_PADDING_LEFT = 4,
    CELL_PADDING_RIGHT = 8,
    CELL_PADDING_TOP = 0x10,
    CELL_PADDING_BOTTOM = 0x20,
    CELL_PADDING = 0x3C, /**< all four */
    CELL_WIDTH = 0x40,
    CELL_HEIGHT = 0x80,
    CELL_MERGE = 0x100,
    CELL_SHADING = 0x200,
    CELL_ALIGNMENT = 0x400,
    CELL_BORDER_LEFT = 0x1000,
    CELL_BORDER_RIGHT = 0x2000,
    CELL_BORDER_TOP = 0x4000,
    CELL_BORDER_BOTTOM = 0x8000
};

/** Values of TableCellRecord::widthKind; 0 is a width in twips. */
enum { CELL_WIDTH_PERCENT = 8, CELL_WIDTH_NONE = 0x10 };

/** Bits of TableCellRecord::merge: the neighbors that the cell is one with. */
enum { MERGE_LEFT = 1, MERGE_RIGHT = 2, MERGE_ABOVE = 4, MERGE_BELOW = 8 };

/** The vertical part of TableCellRecord::alignment; the low 16 bits are an ALIGNMENT_. */
enum { CELL_TOP = 0x10000, CELL_BOTTOM = 0x20000, CELL_MIDDLE = 0x30000 };

/** Record of SODefineTable. */
typedef struct TableRecord {
    uint32_t present; /**< TABLE_ flags */
    uint32_t options; /**< TABLE_ bits */
    uint32_t reserved8;
    uint32_t alignment; /**< right, center or justified */
    uint32_t reserved16;
    uint32_t fill; /**< FILL_TABLE when backColor is valid */
    uint32_t reserved24;
    uint32_t backColor;
    uint32_t reserved32;
    BorderSide left;
    BorderSide right;
    BorderSide top;
    BorderSide bottom;
    uint32_t reserved116[14];
    uint32_t cellSpacing; /**< pixels */
    uint32_t leftIndent;
    uint32_t width; /**< twips, or percent */
} TableRecord;

/** Record of SODefineTableRow. */
typedef struct TableRowRecord {
    uint32_t present; /**< ROW_ flags */
    uint32_t reserved4;
    uint32_t word8; /**< 0xFFFFFFFF */
    uint32_t reserved12[2];
    uint32_t height;
    uint32_t heightRule; /**< a HEIGHT_ */
    uint32_t cellPadding[4]; /**< pixels */
    uint32_t alignment; /**< center, right, or left for any other */
    uint32_t columnCount; /**< with those that reach into the row from above */
} TableRowRecord;

/** Record of SODefineTableCell. */
typedef struct TableCellRecord {
    uint32_t size; /**< 224 */
    uint32_t present; /**< CELL_ flags */
    uint32_t widthKind; /**< a CELL_WIDTH_, or 0 */
    uint32_t reserved12[2];
    uint32_t paddingLeft;
    uint32_t paddingRight;
    uint32_t paddingTop;
    uint32_t paddingBottom;
    uint32_t width; /**< twips, or percent */
    uint32_t height;
    uint32_t heightRule; /**< a HEIGHT_; 0 in a covered cell */
    uint32_t reserved48;
    uint32_t merge; /**< MERGE_ bits */
    uint32_t fill; /**< FILL_SOLID when color is valid */
    uint32_t fillAgain; /**< FILL_TABLE when color is valid */
    uint32_t color;
    uint32_t colorAgain;
    uint32_t reserved72[5];
    uint32_t alignment; /**< an ALIGNMENT_ and a vertical part */
    uint32_t reserved96;
    BorderSide left;
    BorderSide right;
    BorderSide top;
    BorderSide bottom;
    uint32_t reserved180[11];
} TableCellRecord;

/* The routines, in the order of their ids. userData1 and userData2 are the words of VwSetUser. */

/** One special character: a SPECIAL_ code. */
typedef void (*SOEmitSpecialRoutine)(uint16_t code, void* userData1, void* userData2);
/** Character height in half points. */
typedef void (*SOSetFontHeightRoutine)(uint32_t halfPoints, void* userData1, void* userData2);
/** A break; the answer 1 asks the filter to stop at the next place where it may. */
typedef uint32_t (*SOEmitBreakRoutine)(
    uint16_t kind, uint32_t handle, void* userData1, void* userData2);
/** A section begins; the words are 12, 0, 0. */
typedef void (*SOAnnounceSectionRoutine)(
    uint32_t first, uint32_t second, uint32_t third, void* userData1, void* userData2);
/** The filter can't go on: an ABANDON_ code. Is not expected to return. */
typedef void (*SOAbandonFilterRoutine)(uint32_t code, void* userData1, void* userData2);
/** The current font, an index given by SODefineFont. */
typedef void (*SOSelectFontRoutine)(uint32_t fontIndex, void* userData1, void* userData2);
/** Kind 1 single; 2 value in 240ths of a line or twips; 4 value from em or ex; 3 a rule's height.
 */
typedef void (*SOSetLineSpacingRoutine)(
    uint32_t kind, uint32_t value, uint32_t a, uint32_t b, void* userData1, void* userData2);
/** One entry of the font table. family: 5 cursive, 6 fantasy, 1 all others. */
typedef void (*SODefineFontRoutine)(
    uint32_t index, uint16_t family, const char* name, void* userData1, void* userData2);
/** A table is complete. */
typedef void (*SOFinishTableRoutine)(void* userData1, void* userData2);
/** An image at this point of the text. */
typedef void (*SOPlaceGraphicRoutine)(
    const GraphicRecord* record, void* userData1, void* userData2);
/** A horizontal rule. mode: 255 colored or without shade, 511 otherwise. */
typedef void (*SOPlaceRuleRoutine)(const RuleRecord* record, uint32_t color, uint32_t mode,
    uint32_t width, uint32_t height, void* userData1, void* userData2);
/** Opens a tagged stretch. record: as many bytes as the low 16 bits of tag say, or null. */
typedef void (*SOBeginTaggedRoutine)(
    uint32_t tag, uint32_t value, const void* record, void* userData1, void* userData2);
/** Closes a tagged stretch. */
typedef void (*SOEndTaggedRoutine)(uint32_t tag, uint32_t value, void* userData1, void* userData2);
/** Stores a string and writes its handle. length leaves the terminator out and is never 0. */
typedef uint32_t (*SOStoreStringRoutine)(const char16_t* text, uint32_t charSetId, uint16_t length,
    uint32_t* handle, void* userData1, void* userData2);
/** Borders of the page. on is 1. */
typedef void (*SOSetPageBordersRoutine)(
    uint32_t on, const PageBorderRecord* record, void* userData1, void* userData2);
/** Borders of the paragraphs of a block: 1 on entering it, 0 on leaving. */
typedef void (*SOSetParagraphBorderRoutine)(
    uint32_t on, const ParagraphBorderRecord* record, void* userData1, void* userData2);
/** Shading of paragraphs: 1 sets, 0 clears. */
typedef void (*SOSetParagraphShadingRoutine)(
    uint32_t on, const ParagraphShadingRecord* record, void* userData1, void* userData2);
/** Color of text. mode: 0 sets the color; another mode is one that the host knows. */
typedef void (*SOSetTextColorRoutine)(
    uint32_t mode, uint32_t color, void* userData1, void* userData2);
/** Background of text. mode: 0 sets the color, 1 clears it. */
typedef void (*SOSetBackColorRoutine)(
    uint32_t mode, uint32_t color, void* userData1, void* userData2);
/** Opens a reference; the host writes its id. */
typedef void (*SOBeginReferenceRoutine)(uint32_t* referenceId, void* userData1, void* userData2);
/** An EXTRA_PROPERTY_. */
typedef void (*SOSetExtraPropertyRoutine)(
    uint32_t kind, uint32_t sub, uint32_t value, uint32_t value2, void* userData1, void* userData2);
/** Attaches a closed reference to the stream at this point; the second word is 0. */
typedef void (*SOAttachReferenceRoutine)(
    uint32_t referenceId, uint32_t zero, void* userData1, void* userData2);
/** A table begins. */
typedef void (*SODefineTableRoutine)(const TableRecord* record, void* userData1, void* userData2);
/** A cell begins; the answer is its handle. */
typedef uint32_t (*SODefineTableCellRoutine)(
    const TableCellRecord* record, void* userData1, void* userData2);
/** A row begins; the answer is its handle. */
typedef uint32_t (*SODefineTableRowRoutine)(
    const TableRowRecord* record, void* userData1, void* userData2);
/** A run of count units under a character set. */
typedef void (*SOEmitTextRoutine)(
    const char16_t* text, uint16_t count, uint32_t charSetId, void* userData1, void* userData2);
/** Asks for a buffer of at least capacity units; the host writes its address, or null. */
typedef void (*SOReserveCharsRoutine)(
    char16_t** buffer, uint32_t capacity, void* userData1, void* userData2);
/** The units written into the reserved buffer are complete. */
typedef void (*SOCommitCharsRoutine)(
    uint16_t count, uint32_t charSetId, void* userData1, void* userData2);
/** The style stretch of the source that follows. */
typedef void (*SOMarkSourceTagRoutine)(uint32_t id, void* userData1, void* userData2);
/** The general setter: a PROPERTY_KIND_. */
typedef void (*SOSetPropertyRoutine)(
    uint32_t kind, uint32_t sub, uint32_t flag, uint32_t value, void* userData1, void* userData2);
/** Once per document, before any other call but that of the section. */
typedef void (*SOAnnounceFeaturesRoutine)(uint32_t features, void* userData1, void* userData2);
/** A part of the open reference: a REFERENCE_PART_. */
typedef void (*SOAddReferencePartRoutine)(
    uint32_t code, uint32_t a, uint32_t b, void* userData1, void* userData2);
/** Closes the open reference. */
typedef void (*SOEndReferenceRoutine)(void* userData1, void* userData2);
/** As SOEmitText, for all runs under 65,535 units and for character references. */
typedef void (*SOEmitTextAtRoutine)(const char16_t* text, uint16_t count, uint32_t charSetId,
    uint32_t word, void* userData1, void* userData2);

#ifdef __cplusplus
} /* extern "C" */

static_assert(sizeof(BorderSide) == 20);
static_assert(sizeof(PageBorderRecord) == 80);
static_assert(sizeof(ParagraphBorderRecord) == 104);
static_assert(offsetof(ParagraphBorderRecord, left) == 24);
static_assert(offsetof(ParagraphBorderRecord, right) == 64);
static_assert(sizeof(ParagraphShadingRecord) == 20);
static_assert(offsetof(ParagraphShadingRecord, color) == 12);
static_assert(sizeof(GraphicRecord) == 196);
static_assert(offsetof(GraphicRecord, height) == 52);
static_assert(offsetof(GraphicRecord, left) == 60);
static_assert(offsetof(GraphicRecord, right) == 120);
static_assert(offsetof(GraphicRecord, sizing) == 140);
static_assert(offsetof(GraphicRecord, object) == 160);
static_assert(offsetof(GraphicRecord, word164) == 164);
static_assert(offsetof(GraphicRecord, altString) == 168);
static_assert(offsetof(GraphicRecord, titleString) == 192);
static_assert(sizeof(RuleRecord) == 32);
static_assert(sizeof(HyperlinkRecord) == 12);
static_assert(sizeof(BookmarkRecord) == 8);
static_assert(sizeof(TableRecord) == 184);
static_assert(offsetof(TableRecord, present) == 0);
static_assert(offsetof(TableRecord, options) == 4);
static_assert(offsetof(TableRecord, alignment) == 12);
static_assert(offsetof(TableRecord, fill) == 20);
static_assert(offsetof(TableRecord, backColor) == 28);
static_assert(offsetof(TableRecord, left) == 36);
static_assert(offsetof(TableRecord, right) == 56);
static_assert(offsetof(TableRecord, top) == 76);
static_assert(offsetof(TableRecord, bottom) == 96);
static_assert(offsetof(TableRecord, cellSpacing) == 172);
static_assert(offsetof(TableRecord, leftIndent) == 176);
static_assert(offsetof(TableRecord, width) == 180);
static_assert(sizeof(TableRowRecord) == 52);
static_assert(offsetof(TableRowRecord, present) == 0);
static_assert(offsetof(TableRowRecord, word8) == 8);
static_assert(offsetof(TableRowRecord, height) == 20);
static_assert(offsetof(TableRowRecord, heightRule) == 24);
static_assert(offsetof(TableRowRecord, cellPadding) == 28);
static_assert(offsetof(TableRowRecord, alignment) == 44);
static_assert(offsetof(TableRowRecord, columnCount) == 48);
static_assert(sizeof(TableCellRecord) == 224);
static_assert(offsetof(TableCellRecord, present) == 4);
static_assert(offsetof(TableCellRecord, widthKind) == 8);
static_assert(offsetof(TableCellRecord, paddingLeft) == 20);
static_assert(offsetof(TableCellRecord, paddingRight) == 24);
static_assert(offsetof(TableCellRecord, paddingTop) == 28);
static_assert(offsetof(TableCellRecord, paddingBottom) == 32);
static_assert(offsetof(TableCellRecord, width) == 36);
static_assert(offsetof(TableCellRecord, height) == 40);
static_assert(offsetof(TableCellRecord, heightRule) == 44);
static_assert(offsetof(TableCellRecord, merge) == 52);
static_assert(offsetof(TableCellRecord, fill) == 56);
static_assert(offsetof(TableCellRecord, fillAgain) == 60);
static_assert(offsetof(TableCellRecord, color) == 64);
static_assert(offsetof(TableCellRecord, colorAgain) == 68);
static_assert(offsetof(TableCellRecord, alignment) == 92);
static_assert(offsetof(TableCellRecord, left) == 100);
static_assert(offsetof(TableCellRecord, right) == 120);
static_assert(offsetof(TableCellRecord, top) == 140);
static_assert(offsetof(TableCellRecord, bottom) == 160);
#endif
