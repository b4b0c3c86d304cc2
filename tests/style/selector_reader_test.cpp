#include "style/selector_reader.h"

#include "tests/containers/allocation_failures.h"
#include "tests/style/selector_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace {

using namespace testing_support;

/// What the reader makes of a text: the selector as selectorText has it, "!" behind it for an
/// error, and what is left of the text.
struct Row {
    const char* text;
    const char* selector;
    const char* rest;
};

template <std::size_t N> void expectRows(const Row (&rows)[N])
{
    for (const Row& row : rows) {
        const ReadSelector read(row.text);
        EXPECT_EQ(selectorText(read.selector) + (read.isError ? "!" : ""), row.selector)
            << row.text;
        EXPECT_EQ(read.rest, row.rest) << row.text;
    }
}

TEST(SelectorReader, Conditions)
{
    const Row rows[] = {
        {"p{", "{ p}", "{"},
        {"P{", "{ P}", "{"},
        {"nosuchname{", "{ nosuchname?}", "{"},
        {"-x{", "{ -x?}", "{"},
        {".x{", "{u .x}", "{"},
        {".X{", "{u .X}", "{"},
        {".-x_1{", "{u .-x_1}", "{"},
        {"#x{", "{u #x}", "{"},
        {"#1{", "{u #1}", "{"},
        {"p.x#y[id]:hover{", "{ p .x #y [76] :1041}", "{"},
        {".x.x{", "{u .x .x}", "{"},
        {"[id]p{", "{ [76] p}", "{"},
        {".x/**/.y{", "{u .x .y}", "{"},
        // A second name is a second condition: nothing has both.
        {"a/**/b{", "{ a b}", "{"},
        {"p,a{", "{ p}", ",a{"},
        // Escapes stay as written.
        {"\\70{", "{ \\70?}", "{"},
        {".\\78{", "{u .\\78}", "{"},
        {"#\\78 y{", "{u #\\78 y}", "{"},
    };
    expectRows(rows);
}

TEST(SelectorReader, Combinators)
{
    const Row rows[] = {
        {"a b{", "{ a} { b}", "{"},
        {"a \t\r\n\f b{", "{ a} { b}", "{"},
        {"a /**/ b{", "{ a} { b}", "{"},
        {"a>b{", "{ a}>{ b}", "{"},
        {"a > b{", "{ a}>{ b}", "{"},
        {"a >b{", "{ a}>{ b}", "{"},
        {"a> b{", "{ a}>{ b}", "{"},
        {"a+b{", "{ a}+{ b}", "{"},
        {"a + b{", "{ a}+{ b}", "{"},
        {"a~b{", "{ a}~{ b}", "{"},
        {"a ~ b{", "{ a}~{ b}", "{"},
        // Of several the last one counts.
        {"a > + b{", "{ a}+{ b}", "{"},
        {"a + > b{", "{ a}>{ b}", "{"},
        {"a ~+> ~ b{", "{ a}~{ b}", "{"},
        {"a>b+p~i b{", "{ a}>{ b}+{ p}~{ i} { b}", "{"},
        {".x p{", "{u .x} { p}", "{"},
        // At the end they join nothing.
        {"a {", "{ a}", "{"},
        {"a /**/ {", "{ a}", "{"},
        {"a ,b{", "{ a}", ",b{"},
        {"a > {", "{ a}", "{"},
        {"a + ,b{", "{ a}", ",b{"},
        {"a b ~{", "{ a} { b}", "{"},
    };
    expectRows(rows);
}

TEST(SelectorReader, StarIsDropped)
{
    const Row rows[] = {
        {"*{", "", "{"},
        {"* {", "", "{"},
        {"*,", "", ","},
        {"* ,", "", ","},
        {"**{", "", "{"},
        {"*.x{", "{u .x}", "{"},
        {"*:hover{", "{u :1041}", "{"},
        {"*[id]{", "{u [76]}", "{"},
        {"*p{", "{ p}", "{"},
        {"div *{", "{ div}", "{"},
        {"div * {", "{ div}", "{"},
        {"div > * {", "{ div}", "{"},
        {"div *.x{", "{ div} {u .x}", "{"},
        // Behind a condition it is an error.
        {"p*{", "{ p}!", "{"},
        {"p*a{", "{ p}!", "a{"},
        {"div p* a{", "{ div} { p}!", " a{"},
        {".x*{", "{u .x}!", "{"},
        // Behind what gives no condition it is none.
        {":before*{", "::1057", "{"},
    };
    expectRows(rows);
}

