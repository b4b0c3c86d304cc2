#include "filter/entry_table.h"
#include "output/host_routines.h"
#include "support/engine_options.h"

#include <gtest/gtest.h>

extern "C" unsigned sizesOfRecordsInC(void);

TEST(InstalledHeaders, AreTheSameInC)
{
    const std::size_t sizes = sizeof(OpenRecord) + sizeof(StreamOperations) + sizeof(StreamRange)
        + sizeof(FilterEntryTable) + sizeof(BorderSide) + sizeof(PageBorderRecord)
        + sizeof(ParagraphBorderRecord) + sizeof(ParagraphShadingRecord) + sizeof(GraphicRecord)
        + sizeof(RuleRecord) + sizeof(HyperlinkRecord) + sizeof(BookmarkRecord)
        + sizeof(TableRecord) + sizeof(TableRowRecord) + sizeof(TableCellRecord)
        + sizeof(UTFailure);
    EXPECT_EQ(sizesOfRecordsInC(), sizes);
}
