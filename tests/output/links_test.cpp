#include "output/links.h"

#include "output/attachment_table.h"
#include "output/tree_walk.h"
#include "support/process_heap.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

#include <new>

using namespace testing_support;

namespace {

constexpr std::uint32_t kNone = 0xFFFFFFFF;

std::string linkRecord(std::uint32_t flags, std::uint32_t reference, std::uint32_t target)
{
    std::string words;
    if (flags != 0)
        words += "@0=" + std::to_string(flags) + ' ';
    return '{' + words + "@4=" + std::to_string(reference) + " @8=" + std::to_string(target) + '}';
}

std::string beginLink(int value, const std::string& record)
{
    return "SOBeginTagged 2147680268 " + std::to_string(value) + ' ' + record;
}
std::string endLink(std::uint32_t value)
{
    return "SOEndTagged 2147680268 " + std::to_string(value);
}

std::string beginBookmark(int value, std::uint32_t name)
{
    return "SOBeginTagged 2147614728 " + std::to_string(value) + " {@4=" + std::to_string(name)
        + '}';
}
std::string endBookmark(int value) { return "SOEndTagged 2147614728 " + std::to_string(value); }

std::string stored(const std::string& text, int handle)
{
    return "SOStoreString \"" + text + "\" 347078656 " + std::to_string(text.size()) + " -> "
        + std::to_string(handle);
}

/// The three calls of a reference.
Lines reference(int id, int part, std::uint32_t handle)
{
    return {"SOBeginReference -> " + std::to_string(id),
        "SOAddReferencePart " + std::to_string(part) + ' ' + std::to_string(handle) + " 0",
        "SOEndReference"};
}

Lines joined(std::initializer_list<Lines> parts)
{
    Lines all;
    for (const Lines& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// An anchor with the attributes that are not null.
HtmlTreeNode* makeAnchor(OutputContext& document, const char16_t* address,
    const char16_t* name = nullptr, HtmlTreeNode* parent = nullptr)
{
    HtmlTreeNode* node
        = document.element(parent == nullptr ? document.tree.root() : parent, ELEMENT_A);
    if (address != nullptr)
        document.attribute(node, ATTRIBUTE_HREF, address);
    if (name != nullptr)
        document.attribute(node, ATTRIBUTE_NAME, name);
    return node;
}

} // namespace

TEST(Links, IdIsABookmarkWithoutText)
{
    OutputContext document;
    document.context.sectionCharSetId = 77;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_SPAN);
    document.attribute(node, ATTRIBUTE_ID, u"x");
    for (int value = 1; value <= 2; ++value) {
        const std::string number = std::to_string(value);
        enterElement(*node, document.context);
        EXPECT_EQ(document.host.takeCalls(),
            (Lines{"SOStoreString \"x\" 77 1 -> " + number, "SOBeginReference -> " + number,
                "SOAddReferencePart 512 " + number + " 0", "SOEndReference",
                "SOBeginTagged 2147614728 " + number + " {@4=" + number + '}',
                "SOEndTagged 2147614728 " + number}));
    }
}

TEST(Links, EmptyIdHasNoString)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BR);
    document.attribute(node, ATTRIBUTE_ID, u"");
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(),
        joined({reference(1, 512, kNone), {beginBookmark(1, kNone), endBookmark(1)}}));
}

TEST(Links, BaseIsAField)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BASE);
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.callCount, 0U);
    document.attribute(node, ATTRIBUTE_HREF, u"http://a/");
    document.context.lastChar = u'q';
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOBeginTagged 2684420100 1 {@0=59}", "SOReserveChars 511",
            "SOCommitChars \"http://a/\" 9 347078656", "SOEndTagged 2684420100 1"}));
    EXPECT_EQ(document.context.lastChar, u'q');
}

