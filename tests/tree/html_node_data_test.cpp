#include "tree/html_node_data.h"

#include "containers/left_child_right_sib_tree.h"
#include "style/css_declaration_list.h"
#include "support/sp_vector.h"
#include "tests/containers/allocation_failures.h"
#include "tests/containers/expect_failure.h"
#include "tree/html_value.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using Attributes = std::vector<std::pair<std::uint32_t, const HtmlValue*>>;

Attributes attributesOf(const HtmlTagNodeData& element)
{
    Attributes all;
    for (const auto* link = element.attributes.head; link != nullptr; link = link->next)
        all.emplace_back(link->value->key, link->value->value);
    EXPECT_EQ(static_cast<std::size_t>(element.attributes.getCount()), all.size());
    return all;
}

std::u16string textOf(const HtmlTextNodeData& text) { return std::u16string(text.text); }

/// The undo list belongs to whoever takes the element off the stack.
void deleteUndo(HtmlTagNodeData& element)
{
    delete std::exchange(element.undoDeclarations, nullptr);
}

} // namespace

static_assert(sizeof(HtmlGenericNodeData) == 16);

TEST(HtmlNodeData, ClassesFollowOneLine)
{
    const HtmlTagNodeData tag(ELEMENT_B);
    const HtmlImgNodeData img;
    const HtmlTrNodeData tr;
    const HtmlTextNodeData text;
    EXPECT_EQ(tag.elementId, ELEMENT_B);
    EXPECT_EQ(img.elementId, ELEMENT_IMG);
    EXPECT_EQ(tr.elementId, ELEMENT_TR);
    EXPECT_EQ(text.elementId, 0U);
    for (const HtmlGenericNodeData* data :
        std::initializer_list<const HtmlGenericNodeData*>{&tag, &img, &tr, &text}) {
        EXPECT_EQ(data->stackEntry, 0U);
        EXPECT_FALSE(data->hasAttributes());
        EXPECT_EQ(data->getDeclarations(), nullptr);
        EXPECT_EQ(data->getUndoDeclarations(), nullptr);
    }
}

TEST(HtmlNodeData, ElementZeroIsRefused)
{
    testing_support::expectFailure(15,
        "HtmlTagNodeData(): invalid elementId for non-privileged child!",
        [] { const HtmlTagNodeData data(ELEMENT_NONE); });
}

TEST(HtmlNodeData, DeclarationsAloneAreNoAttributes)
{
    ValueCache cache;
    CssDeclarationList declarations(&cache);
    declarations.set(PROPERTY_COLOR, cache.colorValue(1), false, false);
    HtmlTagNodeData element(ELEMENT_FONT);
    element.declarations = &declarations;
    EXPECT_FALSE(element.hasAttributes());
    EXPECT_EQ(element.getDeclarations(), &declarations);
    CssDeclarationList undo(&cache);
    element.undoDeclarations = &undo;
    EXPECT_EQ(element.getUndoDeclarations(), &undo);
}

TEST(HtmlNodeData, AttributesAreSortedAndUnique)
{
    ValueCache cache;
    HtmlValue* const a = cache.numberValue(1);
    HtmlValue* const b = cache.numberValue(2);
    HtmlTagNodeData element(ELEMENT_TABLE);
    element.setAttribute(ATTRIBUTE_HREF, a);
    EXPECT_TRUE(element.hasAttributes());
    element.setAttribute(ATTRIBUTE_WIDTH, a);
    element.setAttribute(ATTRIBUTE_ALIGN, a);
    element.setAttribute(ATTRIBUTE_ID, a);
    EXPECT_EQ(attributesOf(element), (Attributes{{6, a}, {71, a}, {76, a}, {240, a}}));
    element.setAttribute(ATTRIBUTE_ALIGN, b);
    element.setAttribute(ATTRIBUTE_WIDTH, b);
    element.setAttribute(ATTRIBUTE_HREF, b);
    EXPECT_EQ(attributesOf(element), (Attributes{{6, b}, {71, b}, {76, a}, {240, b}}));

    HtmlValue* value = nullptr;
    EXPECT_TRUE(element.getAttribute(ATTRIBUTE_ID, value));
    EXPECT_EQ(value, a);
    EXPECT_FALSE(element.getAttribute(ATTRIBUTE_NAME, value));
    EXPECT_EQ(value, a);
    EXPECT_EQ(element.findAttribute(ATTRIBUTE_WIDTH), b);
    EXPECT_EQ(element.findAttribute(ATTRIBUTE_NAME), nullptr);
    element.clearAttributes();
    EXPECT_FALSE(element.hasAttributes());
}