TEST(SelectorReader, EmptySequencesCount)
{
    const Row rows[] = {
        {"* a{", "{u} { a}", "{"},
        {"* *{", "{u}", "{"},
        {"* * {", "{u}", "{"},
        {"* + *{", "{u}", "{"},
        {"* > {", "{u}", "{"},
        {"*~{", "{u}", "{"},
        {"* * *{", "{u} {u}", "{"},
        {"* > * > a{", "{u}>{u}>{ a}", "{"},
        {"a * b{", "{ a} {u} { b}", "{"},
        {":before a{", "{u} { a}::1057", "{"},
        {":not(:before) a{", "{u} { a}", "{"},
    };
    expectRows(rows);
}

TEST(SelectorReader, DotsWithoutANameAreDroppedWithWhatFollows)
{
    const Row rows[] = {
        {".*p{", "{ p}", "{"}, {"..x p{", "{ x?} { p}", "{"},
        {". x{", "{ x?}", "{"}, // the blank is what follows
        {"a .{b{", "{ a} { b}", "{"}, {".,p{", "{ p}", "{"}, {".#x p{", "{u} { p}", "{"},
        {".", "!", ""}, {".1 a{", "!", " a{"}, // a number, not a dot
    };
    expectRows(rows);
}

TEST(SelectorReader, Attributes)
{
    const Row rows[] = {
        {"[class]{", "{u [26]}", "{"},
        {"[ class ]{", "{u [26]}", "{"},
        {"[class=x]{", "{u [26=x]}", "{"},
        {"[ class = x ]{", "{u [26=x]}", "{"},
        {"[class='x y']{", "{u [26=x y]}", "{"},
        {"[class=\"\"]{", "{u [26=]}", "{"},
        {"[class='a\\'b']{", "{u [26=a\\'b]}", "{"},
        {"[class=\\78]{", "{u [26=\\78]}", "{"},
        {"[class~=x]{", "{u [26~=x]}", "{"},
        {"[class|=x]{", "{u [26|=x]}", "{"},
        {"[class^=x]{", "{u [26^=x]}", "{"},
        {"[class$=x]{", "{u [26$=x]}", "{"},
        {"[class*=x]{", "{u [26*=x]}", "{"},
        {"[href=x]{", "{u [0=x]}", "{"},
        {"a[DIR=ltr][lang]{", "{ a [46=ltr] [84]}", "{"},
    };
    expectRows(rows);
}

TEST(SelectorReader, AttributesThatAreNoneAreDroppedAsFarAsTheyWereRead)
{
    const Row rows[] = {
        {"p[1]{", "{ p}!", "{"}, // the number is gone, the bracket is an error
        {"p['x']{", "{ p}!", "{"},
        {"p[]{", "{ p}", "{"}, // the bracket is what stands in place of the name
        {"p[{a{", "{ p a}", "{"},
        {"p[class a{", "{ p}", "{"}, // the second name is what stands in place of the operator
        {"p[class>a]{", "{ p a}!", "{"},
        {"p[class=]{", "{ p}", "{"},
        {"p[class=1]{", "{ p}!", "{"},
        {"p[class=#x]{", "{ p}!", "{"},
        {"p[class=x a{", "{ p}", "{"},
        {"p[class=x,a{", "{ p a}", "{"},
        {"p[class=x{", "{ p}!", ""},
        {"p[class", "{ p}!", ""},
        {"p[", "{ p}!", ""},
    };
    expectRows(rows);
}

TEST(SelectorReader, PseudoClassesWithArguments)
{
    const Row rows[] = {
        {"p:lang(en){", "{ p :1033}", "{"},
        {"p:lang( en , de ){", "{ p :1033}", "{"},
        {"p:nth-child(2n+1){", "{ p :1034}", "{"},
        {"p:nth-last-child(2n+1)a{", "{ p :1035 a}", "{"},
        {"p:nth-of-type(odd) a{", "{ p :1036} { a}", "{"},
        {"p:nth-last-of-type({,}){", "{ p :1037}", "{"},
        {"p:lang(){", "{ p :1033}", "{"},
        // Nothing closes it: it is gone with the rest of the text.
        {"p:lang(en{", "{ p}!", ""},
        {"p:nth-child(2", "{ p}!", ""},
        // Those without take none.
        {"p:hover(x){", "{ p :1041}!", "x){"},
        {"p:first-child{", "{ p :1043}", "{"},
        {"p:HOVER{", "{ p :1041}", "{"},
    };
    expectRows(rows);
}

TEST(SelectorReader, UnknownPseudoClassesAreErrors)
{
    const Row rows[] = {
        {"p:foo{", "{ p}!", "foo{"},
        {"p:{", "{ p}!", "{"},
        {":selection{", "!", "selection{"},
        {"p::foo{", "{ p}!", ":foo{"},
        {"p:nth-child (2){", "{ p}!", "nth-child (2){"},
        {"p:not (a){", "{ p}!", "not (a){"},
    };
    expectRows(rows);
}