TEST(Links, BaseOfSixHundredUnitsIsCut)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BASE);
    document.attribute(node, ATTRIBUTE_HREF, std::u16string(600, u'b').c_str());
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOBeginTagged 2684420100 1 {@0=59}", "SOReserveChars 511",
            "SOCommitChars \"" + std::string(511, 'b') + "\" 511 347078656",
            "SOEndTagged 2684420100 1"}));
}

TEST(Links, BaseWithoutAddressOrBuffer)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_BASE);
    document.attribute(node, ATTRIBUTE_HREF, u"");
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOBeginTagged 2684420100 1 {@0=59}", "SOEndTagged 2684420100 1"}));
    document.attribute(node, ATTRIBUTE_HREF, u"b");
    document.host.refuseBuffers = true;
    enterElement(*node, document.context);
    EXPECT_EQ(document.host.takeCalls(),
        (Lines{"SOBeginTagged 2684420100 2 {@0=59}", "SOReserveChars 511", "SOAbandonFilter 30",
            "SOEndTagged 2684420100 2"}));
}

TEST(Links, AnchorKeepsItsStyleAndEndsItsStretchesFirst)
{
    OutputContext document;
    HtmlTreeNode* node = makeAnchor(document, u"y");
    document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
    document.text(node, u"t");
    EXPECT_EQ(document.walkAll(),
        joined({{"SOSetProperty 8 2 1 0", stored("y", 1)}, reference(1, 128, 1),
            {beginLink(1, linkRecord(0, 1, kNone)), textLine("t"), endLink(1),
                "SOSetProperty 8 2 0 0"}}));
}

TEST(Links, AddressesOfAnchors)
{
    struct Row {
        const char16_t* address;
        Lines lines;
    };
    const Row rows[] = {
        {u"http://a/?b&amp;c",
            joined({{stored("http://a/?b&amp;c", 1)}, reference(1, 128, 1),
                {beginLink(1, linkRecord(0, 1, kNone))}})},
        {u"a#b",
            joined({{stored("a#b", 1)}, reference(1, 128, 1),
                {beginLink(1, linkRecord(0, 1, kNone))}})},
        {u"#x",
            joined({{stored("x", 1)}, reference(1, 512, 1), {beginLink(1, linkRecord(1, 1, 1))}})},
        {u"##x",
            joined({{stored("#x", 1)}, reference(1, 512, 1), {beginLink(1, linkRecord(1, 1, 1))}})},
        {u" #x",
            joined({{stored(" #x", 1)}, reference(1, 128, 1),
                {beginLink(1, linkRecord(0, 1, kNone))}})},
        {u"#", joined({reference(1, 512, kNone), {beginLink(1, linkRecord(0, 1, kNone))}})},
        {u"", {beginLink(1, linkRecord(0, kNone, kNone))}},
    };
    for (const Row& row : rows) {
        OutputContext document;
        makeAnchor(document, row.address);
        EXPECT_EQ(document.walkAll(), joined({row.lines, {endLink(1)}}));
        EXPECT_EQ(document.context.linkCounter, 1);
        EXPECT_EQ(document.context.walkState & WALK_IN_LINK, 0U);
    }
}

TEST(Links, AnchorWithoutAddressOrNameIsNoStretch)
{
    OutputContext document;
    document.text(makeAnchor(document, nullptr), u"t");
    EXPECT_EQ(document.walkAll(), (Lines{textLine("t")}));
    EXPECT_EQ(document.context.linkCounter, 0);
    EXPECT_EQ(document.context.bookmarkCounter, 0);
}

TEST(Links, AttributesThatAreNoStringsAreNone)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_A);
    document.attribute(node, ATTRIBUTE_HREF, document.values.numberValue(1));
    document.attribute(node, ATTRIBUTE_NAME, document.values.numberValue(1));
    EXPECT_EQ(document.walkAll(), Lines{});
}

