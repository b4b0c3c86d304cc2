/* The headers that hosts include are plain C: this file is compiled as such. */

#include "filter/entry_table.h"
#include "output/host_routines.h"
#include "support/engine_options.h"

unsigned sizesOfRecordsInC(void);

/* What C makes of the records, for comparison with C++. */
unsigned sizesOfRecordsInC(void)
{
    return (unsigned)(sizeof(OpenRecord) + sizeof(StreamOperations) + sizeof(StreamRange)
        + sizeof(FilterEntryTable) + sizeof(BorderSide) + sizeof(PageBorderRecord)
        + sizeof(ParagraphBorderRecord) + sizeof(ParagraphShadingRecord) + sizeof(GraphicRecord)
        + sizeof(RuleRecord) + sizeof(HyperlinkRecord) + sizeof(BookmarkRecord)
        + sizeof(TableRecord) + sizeof(TableRowRecord) + sizeof(TableCellRecord)
        + sizeof(UTFailure));
}
