#include "output/frame_spares.h"

#include "filter/filter_internals.h"
#include "output/tree_walk.h"
#include "support/process_heap.h"

FrameSpares::~FrameSpares()
{
    while (count_ > 0)
        delete frames_[--count_];
    links_.clear();
}

void FrameSpares::push(HTML_SOINFO* frame, zorvan::LinkedList<HTML_SOINFO*>& frames)
{
    if (links_.isEmpty()) {
        frames.push(frame);
        return;
    }
    links_.head->value = frame;
    links_.moveHeadTo(frames);
}

void FrameSpares::pop(zorvan::LinkedList<HTML_SOINFO*>& frames)
{
    if (count_ == kMostFrames) {
        delete frames.pop();
        return;
    }
    frames_[count_++] = frames.head->value;
    if (links_.getCount() == kMostFrames)
        frames.pop();
    else
        frames.moveHeadTo(links_);
}

FrameSpares* frameSparesOf(HtmlFilterContext& context)
{
    auto& spares = context.internals->frameSpares;
    if (spares == nullptr) {
        FrameSpares* const made = zorvan::newObject<FrameSpares>();
        spares = {made, [](FrameSpares* old) { delete old; }};
    }
    return spares.get();
}
