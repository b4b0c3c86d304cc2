#include "style/table_value.h"

#include "tests/style/style_document.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

TEST(TableValue, MakesEachKind)
{
    struct Row {
        TableValue value;
        const char* text;
    };
    const Row rows[] = {
        {TableValue::keywordOf(VALUE_ITALIC), "keyword 72"},
        {TableValue::black(), "color 0"},
        {TableValue::pixels(-36), "-36px"},
        {TableValue::ems(0.67F), "0.67em"},
        {TableValue::textOf(u"Arial"), "\"Arial\""},
    };
    ValueCache values;
    for (const Row& row : rows)
        EXPECT_EQ(textOf(makeValue(row.value, values)), row.text);
}

} // namespace
