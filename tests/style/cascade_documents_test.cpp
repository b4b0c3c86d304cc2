// Whole documents through the cascade and through a plain form of it.

#include "tests/style/plain_cascade.h"
#include "tests/style/plain_selector.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace testing_support;

#if defined(__SANITIZE_ADDRESS__)
constexpr std::uint32_t kRandomDocuments = 200;
#else
constexpr std::uint32_t kRandomDocuments = 1'000;
#endif

/// A list in its order, values and marks included.
std::string listText(const CssDeclarationList* list)
{
    if (list == nullptr)
        return "none";
    std::string text = std::to_string(list->getCapacity()) + ": ";
    list->forEach([&](ZVCSSProperty property, const CssDeclaration* declaration) {
        text += zorvan::CSSStrings::propertyName(property);
        for (std::int32_t i = 0; i < declaration->getValueCount(); ++i)
            text += ' ' + textOf(declaration->getValueAt(i));
        text += declaration->important ? "!" : "";
        text += declaration->edgeMargin ? "^; " : "; ";
    });
    return text;
}

std::string frameText(const BuildFrame& frame)
{
    return std::to_string(frame.fontSize) + ' ' + std::to_string(frame.firstLineIndent) + ' '
        + std::to_string(frame.leftIndent) + ' ' + std::to_string(frame.rightIndent);
}

std::string backgroundText(const HtmlFilterContext& context)
{
    return textOf(context.buildBodyBackground) + ' ' + textOf(context.buildBlockBackground) + ' '
        + textOf(context.buildInlineBackground) + ' ' + textOf(context.buildTableBackground);
}

/// Writes sheets and style attributes, most of which are good.
class StyleWriter {
public:
    explicit StyleWriter(std::uint32_t seed)
        : selectors_(seed)
    {
    }

    std::uint32_t below(std::uint32_t bound) { return selectors_.below(bound); }

    std::string declarations()
    {
        static const char* const kDeclarations[] = {"margin: 1px 2em", "margin: 0",
            "margin-left: 3px", "margin-left: 2em", "margin-right: 1.5ex", "margin-top: auto",
            "padding: 4px", "padding-left: 2ex", "padding-bottom: 5pt", "width: 10pt", "width: 50%",
            "width: inherit", "height: 5", "height: 1em", "font-size: 2em", "font-size: 12pt",
            "font-size: 150%", "font-size: small", "font-size: larger", "font-weight: bold",
            "font-weight: inherit", "font-family: Arial", "font-family: 'x, y'",
            "font: italic bold 12px/30px Georgia, serif", "color: red", "color: inherit",
            "color: #123456", "background-color: inherit", "background-color: yellow",
            "background: #fff url(a.png) no-repeat", "background: inherit", "text-align: center",
            "text-align: inherit", "direction: rtl", "direction: ltr", "direction: inherit",
            "text-decoration: underline overline", "text-decoration: inherit", "text-indent: -1em",
            "text-indent: 7px", "border: 1px solid red", "border: 1em dotted",
            "border-width: 1px 2pt", "border-top: thin", "line-height: 2", "line-height: 1.5em",
            "line-height: 120%", "list-style: square inside", "letter-spacing: 1ex",
            "vertical-align: 2px", "white-space: inherit", "word-spacing: 1px", "min-width: 3em",
            "max-width: 3in", "nosuchproperty: 1", "color: nosuchcolor", "*zoom: 1", "color"};
        std::string text;
        for (std::uint32_t count = 1 + below(6); count > 0; --count) {
            text += kDeclarations[below(static_cast<std::uint32_t>(std::size(kDeclarations)))];
            if (below(5) == 0)
                text += " !important";
            if (below(30) == 0)
                text += "; ";
            if (count > 1 || below(2) == 0)
                text += "; ";
        }
        return text;
    }

    std::string sheet()
    {
        static const char* const kSelectors[] = {"p", "td", "ul", "h1", "span", "table", "body",
            "html", ".x", ".y", ".x .y", "td.x", "tr > td", "p + p", "li ~ li", "address", "dd",
            "#x", "a.y:not(p)", "* *", "p:hover"};
        static const char* const kJunk[]
            = {"} ", "<!-- ", "@media x { p { color: red } } ", "; ", "p, { color: red } ", "/**/"};
        std::string text = below(4) == 0 ? "<!-- " : "";
        for (std::uint32_t rules = 1 + below(12); rules > 0; --rules) {
            if (below(20) == 0)
                text += kJunk[below(6)];
            text += below(3) == 0
                ? selectors_.selector(3)
                : kSelectors[below(static_cast<std::uint32_t>(std::size(kSelectors)))];
            if (below(5) == 0)
                text += ", " + selectors_.selector(2);
            text += " { " + declarations() + " } ";
        }
        return text;
    }

private:
    SelectorWriter selectors_;
};