TEST(HtmlNodeData, FailedAttributeChangesNothing)
{
    HtmlTagNodeData element(ELEMENT_TABLE);
    element.setAttribute(ATTRIBUTE_HREF, nullptr);
    EXPECT_EQ(
        testing_support::failEachAllocation([&] { element.setAttribute(ATTRIBUTE_ALIGN, nullptr); },
            [&] {
                EXPECT_EQ(attributesOf(element), (Attributes{{71, nullptr}}));
            }),
        2U);
    EXPECT_EQ(attributesOf(element), (Attributes{{6, nullptr}, {71, nullptr}}));
}

TEST(HtmlNodeData, TextIsACopyThatEndsAtTheFirstZero)
{
    char16_t source[] = u"abc";
    HtmlTextNodeData text(source, 3);
    source[0] = u'x';
    EXPECT_EQ(textOf(text), u"abc");
    EXPECT_EQ(text.length, 3U);
    text.setText(u"12\0"
                 u"34",
        5);
    EXPECT_EQ(textOf(text), u"12");
    EXPECT_EQ(text.length, 2U);
    text.setText(nullptr, 4);
    EXPECT_EQ(textOf(text), u"");
    EXPECT_EQ(text.length, 0U);
}

TEST(HtmlNodeData, FailedTextChangesNothing)
{
    HtmlTextNodeData text(u"old", 3);
    EXPECT_EQ(testing_support::failEachAllocation(
                  [&] { text.setText(u"longer", 6); }, [&] { EXPECT_EQ(textOf(text), u"old"); }),
        1U);
    EXPECT_EQ(textOf(text), u"longer");
}

TEST(HtmlNodeData, TextIsCopiedFromTextAlone)
{
    ValueCache cache;
    const HtmlTextNodeData source(u"new", 3);
    const HtmlTagNodeData tag(ELEMENT_B);
    HtmlTextNodeData text(u"old", 3);
    text.copyFrom(nullptr, &cache);
    text.copyFrom(&tag, &cache);
    EXPECT_EQ(textOf(text), u"old");
    text.copyFrom(&source, &cache);
    EXPECT_EQ(textOf(text), u"new");
    EXPECT_NE(text.text, source.text);
    EXPECT_EQ(text.elementId, 0U);
}

TEST(HtmlNodeData, GenericCopyTakesTheElement)
{
    HtmlGenericNodeData data(ELEMENT_P);
    data.copyFrom(nullptr, nullptr);
    EXPECT_EQ(data.elementId, ELEMENT_P);
    const HtmlGenericNodeData source(ELEMENT_B);
    data.copyFrom(&source, nullptr);
    EXPECT_EQ(data.elementId, ELEMENT_B);
}

TEST(HtmlNodeData, TagCopySharesDeclarationsAndValues)
{
    ValueCache cache;
    CssDeclarationList declarations(&cache);
    HtmlTagNodeData source(ELEMENT_FONT);
    source.declarations = &declarations;
    source.undoDeclarations = new CssDeclarationList(&cache);
    source.undoDeclarations->set(PROPERTY_COLOR, cache.colorValue(9), true, false);
    HtmlValue* const face = cache.stringValue(u"Arial");
    source.setAttribute(ATTRIBUTE_FACE, face);
    source.setAttribute(ATTRIBUTE_SIZE, nullptr);

    HtmlTagNodeData copy(ELEMENT_B);
    copy.setAttribute(ATTRIBUTE_ID, face);
    copy.undoDeclarations = new CssDeclarationList(&cache);
    copy.undoDeclarations->set(PROPERTY_WIDTH, cache.numberValue(1), false, false);
    copy.copyFrom(&source, &cache);

    EXPECT_EQ(copy.elementId, ELEMENT_FONT);
    EXPECT_EQ(copy.declarations, &declarations);
    // An attribute without a value is left out, and what was there before is gone.
    EXPECT_EQ(attributesOf(copy), (Attributes{{54, face}}));
    ASSERT_NE(copy.undoDeclarations, nullptr);
    EXPECT_NE(copy.undoDeclarations, source.undoDeclarations);
    EXPECT_EQ(copy.undoDeclarations->getCount(), 1U);
    EXPECT_NE(
        copy.undoDeclarations->get(PROPERTY_COLOR), source.undoDeclarations->get(PROPERTY_COLOR));
    EXPECT_TRUE(copy.undoDeclarations->get(PROPERTY_COLOR)
                    ->equals(*source.undoDeclarations->get(PROPERTY_COLOR), true));
    deleteUndo(source);
    deleteUndo(copy);
}

