#include "tree/element_sets.h"

#include "support/html_strings.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

namespace {

constexpr std::uint32_t kIdsTried = 300;

std::set<std::uint32_t> idsOf(const std::string& names)
{
    std::set<std::uint32_t> ids;
    std::istringstream words(names);
    for (std::string word; words >> word;) {
        const std::uint32_t id = zorvan::HTMLStrings::elementFromString(word.c_str());
        EXPECT_NE(id, 0U) << word;
        ids.insert(id);
    }
    return ids;
}

struct SetRow {
    const char* name;
    bool (*contains)(std::uint32_t elementId);
    const char* members;
};

const SetRow kSets[] = {
    {"implied end tags", IsImpliedEndTagElement, "dd dt li optgroup option p rp rt"},
    {"foster targets", IsFosterTarget, "table tbody tfoot thead tr"},
    {"special", IsSpecialElement,
        "address applet area article aside base basefont bgsound blockquote body br button caption "
        "center col colgroup command dd details dir div dl dt embed fieldset figcaption figure "
        "footer form frame frameset h1 h2 h3 h4 h5 h6 head header hgroup hr html iframe img input "
        "isindex li link listing marquee menu meta nav noembed noframes noscript object ol p param "
        "plaintext pre script section select source style summary table tbody td textarea tfoot th "
        "thead title tr track ul xmp"},
};

TEST(ElementSets, HaveExactlyTheirMembers)
{
    for (const SetRow& row : kSets) {
        SCOPED_TRACE(row.name);
        const std::set<std::uint32_t> members = idsOf(row.members);
        for (std::uint32_t id = 0; id < kIdsTried; ++id)
            EXPECT_EQ(row.contains(id), members.count(id) != 0) << id;
        EXPECT_FALSE(row.contains(0xFFFFFFFF));
    }
}

template <typename Stoppers> std::set<std::uint32_t> setOf(const Stoppers& stoppers)
{
    return {stoppers.begin(), stoppers.end()};
}

TEST(ElementSets, StoppersOfTheScopes)
{
    const std::string common = "applet caption html table td th marquee object title ";
    EXPECT_EQ(setOf(kDefaultScopeStoppers), idsOf(common));
    EXPECT_EQ(setOf(kButtonScopeStoppers), idsOf(common + "button"));
    EXPECT_EQ(setOf(kListItemScopeStoppers), idsOf(common + "ol ul"));
    EXPECT_EQ(setOf(kTableScopeStoppers), idsOf("html table"));
}

TEST(ElementSets, WbrAndDialogAreNotSpecial)
{
    EXPECT_FALSE(IsSpecialElement(ELEMENT_WBR));
    EXPECT_FALSE(IsSpecialElement(ELEMENT_DIALOG));
}

} // namespace
