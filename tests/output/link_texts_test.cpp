#include "output/link_texts.h"

#include "output/tree_walk.h"
#include "support/process_heap.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

#include <new>

using namespace testing_support;

namespace {

constexpr const char* kBeginLink = "SOBeginTagged 2147680268 ";

/// A document with an area of its own map.
HtmlTreeNode* makeArea(OutputContext& document, const char16_t* address)
{
    document.build(u"<map><area></area></map>");
    HtmlTreeNode* area = document.find(ELEMENT_AREA);
    document.attribute(area, ATTRIBUTE_HREF, address);
    return area;
}

/// What a link text of one paragraph is.
Lines linkText(const std::string& record, const std::string& text, bool endsParagraph = false)
{
    Lines lines{kBeginLink + std::string("1 ") + record, "SOSetTextColor 0 16711680",
        "SOSetProperty 8 4 1 0"};
    if (endsParagraph)
        lines.push_back(kParagraphLine);
    if (!text.empty())
        lines.push_back(textLine(text));
    lines.insert(lines.end(),
        {kParagraphLine, "SOSetTextColor 1 255", "SOSetProperty 8 4 0 0",
            "SOEndTagged 2147680268 1"});
    return lines;
}

void setColors(OutputContext& document)
{
    // Bits above the color are not sent.
    document.context.linkColor = 0x11FF0000;
    document.context.textColor = 0x220000FF;
    document.context.textColorMode = 1;
}

Lines joined(Lines lines, const Lines& more)
{
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

} // namespace

TEST(LinkTexts, AreaIsAParagraphOfItsAddress)
{
    OutputContext document;
    setColors(document);
    makeArea(document, u"y");
    EXPECT_EQ(document.walkAll(),
        joined({"SOStoreString \"y\" 347078656 1 -> 1", "SOBeginReference -> 1",
                   "SOAddReferencePart 128 1 0", "SOEndReference"},
            linkText("{@4=1 @8=4294967295}", "y")));
    EXPECT_EQ(document.context.lastChar, 0);
    EXPECT_EQ(document.context.linkCounter, 1);
    EXPECT_EQ(document.context.walkState & (WALK_IN_LINK | WALK_IN_MAP), 0U);
}

TEST(LinkTexts, AreaEndsAnOpenParagraph)
{
    OutputContext document;
    setColors(document);
    makeArea(document, u"");
    document.context.paragraphFlags = PARAGRAPH_OPEN;
    EXPECT_EQ(
        document.walkAll(), linkText("{@4=4294967295 @8=4294967295}", "", /*endsParagraph=*/true));
}

TEST(LinkTexts, NameOfThePageIsNoBookmarkInAnArea)
{
    // Unlike that of an anchor, the "#" stays, and the part is that of an address.
    OutputContext document;
    setColors(document);
    makeArea(document, u"#x");
    EXPECT_EQ(document.walkAll(),
        joined({"SOStoreString \"#x\" 347078656 2 -> 1", "SOBeginReference -> 1",
                   "SOAddReferencePart 128 1 0", "SOEndReference"},
            linkText("{@4=1 @8=4294967295}", "#x")));
}

TEST(LinkTexts, AreaWithoutMapOrAddressOrInsideALinkIsNothing)
{
    OutputContext outside;
    outside.attribute(outside.element(outside.tree.root(), ELEMENT_AREA), ATTRIBUTE_HREF, u"y");
    EXPECT_EQ(outside.walkAll(), Lines{});

    OutputContext bare;
    bare.build(u"<map><area></area></map>");
    EXPECT_EQ(bare.walkAll(), Lines{});

    OutputContext linked;
    makeArea(linked, u"y");
    linked.context.walkState |= WALK_IN_LINK;
    EXPECT_EQ(linked.walkAll(), Lines{});
    EXPECT_EQ(linked.context.linkCounter, 0);
}

TEST(LinkTexts, AreaInsideALinkIsNothing)
{
    OutputContext document;
    document.build(u"<map><a><area></area></a></map>");
    document.attribute(document.find(ELEMENT_A), ATTRIBUTE_HREF, u"");
    document.attribute(document.find(ELEMENT_AREA), ATTRIBUTE_HREF, u"y");
    EXPECT_EQ(document.walkAll(),
        (Lines{"SOBeginTagged 2147680268 1 {@4=4294967295 @8=4294967295}",
            "SOEndTagged 2147680268 1"}));
}

TEST(LinkTexts, BookmarkOfAnAnchorLeavesItsAreas)
{
    OutputContext document;
    setColors(document);
    makeArea(document, u"");
    document.context.walkState |= WALK_IN_BOOKMARK;
    EXPECT_EQ(document.walkAll(), linkText("{@4=4294967295 @8=4294967295}", ""));
}

TEST(LinkTexts, ReferencesInAnAddressAreResolvedInItsText)
{
    OutputContext document;
    setColors(document);
    makeArea(document, u"a&amp;b");
    const Lines lines = document.walkAll();
    ASSERT_EQ(lines.size(), 14U);
    EXPECT_EQ(lines[0], "SOStoreString \"a&amp;b\" 347078656 7 -> 1");
    EXPECT_EQ(Lines(lines.begin() + 7, lines.begin() + 10),
        (Lines{textLine("a"), textLine("&"), textLine("b")}));
}

TEST(LinkTexts, OverriddenColorsBecomeBlack)
{
    OutputContext document;
    setColors(document);
    document.context.backgroundOption = 1;
    document.context.backgroundSeen = 1;
    makeArea(document, u"");
    const Lines lines = document.walkAll();
    EXPECT_EQ(lines,
        (Lines{kBeginLink + std::string("1 {@4=4294967295 @8=4294967295}"), "SOSetTextColor 0 0",
            "SOSetProperty 8 4 1 0", kParagraphLine, "SOSetTextColor 1 0", "SOSetProperty 8 4 0 0",
            "SOEndTagged 2147680268 1"}));
    EXPECT_EQ(document.context.linkColor, 0U);
    EXPECT_EQ(document.context.textColor, 0U);
}

TEST(LinkTexts, ColorsStayWithoutAnyPartOfTheOverride)
{
    for (const bool isAsked : {false, true}) {
        OutputContext document;
        setColors(document);
        document.context.backgroundOption = isAsked ? 1 : 0;
        document.context.backgroundSeen = isAsked ? 0 : 1;
        makeArea(document, u"");
        EXPECT_EQ(document.walkAll(), linkText("{@4=4294967295 @8=4294967295}", ""));
        EXPECT_EQ(document.context.linkColor, 0x11FF0000U);
    }
}

TEST(LinkTexts, StyleIsAppliedFirst)
{
    for (const ZVHTMLElement id : {ELEMENT_AREA, ELEMENT_FRAME}) {
        OutputContext document;
        HtmlTreeNode* node = document.element(document.tree.root(), id);
        document.declare(node, PROPERTY_FONT_WEIGHT, document.keyword(VALUE_BOLD));
        document.context.walkState |= WALK_IN_LINK;
        EXPECT_EQ(document.walkAll(), (Lines{"SOSetProperty 8 2 1 0", "SOSetProperty 8 2 0 0"}));
    }
}

TEST(LinkTexts, FrameNameIsATargetWithoutItsFlag)
{
    OutputContext document;
    setColors(document);
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_FRAME);
    document.attribute(node, ATTRIBUTE_NAME, u"n");
    document.attribute(node, ATTRIBUTE_SRC, u"y");
    EXPECT_EQ(document.walkAll(),
        joined({"SOStoreString \"n\" 347078656 1 -> 1", "SOStoreString \"y\" 347078656 1 -> 2",
                   "SOBeginReference -> 1", "SOAddReferencePart 128 2 0", "SOEndReference"},
            linkText("{@4=1 @8=1}", "y")));
}