TEST(HtmlNodeData, SourceWithoutUndoListLeavesTheOwnOneAlone)
{
    ValueCache cache;
    const HtmlTagNodeData source(ELEMENT_I);
    HtmlTagNodeData copy(ELEMENT_B);
    copy.undoDeclarations = new CssDeclarationList(&cache);
    CssDeclarationList* const own = copy.undoDeclarations;
    copy.copyFrom(&source, &cache);
    EXPECT_EQ(copy.elementId, ELEMENT_I);
    EXPECT_EQ(copy.undoDeclarations, own);
    deleteUndo(copy);
}

TEST(HtmlNodeData, SourceWithoutAttributesEmptiesTheOwnList)
{
    ValueCache cache;
    const HtmlTagNodeData source(ELEMENT_I);
    HtmlTagNodeData copy(ELEMENT_B);
    copy.setAttribute(ATTRIBUTE_ID, cache.numberValue(1));
    copy.setAttribute(ATTRIBUTE_ALIGN, cache.numberValue(2));
    copy.copyFrom(&source, &cache);
    EXPECT_FALSE(copy.hasAttributes());
    EXPECT_EQ(attributesOf(copy), Attributes());
    EXPECT_EQ(copy.findAttribute(ATTRIBUTE_ID), nullptr);
}

TEST(HtmlNodeData, CopiedUndoListKeepsTheOrderOfItsChains)
{
    ValueCache cache;
    HtmlValue* const value = cache.numberValue(1);
    // Numbers of one chain, whose order has been changed by replacing: put in afresh, in whatever
    // order, they would not come out so and go on so.
    const ZVCSSProperty first = PROPERTY_TEXT_ALIGN;
    const ZVCSSProperty second = PROPERTY_BACKGROUND_COLOR;
    HtmlTagNodeData source(ELEMENT_FONT);
    source.undoDeclarations = new CssDeclarationList(&cache);
    source.undoDeclarations->set(first, value, false, false);
    source.undoDeclarations->set(second, value, false, false);
    source.undoDeclarations->set(first, value, false, false);
    HtmlTagNodeData copy(ELEMENT_B);
    copy.copyFrom(&source, &cache);
    for (CssDeclarationList* list : {source.undoDeclarations, copy.undoDeclarations}) {
        ZVCSSProperty keys[2] = {};
        ASSERT_EQ(list->keys(keys, 2), 2);
        EXPECT_EQ(keys[0], second);
        EXPECT_EQ(keys[1], first);
    }
    EXPECT_EQ(copy.undoDeclarations->getFreeHint(), source.undoDeclarations->getFreeHint());
    EXPECT_EQ(copy.undoDeclarations->getCapacity(), source.undoDeclarations->getCapacity());
    deleteUndo(source);
    deleteUndo(copy);
}

TEST(HtmlNodeData, RowCopyOfATagTakesItOver)
{
    ValueCache cache;
    CssDeclarationList declarations(&cache);
    HtmlTagNodeData source(ELEMENT_TD);
    HtmlValue* const value = cache.numberValue(1);
    source.setAttribute(ATTRIBUTE_ALIGN, value);
    source.declarations = &declarations;
    HtmlTrNodeData copy;
    HtmlSpanInfo* const spans = &copy.ensureSpanInfo();
    copy.copyFrom(&source, &cache);
    EXPECT_EQ(copy.elementId, ELEMENT_TD);
    EXPECT_EQ(copy.declarations, &declarations);
    EXPECT_EQ(attributesOf(copy), (Attributes{{6, value}}));
    EXPECT_EQ(copy.spanInfo, spans) << "the spans are the row's own";
}

