#include "bench/hard_shapes.h"

#include "tests/common/document_run.h"
#include "tools/htmltree/document_outline.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace bench {

void PrintTo(const HardShape& shape, std::ostream* out) { *out << shape.name; }

} // namespace bench

namespace {

using bench::HardShape;
using testing_support::DocumentRun;

class HardShapes : public testing::TestWithParam<HardShape> {
protected:
    static std::string document() { return GetParam().generate(GetParam().testCount); }
};

TEST_P(HardShapes, BecomeTheWholeTree)
{
    host::MemoryStream stream(document());
    const std::string outline
        = htmltree::outlineOfDocument(stream, {}, htmltree::Declarations::LeftOut);
    EXPECT_EQ(static_cast<std::size_t>(std::count(outline.begin(), outline.end(), '\n')),
        GetParam().nodes(GetParam().testCount));
}

TEST_P(HardShapes, EndInOrder)
{
    DocumentRun run(document());
    run.run();
    EXPECT_TRUE(run.isDone());
}

TEST_P(HardShapes, EndInOrderWhenTheHostStopsAtEveryBreak)
{
    DocumentRun run(document());
    run.host->stopEvery = 1;
    run.run();
    EXPECT_TRUE(run.isDone());
}

TEST(HardShape, DocumentsAreAsLargeAsAsked)
{
    for (const HardShape& shape : bench::hardShapes()) {
        EXPECT_EQ(shape.generate(0).find('x'), std::string::npos) << shape.name;
        EXPECT_GT(shape.generate(4).size(), shape.generate(2).size()) << shape.name;
        EXPECT_LE(shape.testCount, shape.benchCount) << shape.name;
    }
}

std::string testName(const testing::TestParamInfo<HardShape>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Shapes, HardShapes, testing::ValuesIn(bench::hardShapes()), testName);

} // namespace