/// A document built twice: by the cascade and by its plain form.
class Twins {
public:
    Twins()
        : plain_(plainDocument_)
    {
    }

    void parse(std::string_view text)
    {
        document_.parse(text);
        plain_.parseStyleSheet(text);
    }

    /// Opens a random element and enters it in both.
    void open(StyleWriter& random)
    {
        static const ZVHTMLElement kElements[] = {ELEMENT_HTML, ELEMENT_BODY, ELEMENT_P, ELEMENT_P,
            ELEMENT_DIV, ELEMENT_UL, ELEMENT_LI, ELEMENT_LI, ELEMENT_H1, ELEMENT_TABLE, ELEMENT_TR,
            ELEMENT_TD, ELEMENT_TD, ELEMENT_SPAN, ELEMENT_A, ELEMENT_B, ELEMENT_FONT, ELEMENT_DD,
            ELEMENT_ADDRESS};
        const ZVHTMLElement element
            = kElements[random.below(static_cast<std::uint32_t>(std::size(kElements)))];
        Pair node
            = {&document_.add(element, parentIn(0)), &plainDocument_.add(element, parentIn(1))};
        static const char* const kNames[] = {"x", "y", "x y", "z"};
        if (random.below(2) == 0)
            set(node, ATTRIBUTE_CLASS, kNames[random.below(4)]);
        if (random.below(16) == 0)
            set(node, ATTRIBUTE_ID, kNames[random.below(4)]);
        if (random.below(8) == 0)
            set(node, ATTRIBUTE_STYLE, random.below(8) == 0 ? "" : random.declarations());
        while (random.below(9) == 0)
            declare(node, random);
        document_.enter(*node.first);
        plain_.enter(*node.second);
        open_.push_back(node);
        all_.push_back(node);
    }

    void addText()
    {
        if (open_.empty())
            return;
        document_.addText(u"x", *open_.back().first);
        plainDocument_.addText(u"x", *open_.back().second);
    }

    bool hasOpen() const { return !open_.empty(); }

    void close()
    {
        document_.leave(*open_.back().first);
        plain_.leave(*open_.back().second);
        open_.pop_back();
    }

    /// What the newest element has and what is in force now.
    void expectSame()
    {
        ASSERT_EQ(listText(&document_.initialStyle), listText(&plainDocument_.initialStyle));
        ASSERT_EQ(backgroundText(document_.context), backgroundText(plainDocument_.context));
        ASSERT_EQ(document_.fonts(), plain_.fonts());
        ASSERT_EQ(static_cast<std::size_t>(document_.context.buildFrames.getCount()),
            plain_.frames().size());
        if (!plain_.frames().empty()) {
            ASSERT_EQ(frameText(document_.frame()), frameText(plain_.frames().back()));
        }
        if (!open_.empty())
            expectSame(open_.back());
    }

    void expectAllSame()
    {
        for (const Pair& node : all_)
            expectSame(node);
    }

    /// How many elements have their list together with an earlier one.
    std::size_t countSharers()
    {
        std::set<const CssDeclarationList*> lists;
        std::size_t sharers = 0;
        for (const Pair& node : all_) {
            const CssDeclarationList* const list = StyleDocument::tag(*node.first).declarations;
            sharers += lists.insert(list).second || list->isEmpty() ? 0 : 1;
        }
        return sharers;
    }

private:
    struct Pair {
        HtmlTreeNode* first;
        HtmlTreeNode* second;
    };

    HtmlTreeNode* parentIn(int which) const
    {
        if (open_.empty())
            return nullptr;
        return which == 0 ? open_.back().first : open_.back().second;
    }

    void set(const Pair& node, ZVHTMLAttribute id, std::string_view text)
    {
        document_.setText(*node.first, id, unitsOf(text));
        plainDocument_.setText(*node.second, id, unitsOf(text));
    }