TEST(LinkTexts, FrameWithoutSourceIsAStretchWithoutText)
{
    for (const bool hasEmpty : {false, true}) {
        OutputContext document;
        setColors(document);
        HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_FRAME);
        if (hasEmpty) {
            document.attribute(node, ATTRIBUTE_NAME, u"");
            document.attribute(node, ATTRIBUTE_SRC, u"");
        }
        EXPECT_EQ(document.walkAll(), linkText("{@4=4294967295 @8=4294967295}", ""));
    }
}

TEST(LinkTexts, FrameInsideALinkIsNothing)
{
    OutputContext document;
    HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_FRAME);
    document.attribute(node, ATTRIBUTE_NAME, u"n");
    document.attribute(node, ATTRIBUTE_SRC, u"y");
    document.context.walkState |= WALK_IN_LINK;
    EXPECT_EQ(document.walkAll(), Lines{});
}

TEST(LinkTexts, FrameStoresAllAndShowsTheBeginningOfItsSource)
{
    for (const std::size_t count : {254U, 255U, 256U, 53'391U}) {
        OutputContext document;
        setColors(document);
        HtmlTreeNode* node = document.element(document.tree.root(), ELEMENT_FRAME);
        document.attribute(node, ATTRIBUTE_SRC, std::u16string(count, u'y').c_str());
        const std::string text(count, 'y');
        EXPECT_EQ(document.walkAll(),
            joined({"SOStoreString \"" + text + "\" 347078656 " + std::to_string(count) + " -> 1",
                       "SOBeginReference -> 1", "SOAddReferencePart 128 1 0", "SOEndReference"},
                linkText("{@4=1 @8=4294967295}", text.substr(0, 255))));
    }
}

TEST(LinkTexts, HostThatGivesUpLeavesNothingBehind)
{
    for (std::uint32_t at = 1;; ++at) {
        OutputContext document;
        document.host.throwAt = at;
        makeArea(document, u"y");
        bool gaveUp = false;
        try {
            document.walkSlice();
        } catch (const HostGaveUp&) {
            gaveUp = true;
        }
        EXPECT_EQ(document.host.callCount, gaveUp ? at : at - 1);
        if (!gaveUp) {
            EXPECT_EQ(at, 13U);
            break;
        }
    }
}

TEST(LinkTexts, FailedAllocationsEndTheWalkOrTheRead)
{
    std::uint32_t failures = 0;
    for (std::uint32_t n = 1; n < 40; ++n) {
        OutputContext document;
        makeArea(document, u"a long address, which a run cannot hold without memory of its own");
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
    EXPECT_GT(failures, 1U);
    EXPECT_LT(failures, 39U);
}
