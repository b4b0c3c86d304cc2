#include "output/attachments.h"

#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

#include <array>

using namespace testing_support;

namespace {

/// A record with words of the caller's own behind it.
struct WideRecord {
    AttachmentRecord record;
    std::uint32_t more[4];
};

using Records = std::array<WideRecord, 3>;

AttachmentTable tableOf(Records& records)
{
    return {
        sizeof(WideRecord), 5, 5 + static_cast<std::uint32_t>(records.size()), 0, records.data()};
}

Records makeRecords()
{
    return {{{{"one@host", "dir/a.png", "third", 7, 0}, {}},
        {{"two@host", nullptr, nullptr, 8, 0}, {}}, {{nullptr, "b\xE9.png", nullptr, 9, 0}, {}}}};
}

} // namespace

TEST(Attachments, ContentIdentifierOrEndOfFileName)
{
    struct Row {
        const char16_t* address;
        int used; ///< the record that is marked, -1 none
    };
    const Row rows[] = {
        {u"one@host", 0},
        {u"two@host", 1},
        {u"two@hos", -1},
        {u"wo@host", -1},
        {u"TWO@host", -1},
        {u"cid:two@host", -1},
        {u"dir/a.png", 0},
        {u"a.png", 0},
        {u"A.png", -1},
        {u"x/dir/a.png", -1},
        {u"third", -1},
        {u"\u00E9.png", 2},
        {u"\u01E9.png", -1},
        // The first of several wins.
        {u".png", 0},
        {u"#a.png", -1},
    };
    for (const Row& row : rows) {
        OutputContext document;
        Records records = makeRecords();
        AttachmentTable table = tableOf(records);
        document.context.embeddedObjects = &table;
        const HtmlWStringValue* address
            = HtmlWStringValue::from(document.values.stringValue(row.address));
        const AttachmentRecord* found = useLinkedAttachment(*address, document.context);
        EXPECT_EQ(
            found, row.used < 0 ? nullptr : &records[static_cast<std::size_t>(row.used)].record);
        for (int i = 0; i < 3; ++i)
            EXPECT_EQ(records[static_cast<std::size_t>(i)].record.used, i == row.used ? 1U : 0U);
    }
}

TEST(Attachments, EmptyAddressMeansTheFirstFile)
{
    OutputContext document;
    Records records = makeRecords();
    records[0].record.fileName = nullptr;
    AttachmentTable table = tableOf(records);
    document.context.embeddedObjects = &table;
    const HtmlWStringValue* address = HtmlWStringValue::from(document.values.stringValue(u""));
    EXPECT_EQ(useLinkedAttachment(*address, document.context), &records[2].record);
}

TEST(Attachments, NoTableAndNoRecords)
{
    OutputContext document;
    const HtmlWStringValue* address = HtmlWStringValue::from(document.values.stringValue(u"a.png"));
    EXPECT_EQ(useLinkedAttachment(*address, document.context), nullptr);
    Records records = makeRecords();
    AttachmentTable table = tableOf(records);
    table.last = table.first;
    document.context.embeddedObjects = &table;
    EXPECT_EQ(useLinkedAttachment(*address, document.context), nullptr);
    EXPECT_EQ(records[0].record.used, 0U);
}