TEST(SelectorReader, PseudoElements)
{
    const Row rows[] = {
        {"p:first-letter{", "{ p}::1055", "{"},
        {"p::first-letter{", "{ p}::1055", "{"},
        {"p:first-line{", "{ p}::1056", "{"},
        {"p:before{", "{ p}::1057", "{"},
        {"p::after{", "{ p}::1058", "{"},
        {"p::selection{", "{ p}::1059", "{"},
        {"::selection{", "::1059", "{"},
        {"p:before.x a{", "{ p .x} { a}::1057", "{"},
        {"p:before:before{", "{ p}::1057!", "{"},
        {"::selection::after a{", "::1059!", " a{"},
        {"p:before a:after{", "{ p} { a}::1057!", "{"},
    };
    expectRows(rows);
}

TEST(SelectorReader, Negations)
{
    const Row rows[] = {
        {":not(p){", "{u not(p)}", "{"},
        {":not( p ){", "{u not(p)}", "{"},
        {"a:not(p):not(b){", "{ a not(p) not(b)}", "{"},
        {":not(*){", "{u not(*)}", "{"},
        {":not(.x){", "{u not(.x)}", "{"},
        {":not(. x){", "{u not(.x)}", "{"},
        {":not(#x){", "{u not(#x)}", "{"},
        {":not([class~=x]){", "{u not([26~=x])}", "{"},
        {":not([href]){", "{u not([0])}", "{"},
        {":not(:hover){", "{u not(:1041)}", "{"},
        {":not(:lang(en)){", "{u not(:1033)}", "{"},
        {":NOT(p){", "{u not(p)}", "{"},
    };
    expectRows(rows);
}

// Behind an argument that gave nothing one more token is read.
TEST(SelectorReader, NegationsThatFailAddNothing)
{
    const Row rows[] = {
        {"p:not(a b)c{", "{ p}!", "c{"}, // the second name is what stands in place of the bracket
        {"p:not(a.x){", "{ p x?}!", "{"},
        {"p:not(){", "{ p}!", ""},
        {"p:not(1){", "{ p}", "{"},
        {"p:not(1 2){", "{ p}!", "{"},
        {"p:not(:not(a)){", "{ p}!", "){"},
        {"p:not(:before){", "{ p}", "{"},
        {"p:not(. 1){", "{ p}", "{"},
        {"p:not(.){", "{ p}!", ""},
        {"p:not([1]){", "{ p}!", "{"},
        {"p:not([href){", "{ p}!", ""},
        {"p:not(:lang(en){", "{ p}!", ""},
        {"p:not(", "{ p}!", ""},
        {"p:not(a", "{ p}!", ""},
    };
    expectRows(rows);
}

TEST(SelectorReader, AnythingElseIsAnErrorAndGone)
{
    const Row rows[] = {
        {"p;a{", "{ p}!", "a{"},
        {"p}a{", "{ p}!", "a{"},
        {"p]a{", "{ p}!", "a{"},
        {"p)a{", "{ p}!", "a{"},
        {"p&a{", "{ p}!", "a{"},
        {"p|a{", "{ p}!", "a{"},
        {"p||a{", "{ p}!", "a{"},
        {"p@media a{", "{ p}!", " a{"},
        {"p 1 a{", "{ p}!", " a{"},
        {"p 'x' a{", "{ p}!", " a{"},
        {"p x(a{", "{ p}!", "a{"},
        {"p <!-- a{", "{ p}!", " a{"},
        {"p -->a{", "{ p}!", "a{"},
        {"p !important{", "{ p}!", "{"},
        {"p url(x){", "{ p}!", "{"},
        // The end of the text as well.
        {"p", "{ p}!", ""},
        {"p ", "{ p}!", ""},
        {"", "!", ""},
    };
    expectRows(rows);
}

TEST(SelectorReader, EachAllocationMayFail)
{
    constexpr std::string_view kText
        = "div.x > #y:not(.z) a[class=\"w\"]:lang(en) + *:not([id]):hover{";
    CssTokenizer tokens;
    setCssInput(tokens, kText);
    const std::uint32_t failures = failEachAllocation(
        [&] {
            setCssInput(tokens, kText);
            Selector selector(1);
            EXPECT_FALSE(readSelector(selector, tokens));
            EXPECT_EQ(selector.sequences.getCount(), 4);
        },
        [] {});
    EXPECT_GT(failures, 20U);
}

} // namespace