TEST(Links, NamesOfAnchors)
{
    OutputContext named;
    named.text(makeAnchor(named, nullptr, u"n"), u"t");
    EXPECT_EQ(named.walkAll(),
        joined({{stored("n", 1)}, reference(1, 512, 1),
            {beginBookmark(1, 1), textLine("t"), endBookmark(1)}}));
    EXPECT_EQ(named.context.walkState & WALK_IN_BOOKMARK, 0U);

    OutputContext unnamed;
    makeAnchor(unnamed, nullptr, u"");
    EXPECT_EQ(unnamed.walkAll(),
        joined({reference(1, 512, kNone), {beginBookmark(1, kNone), endBookmark(1)}}));
}

TEST(Links, BothStretchesAndTheBookmarkEndsFirst)
{
    OutputContext document;
    document.text(makeAnchor(document, u"y", u"x"), u"t");
    EXPECT_EQ(document.walkAll(),
        joined({{stored("y", 1)}, reference(1, 128, 1), {beginLink(1, linkRecord(0, 1, kNone))},
            {stored("x", 2)}, reference(2, 512, 2), {beginBookmark(1, 2)},
            {textLine("t"), endBookmark(1), endLink(1)}}));
}

TEST(Links, SecondUnitOfTheTargetDecides)
{
    struct Row {
        const char16_t* target;
        std::uint32_t flags;
    };
    const Row rows[] = {
        {u"_blank", 0x30002},
        {u"_parent", 0x40002},
        {u"_self", 0x10002},
        {u"_top", 0x20002},
        {u"ab", 0x30002},
        {u"spam", 0x40002},
        {u"use", 0x10002},
        {u"stage", 0x20002},
        {u"_Blank", 0},
        {u"_PARENT", 0},
        {u"_Self", 0},
        {u"_TOP", 0},
        {u"_other", 0},
        {u"blank", 0},
        {u"main", 0},
        {u"s", 0},
        {u"", 0},
    };
    for (const Row& row : rows) {
        OutputContext document;
        document.attribute(makeAnchor(document, u"y"), ATTRIBUTE_TARGET, row.target);
        EXPECT_EQ(document.walkAll(),
            joined({{stored("y", 1)}, reference(1, 128, 1),
                {beginLink(1, linkRecord(row.flags, 1, kNone)), endLink(1)}}));
        OutputContext local;
        local.attribute(makeAnchor(local, u"#y"), ATTRIBUTE_TARGET, row.target);
        EXPECT_EQ(local.walkAll(),
            joined({{stored("y", 1)}, reference(1, 512, 1),
                {beginLink(1, linkRecord(row.flags | 1, 1, 1)), endLink(1)}}));
    }
}

TEST(Links, TargetWithoutAddressIsNothing)
{
    OutputContext document;
    document.attribute(makeAnchor(document, nullptr), ATTRIBUTE_TARGET, u"_top");
    EXPECT_EQ(document.walkAll(), Lines{});
}

TEST(Links, TitleIsStoredBehindTheAddress)
{
    OutputContext document;
    document.attribute(makeAnchor(document, u"#y"), ATTRIBUTE_TITLE, u"tip");
    EXPECT_EQ(document.walkAll(),
        joined({{stored("y", 1), stored("tip", 2)}, reference(1, 512, 1),
            {beginLink(1, linkRecord(1, 1, 1)), endLink(1)}}));

    OutputContext empty;
    empty.attribute(makeAnchor(empty, u"#"), ATTRIBUTE_TITLE, u"");
    EXPECT_EQ(empty.walkAll(),
        joined({reference(1, 512, kNone), {beginLink(1, linkRecord(0, 1, kNone)), endLink(1)}}));
}

