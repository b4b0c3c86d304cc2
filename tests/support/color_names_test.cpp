#include "support/color_names.h"

#include "support/abstract_string.h"
#include "tests/support/name_rows.h"

#include <gtest/gtest.h>

using testing_support::tableRows;
using zorvan::kColorNameCount;
using zorvan::kColorNames;

TEST(ColorNames, EveryRowInTheOrderOfTheTable)
{
    const auto rows = tableRows("colors.tsv");
    ASSERT_EQ(rows.size(), kColorNameCount);
    EXPECT_EQ(kColorNameCount, 175u);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(kColorNames[i].name, rows[i].first);
        EXPECT_EQ(kColorNames[i].rgb, std::stoul(rows[i].second, nullptr, 16)) << rows[i].first;
    }
}

TEST(ColorNames, AscendWithoutRegardToCase)
{
    for (std::uint32_t i = 1; i < kColorNameCount; ++i) {
        const zorvan::AbstractString<char> before(kColorNames[i - 1].name);
        const zorvan::AbstractString<char> name(kColorNames[i].name);
        EXPECT_LT(before.compareToIgnoreCase(name), 0) << kColorNames[i].name;
    }
}