    /// Declares something as an attribute of the element would.
    void declare(const Pair& node, StyleWriter& random)
    {
        static const ZVCSSProperty kProperties[] = {PROPERTY_WIDTH, PROPERTY_COLOR,
            PROPERTY_MARGIN_LEFT, PROPERTY_BACKGROUND_COLOR, PROPERTY_TEXT_ALIGN,
            PROPERTY_FONT_FAMILY, PROPERTY_PADDING_LEFT, PROPERTY_DIRECTION};
        const ZVCSSProperty property = kProperties[random.below(8)];
        const std::uint32_t number = random.below(6);
        const bool important = random.below(8) == 0;
        for (const auto& [target, place] :
            {std::pair<StyleDocument&, HtmlTreeNode&>(document_, *node.first),
                std::pair<StyleDocument&, HtmlTreeNode&>(plainDocument_, *node.second)}) {
            HtmlValue* value = target.length(static_cast<float>(number));
            if (property == PROPERTY_COLOR || property == PROPERTY_BACKGROUND_COLOR)
                value = target.color(number);
            else if (property == PROPERTY_TEXT_ALIGN)
                value = target.keyword(VALUE_CENTER);
            else if (property == PROPERTY_DIRECTION)
                value = target.keyword(number < 3 ? VALUE_RTL : VALUE_LTR);
            else if (property == PROPERTY_FONT_FAMILY)
                value = target.text(u"Verdana, x");
            else if (number == 5)
                value = target.length(1, UNITS_EM);
            target.declare(place, property, value, important);
        }
    }

    static void expectSame(const Pair& node)
    {
        const HtmlTagNodeData& own = StyleDocument::tag(*node.first);
        const HtmlTagNodeData& expected = StyleDocument::tag(*node.second);
        ASSERT_EQ(listText(own.declarations), listText(expected.declarations))
            << "element " << own.elementId;
        ASSERT_EQ(listText(own.undoDeclarations), listText(expected.undoDeclarations))
            << "element " << own.elementId;
    }

    SheetDocument document_;
    SheetDocument plainDocument_;
    PlainStyle plain_;
    std::vector<Pair> open_;
    std::vector<Pair> all_;
};

TEST(CascadeDocuments, AreAsThePlainFormHasThem)
{
    std::size_t sharers = 0;
    for (std::uint32_t seed = 0; seed < kRandomDocuments; ++seed) {
        StyleWriter random(seed);
        Twins twins;
        twins.parse(random.sheet());
        for (int step = 0; step < 80; ++step) {
            const std::uint32_t what = random.below(20);
            if (what < 9)
                twins.open(random);
            else if (what < 17 && twins.hasOpen())
                twins.close();
            else if (what < 19)
                twins.addText();
            else
                twins.parse(random.sheet());
            twins.expectSame();
            ASSERT_FALSE(HasFatalFailure()) << "document " << seed << " step " << step;
        }
        while (twins.hasOpen()) {
            twins.close();
            twins.expectSame();
            ASSERT_FALSE(HasFatalFailure()) << "document " << seed;
        }
        twins.expectAllSame();
        ASSERT_FALSE(HasFatalFailure()) << "document " << seed;
        sharers += twins.countSharers();
    }
    EXPECT_GT(sharers, kRandomDocuments);
}

// Whatever a sheet is made of, both read the same rules out of it.
TEST(CascadeDocuments, RandomTokensAreReadAsThePlainFormReadsThem)
{
    static const char* const kPieces[] = {" ", " ", " ", "p", "a", "div", ".x", "#x", "*", ",", ";",
        ";", ":", "{", "{", "}", "}", "(", ")", "[", "]", ">", "+", "~", "color", "color:red",
        "width:1px", "!important", "!important;", "@media", "@import x", "<!--", "-->", "url(",
        "url(x)", "x(", "'x'", "\"x\n", ":not(", ":hover", ":before", "1", "2px", "/*x*/", "\\",
        "||", "[class]", ":lang("};
    for (std::uint32_t seed = 0; seed < kRandomDocuments; ++seed) {
        StyleWriter random(seed);
        Twins twins;
        for (std::uint32_t texts = 1 + random.below(2); texts > 0; --texts) {
            std::string text;
            for (std::uint32_t pieces = random.below(60); pieces > 0; --pieces)
                text += kPieces[random.below(static_cast<std::uint32_t>(std::size(kPieces)))];
            twins.parse(text);
        }
        for (int i = 0; i < 6; ++i) {
            twins.open(random);
            twins.expectSame();
            ASSERT_FALSE(HasFatalFailure()) << "document " << seed;
        }
    }
}

} // namespace