TEST(HtmlNodeData, TagCopyRefusesTextImageAndRow)
{
    ValueCache cache;
    HtmlImgNodeData img;
    HtmlTrNodeData tr;
    const HtmlTextNodeData text(u"x", 1);
    img.setAttribute(ATTRIBUTE_ID, nullptr);
    HtmlTagNodeData element(ELEMENT_B);
    HtmlValue* const value = cache.numberValue(1);
    element.setAttribute(ATTRIBUTE_ID, value);
    for (const HtmlGenericNodeData* source :
        std::initializer_list<const HtmlGenericNodeData*>{nullptr, &text, &img, &tr}) {
        element.copyFrom(source, &cache);
        EXPECT_EQ(element.elementId, ELEMENT_B);
        EXPECT_EQ(attributesOf(element), (Attributes{{76, value}}));
    }
}

TEST(HtmlNodeData, RowCopyOfARowDoesNothing)
{
    ValueCache cache;
    HtmlTrNodeData source;
    HtmlValue* const value = cache.numberValue(1);
    source.setAttribute(ATTRIBUTE_ALIGN, value);
    source.ensureSpanInfo();
    HtmlTrNodeData copy;
    copy.copyFrom(&source, &cache);
    EXPECT_FALSE(copy.hasAttributes());
    EXPECT_EQ(copy.spanInfo, nullptr);
}

TEST(HtmlNodeData, ImageCopyTakesTheRangeAlone)
{
    ValueCache cache;
    HtmlImgNodeData source;
    source.setAttribute(ATTRIBUTE_ALT, cache.stringValue(u"alt"));
    source.setSrcRange(10, 20);
    HtmlImgNodeData copy;
    const HtmlTagNodeData tag(ELEMENT_B);
    copy.copyFrom(nullptr, &cache);
    copy.copyFrom(&tag, &cache);
    EXPECT_EQ(copy.srcRange, nullptr);
    copy.copyFrom(&source, &cache);
    ASSERT_NE(copy.srcRange, nullptr);
    EXPECT_NE(copy.srcRange, source.srcRange);
    EXPECT_EQ(copy.srcRange->start, 10U);
    EXPECT_EQ(copy.srcRange->end, 20U);
    EXPECT_FALSE(copy.hasAttributes());
    source.setSrcRange(30, 40);
    EXPECT_EQ(copy.srcRange->start, 10U);
    const HtmlImgNodeData none;
    copy.copyFrom(&none, &cache);
    EXPECT_EQ(copy.srcRange, nullptr);
}

TEST(HtmlNodeData, SpanInfoIsMadeOnceAndGoesWithTheRow)
{
    HtmlTrNodeData row;
    EXPECT_EQ(testing_support::failEachAllocation(
                  [&] { row.ensureSpanInfo(); }, [&] { EXPECT_EQ(row.spanInfo, nullptr); }),
        2U);
    HtmlSpanInfo& spans = row.ensureSpanInfo();
    EXPECT_EQ(&spans, row.spanInfo);
    EXPECT_EQ(spans.hasRowSpans, 0U);
    EXPECT_EQ(SPVectorSize(spans.hSpanInfo), 0U);
    const std::uint32_t record = 7;
    EXPECT_EQ(SPVectorAddElement(spans.hSpanInfo, &record, sizeof record), 0);
    EXPECT_EQ(&row.ensureSpanInfo(), &spans);
}

TEST(HtmlNodeData, PayloadsLieInTheStorageOfTheirTree)
{
    ValueCache cache;
    zorvan::LeftChildRightSibTree<HtmlGenericNodeData*> tree;
    void* place = tree.allocate(sizeof(HtmlTagNodeData), alignof(HtmlTagNodeData));
    auto* element = new (place) HtmlTagNodeData(ELEMENT_A);
    element->setAttribute(ATTRIBUTE_HREF, cache.stringValue(u"x"));
    auto* node = tree.createNode(element, tree.root());
    EXPECT_EQ(node->data->elementId, ELEMENT_A);
    node->data->~HtmlGenericNodeData();
}