TEST(Links, AttachmentsAreNamesInTheDocument)
{
    AttachmentRecord records[] = {{"id@a", "dir/a.txt", nullptr, 5, 0}};
    AttachmentTable table = {sizeof(AttachmentRecord), 0, 1, 0, records};
    struct Row {
        const char16_t* address;
        std::uint32_t used;
        Lines lines;
    };
    const Row rows[] = {
        {u"id@a", 1,
            joined({{stored("id@a", 1)}, reference(1, 512, 1),
                {beginLink(1, linkRecord(1, 1, 1)), endLink(1)}})},
        {u"a.txt", 1,
            joined({{stored("a.txt", 1)}, reference(1, 512, 1),
                {beginLink(1, linkRecord(1, 1, 1)), endLink(1)}})},
        {u"cid:id@a", 0,
            joined({{stored("cid:id@a", 1)}, reference(1, 128, 1),
                {beginLink(1, linkRecord(0, 1, kNone)), endLink(1)}})},
        {u"#a.txt", 0,
            joined({{stored("a.txt", 1)}, reference(1, 512, 1),
                {beginLink(1, linkRecord(1, 1, 1)), endLink(1)}})},
        {u"", 1,
            joined(
                {reference(1, 512, kNone), {beginLink(1, linkRecord(0, 1, kNone)), endLink(1)}})},
    };
    for (const Row& row : rows) {
        OutputContext document;
        records[0].used = 0;
        document.context.embeddedObjects = &table;
        makeAnchor(document, row.address);
        EXPECT_EQ(document.walkAll(), row.lines);
        EXPECT_EQ(records[0].used, row.used);
    }
}

TEST(Links, LongestAddressAndNameAreStoredWhole)
{
    // The longest value that an attribute can have.
    constexpr std::size_t kLongest = 53'391;
    OutputContext document;
    const std::u16string address(kLongest, u'y');
    const std::u16string name(kLongest, u'x');
    makeAnchor(document, address.c_str(), name.c_str());
    EXPECT_EQ(document.walkAll(),
        joined({{stored(std::string(kLongest, 'y'), 1)}, reference(1, 128, 1),
            {beginLink(1, linkRecord(0, 1, kNone)), stored(std::string(kLongest, 'x'), 2)},
            reference(2, 512, 2), {beginBookmark(1, 2), endBookmark(1), endLink(1)}}));
}

TEST(Links, CountersAreApartAndShareWithIds)
{
    OutputContext document;
    document.attribute(makeAnchor(document, u"#a", u"b"), ATTRIBUTE_ID, u"c");
    makeAnchor(document, u"#d", u"e");
    EXPECT_EQ(document.walkAll(),
        joined({{stored("c", 1)}, reference(1, 512, 1), {beginBookmark(1, 1), endBookmark(1)},
            {stored("a", 2)}, reference(2, 512, 2), {beginLink(1, linkRecord(1, 2, 2))},
            {stored("b", 3)}, reference(3, 512, 3),
            {beginBookmark(2, 3), endBookmark(2), endLink(1)}, {stored("d", 4)},
            reference(4, 512, 4), {beginLink(2, linkRecord(1, 4, 4))}, {stored("e", 5)},
            reference(5, 512, 5), {beginBookmark(3, 5), endBookmark(3), endLink(2)}}));
}

TEST(Links, CountersWrapAtSixteenBits)
{
    OutputContext document;
    document.context.linkCounter = 0xFFFF;
    document.context.bookmarkCounter = 0xFFFF;
    makeAnchor(document, u"", u"");
    EXPECT_EQ(document.walkAll(),
        joined({{beginLink(0, linkRecord(0, kNone, kNone))}, reference(1, 512, kNone),
            {beginBookmark(0, kNone), endBookmark(0), endLink(0)}}));
}

TEST(Links, StretchesHoldParagraphs)
{
    OutputContext document;
    document.build(u"<div>p</div><div>q</div>", makeAnchor(document, u""));
    EXPECT_EQ(document.walkAll(),
        (Lines{beginLink(1, linkRecord(0, kNone, kNone)), textLine("p"), kParagraphLine,
            textLine("q"), kParagraphLine, endLink(1)}));
}

TEST(Links, SecondBookmarkIsNotOpenedInsideOne)
{
    OutputContext document;
    HtmlTreeNode* outer = makeAnchor(document, nullptr, u"x");
    document.text(makeAnchor(document, nullptr, u"y", outer), u"a");
    document.text(outer, u"b");
    EXPECT_EQ(document.walkAll(),
        joined({{stored("x", 1)}, reference(1, 512, 1),
            {beginBookmark(1, 1), textLine("a"), endBookmark(1), textLine("b")}}));
}

