#include "filter/entry_points.h"

#include "tests/common/document_run.h"

#include <gtest/gtest.h>

using testing_support::DocumentRun;

TEST(Position, IsNotTakenYetAndDisturbsNothing)
{
    DocumentRun plain("<p>a<p>b");
    plain.run();

    DocumentRun asked("<p>a<p>b");
    asked.host->stopEvery = 1;
    asked.open();
    asked.section();
    do {
        EXPECT_EQ(VwStreamTell(asked.block, asked.context), 0xFFFF);
        EXPECT_EQ(VwStreamSeek(asked.block, asked.context), 0xFFFF);
        asked.read();
    } while (!asked.isDone());
    EXPECT_EQ(asked.host->calls, plain.host->calls);
}
