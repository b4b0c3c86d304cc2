#include "output/frame_spares.h"

#include "output/tree_walk.h"
#include "support/process_heap.h"
#include "tests/output/output_fixture.h"

#include <gtest/gtest.h>

namespace {

using namespace testing_support;

HTML_SOINFO* frameOf(FrameSpares& spares, std::uint32_t number)
{
    HTML_SOINFO* frame = spares.take();
    if (frame == nullptr)
        frame = new HTML_SOINFO;
    *frame = emptyFrame();
    frame->handle = number;
    return frame;
}

TEST(FrameSpares, FramesGoAndComeInTheOrderOfAStack)
{
    FrameSpares spares;
    zorvan::LinkedList<HTML_SOINFO*> frames{};
    EXPECT_EQ(spares.take(), nullptr);
    for (int rounds = 0; rounds < 3; ++rounds) {
        for (std::uint32_t i = 0; i < 200; ++i)
            spares.push(frameOf(spares, i), frames);
        ASSERT_EQ(frames.getCount(), 200);
        ASSERT_EQ(frames.tail->value->handle, 0U);
        for (std::uint32_t i = 200; i-- > 0;) {
            ASSERT_EQ(frames.head->value->handle, i);
            spares.pop(frames);
        }
        EXPECT_TRUE(frames.isEmpty());
        EXPECT_EQ(frames.head, nullptr);
        EXPECT_EQ(frames.tail, nullptr);
    }
}

TEST(FrameSpares, KeepsAFixedNumber)
{
    FrameSpares spares;
    zorvan::LinkedList<HTML_SOINFO*> frames{};
    for (std::uint32_t i = 0; i < 200; ++i)
        spares.push(frameOf(spares, i), frames);
    while (!frames.isEmpty())
        spares.pop(frames);
    int kept = 0;
    while (HTML_SOINFO* frame = spares.take()) {
        delete frame;
        ++kept;
    }
    EXPECT_EQ(kept, 64);
}

TEST(FrameSpares, PushWithoutALinkAllocatesOne)
{
    FrameSpares spares;
    zorvan::LinkedList<HTML_SOINFO*> frames{};
    HTML_SOINFO* const frame = frameOf(spares, 1);
    zorvan::failNthAllocation(1);
    EXPECT_THROW(spares.push(frame, frames), std::bad_alloc);
    zorvan::clearAllocationFailure();
    EXPECT_TRUE(frames.isEmpty());
    spares.push(frame, frames);
    spares.pop(frames);
    zorvan::failNthAllocation(1);
    spares.push(frameOf(spares, 2), frames);
    zorvan::clearAllocationFailure();
    EXPECT_EQ(frames.head->value, frame);
    spares.pop(frames);
}

TEST(FrameSpares, AFrameThatCameFromASpareOneIsAsNew)
{
    OutputContext document;
    FramePointer frame = makeFrame(document.context);
    HTML_SOINFO* const first = frame.get();
    frame->alignment = 3;
    frame->leftIndentPx = 7;
    pushFrame(
        std::move(frame), *document.element(document.tree.root(), ELEMENT_P), document.context);
    popFrame(document.context);
    frame = makeFrame(document.context);
    EXPECT_EQ(frame.get(), first);
    EXPECT_EQ(frame->alignment, 0U);
    EXPECT_EQ(frame->leftIndentPx, 0);
    EXPECT_EQ(frame->undoList, nullptr);
}

TEST(FrameSpares, NoMemoryForTheSparesIsNoMemoryForAFrame)
{
    OutputContext document;
    document.context.internals->frameSpares.reset();
    for (std::uint32_t n = 1; n <= 2; ++n) {
        document.context.statusFlags = 0;
        zorvan::failNthAllocation(n);
        EXPECT_EQ(makeFrame(document.context), nullptr);
        zorvan::clearAllocationFailure();
        EXPECT_EQ(document.context.statusFlags, STATUS_OUT_OF_MEMORY);
    }
}

} // namespace