TEST(Links, NestedAnchorEndsWhatItFinds)
{
    OutputContext document;
    HtmlTreeNode* outer = makeAnchor(document, u"", u"");
    document.text(makeAnchor(document, nullptr, nullptr, outer), u"a");
    document.text(outer, u"b");
    EXPECT_EQ(document.walkAll(),
        joined({{beginLink(1, linkRecord(0, kNone, kNone))}, reference(1, 512, kNone),
            {beginBookmark(1, kNone), textLine("a"), endBookmark(1), endLink(1), textLine("b")}}));

    // A link over a link: the outer one is never closed.
    OutputContext doubled;
    HtmlTreeNode* first = makeAnchor(doubled, u"");
    makeAnchor(doubled, u"", nullptr, first);
    makeAnchor(doubled, u"");
    EXPECT_EQ(doubled.walkAll(),
        (Lines{beginLink(1, linkRecord(0, kNone, kNone)), beginLink(2, linkRecord(0, kNone, kNone)),
            endLink(2), beginLink(3, linkRecord(0, kNone, kNone)), endLink(3)}));

    // A cell between the two has put its own handle in the frames.
    OutputContext cell;
    cell.context.walkState |= WALK_IN_LINK;
    HTML_SOINFO frame = emptyFrame();
    frame.handle = 200'001;
    leaveAnchor(frame, cell.context);
    EXPECT_EQ(cell.host.takeCalls(), (Lines{endLink(200'001)}));
}

TEST(Links, LinkStaysOpenOverAStop)
{
    OutputContext document;
    document.host.stopEvery = 1;
    document.build(u"<div>p</div><div>q</div>", makeAnchor(document, u"", u""));
    EXPECT_FALSE(document.walkSlice());
    EXPECT_NE(document.context.walkState & WALK_IN_LINK, 0U);
    EXPECT_NE(document.context.walkState & WALK_IN_BOOKMARK, 0U);
    document.host.takeCalls();
    EXPECT_EQ(
        document.walkAll(), (Lines{textLine("q"), kParagraphLine, endBookmark(1), endLink(1)}));
}

TEST(Links, HostThatGivesUpLeavesNothingBehind)
{
    for (std::uint32_t at = 1;; ++at) {
        OutputContext document;
        document.host.throwAt = at;
        HtmlTreeNode* node = makeAnchor(document, u"y", u"x");
        document.attribute(node, ATTRIBUTE_TITLE, u"t");
        document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
        bool gaveUp = false;
        try {
            document.walkSlice();
        } catch (const HostGaveUp&) {
            gaveUp = true;
        }
        EXPECT_EQ(document.host.callCount, gaveUp ? at : at - 1);
        if (!gaveUp) {
            // Two style calls, three strings, two references, two stretches.
            EXPECT_EQ(at, 2U + 3U + 6U + 4U + 1U);
            break;
        }
    }
}

TEST(Links, FailedAllocationsEndTheWalkOrTheRead)
{
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < 40; ++n) {
        OutputContext document;
        HtmlTreeNode* node = makeAnchor(document, u"#y", u"x");
        document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
        document.text(node, u"t");
        zorvan::failNthAllocation(n);
        try {
            document.walkSlice();
        } catch (const std::bad_alloc&) {
            document.context.statusFlags = STATUS_OUT_OF_MEMORY;
        }
        const bool failed = zorvan::allocationsSeen() >= n;
        zorvan::clearAllocationFailure();
        EXPECT_EQ((document.context.statusFlags & STATUS_OUT_OF_MEMORY) != 0, failed) << n;
        failures += failed ? 1 : 0;
    }
    EXPECT_GT(failures, 2U);
    EXPECT_LT(failures, 39U);
}
