#include "bench/styled_page.h"

#include "bench/conversion.h"
#include "bench/processor_time.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace bench {

namespace {

    constexpr std::size_t kClasses = 4'500;
    constexpr std::size_t kWrappers = 100;
    constexpr int kRepeats = 7;
    constexpr double kMilliseconds = 1e3;

    /// Numbers that look like chance and are the same in every run.
    class Dice {
    public:
        std::size_t roll(std::size_t sides)
        {
            state_ = state_ * 6'364'136'223'846'793'005U + 1'442'695'040'888'963'407U;
            return static_cast<std::size_t>(state_ >> 33) % sides;
        }

        template <std::size_t Count>
        std::string_view pick(const std::array<std::string_view, Count>& choices)
        {
            return choices[roll(Count)];
        }

    private:
        std::uint64_t state_ = 1;
    };

    constexpr auto kNames
        = std::to_array<std::string_view>({"p", "span", "td", "div", "a", "li", "h2", "table"});

    std::string numbered(std::string_view name, std::size_t number)
    {
        return std::string(name) + std::to_string(number);
    }

    /// One of the declarations that generated sheets are made of; "?" stands for a digit.
    std::string declaration(Dice& dice)
    {
        static constexpr auto kPatterns = std::to_array<std::string_view>({
            "color:#a?b?c?",
            "background:#f?e?d?",
            "background-color: #??????",
            "font-size:1?.0pt",
            "font-size: 1.?em",
            "font-family:\"Serif Text ?\",serif",
            "font-family: Arial, Helvetica, sans-serif",
            "font-weight:bold",
            "font-style:italic",
            "line-height:11?%",
            "margin:0in",
            "margin-top:?.0pt",
            "margin-bottom:.000?pt",
            "margin-left:.?in",
            "margin-left: 1.?em",
            "margin-right: ?px",
            "padding:0in 5.?pt 0in 5.?pt",
            "padding-left: ?px",
            "text-align:justify",
            "text-align:center",
            "text-indent:-.?in",
            "text-decoration:none",
            "vertical-align:top",
            "border:solid windowtext 1.?pt",
            "border-bottom: 1px solid #c?c?c?",
            "width:??.?pt",
            "page-break-after:avoid",
            "letter-spacing:.?pt",
            "display: block",
        });
        std::string text(dice.pick(kPatterns));
        for (char& byte : text) {
            if (byte == '?')
                byte = static_cast<char>('0' + dice.roll(10));
        }
        return text;
    }

    std::string block(Dice& dice)
    {
        std::string text = " {";
        const std::size_t count = 2 + dice.roll(4);
        for (std::size_t made = 0; made < count; ++made)
            text += "\n\t" + declaration(dice) + ';';
        return text + "}\n";
    }

    std::string className(Dice& dice) { return numbered(".c", dice.roll(kClasses)); }

    /// The class of an element. As in such pages, some are used much more often than others.
    std::string usedClass(Dice& dice) { return numbered("c", dice.roll(dice.roll(kClasses) + 1)); }

    std::string wrapperName(Dice& dice) { return numbered(".wrap", dice.roll(kWrappers)); }

    std::string selector(std::size_t rule, Dice& dice)
    {
        switch (rule % 10) {
        case 5:
            return std::string(dice.pick(kNames)) + className(dice);
        case 6:
            return "p" + className(dice) + ", li" + className(dice) + ", div" + className(dice);
        case 7:
            return wrapperName(dice) + ' ' + className(dice);
        case 8:
            return "table" + wrapperName(dice) + " td" + className(dice);
        case 9:
            return numbered("#id", rule);
        default:
            return className(dice);
        }
    }

    std::string sheet(std::size_t rules)
    {
        Dice dice;
        std::string text = "<style type=\"text/css\">\n<!--\n"
                           "p, li, div {margin:0in; font-size:11.0pt; font-family:\"Serif Text\"}\n"
                           "table td {padding:0in 5.4pt 0in 5.4pt; vertical-align:top}\n"
                           "a:link, span.link {color:#0563c1; text-decoration:underline}\n";
        for (std::size_t rule = 3; rule < rules; ++rule)
            text += selector(rule, dice) + block(dice);
        return text + "-->\n</style>\n";
    }

    /// Start tags with classes, and how many.
    class Body {
    public:
        explicit Body(std::size_t elements)
            : elements_(elements)
        {
        }

        std::string text()
        {
            while (made_ < elements_)
                addBlock();
            return text_;
        }

    private:
        void addBlock()
        {
            start("div", numbered("wrap", dice_.roll(kWrappers)));
            text_ += '\n';
            for (int paragraph = 0; paragraph < 3; ++paragraph)
                addParagraph();
            start("table", numbered("wrap", dice_.roll(kWrappers)));
            for (int row = 0; row < 2; ++row)
                addRow();
            text_ += "</table></div>\n";
        }

        void addParagraph()
        {
            start("p");
            text_ += "The path climbs from the station to ";
            start("span");
            text_ += "a view over the strait</span>. From there it is ";
            start("b");
            text_ += "twenty\nminutes</b> to the lighthouse, and the keeper's house is open on "
                     "Sundays only.</p>\n";
        }

        void addRow()
        {
            start("tr");
            for (int cell = 0; cell < 3; ++cell) {
                start("td");
                start("p");
                text_ += "Train, return, 18.40</p></td>";
            }
            text_ += "</tr>\n";
        }

        void start(std::string_view name, const std::string& first = {})
        {
            ++made_;
            text_ += '<';
            text_ += name;
            if (dice_.roll(40) == 0)
                text_ += " id=" + numbered("id", made_);
            text_ += " class=\"" + (first.empty() ? usedClass(dice_) : first);
            if (dice_.roll(3) == 0)
                text_ += ' ' + usedClass(dice_);
            text_ += "\">";
        }

        const std::size_t elements_;
        std::size_t made_ = 0;
        std::string text_;
        Dice dice_;
    };

    double bestMilliseconds(const Document& document)
    {
        double best = 0;
        for (int repeat = 0; repeat < kRepeats; ++repeat) {
            const double start = processorSeconds();
            convert(document, false);
            const double took = (processorSeconds() - start) * kMilliseconds;
            if (repeat == 0 || took < best)
                best = took;
        }
        return best;
    }

} // namespace

Document styledPage(const StyledPage& page)
{
    Document document;
    document.bytes = "<html><head><title>t</title>\n";
    if (page.hasSheet)
        document.bytes += sheet(page.rules);
    document.bytes += "</head><body>\n" + Body(page.elements).text() + "</body></html>\n";
    return document;
}

int printSheetCost()
{
    StyledPage page;
    const Document styled = styledPage(page);
    page.hasSheet = false;
    const Document plain = styledPage(page);
    const double styledTime = bestMilliseconds(styled);
    const double plainTime = bestMilliseconds(plain);
    std::printf("page of %zu elements, cpu ms\nwith a sheet of %zu rules %9.1f\n"
                "without the sheet        %9.1f\nratio                    %9.2f\n",
        page.elements, page.rules, styledTime, plainTime, styledTime / plainTime);
    return 0;
}

} // namespace bench
