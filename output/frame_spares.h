#pragma once

#include "containers/linked_list.h"
#include "filter/html_filter_context.h"

#include <cstdint>

struct HTML_SOINFO;

/// Frames of the walk that have been popped, kept with their links for the next element. A document
/// has one, which goes at close; however deep it is nested, a fixed number of frames is kept.
class FrameSpares {
public:
    FrameSpares() = default;
    FrameSpares(const FrameSpares&) = delete;
    FrameSpares& operator=(const FrameSpares&) = delete;
    ~FrameSpares();

    /// A frame in which anything may stand; null when none is left. The caller owns it.
    HTML_SOINFO* take() { return count_ > 0 ? frames_[--count_] : nullptr; }

    /// Puts a frame on a list, which owns it then. Throws std::bad_alloc; the frame is still the
    /// caller's then.
    void push(HTML_SOINFO* frame, zorvan::LinkedList<HTML_SOINFO*>& frames);

    /// Takes the newest frame, which must be there and have no undo list, off a list.
    void pop(zorvan::LinkedList<HTML_SOINFO*>& frames);

private:
    static constexpr std::int32_t kMostFrames = 64;

    HTML_SOINFO* frames_[kMostFrames] = {}; // owned
    std::int32_t count_ = 0;
    zorvan::LinkedList<HTML_SOINFO*> links_ = {}; // owned; what they point at counts for nothing
};

/// The spares of a document, made at the first call; null when there is no memory.
FrameSpares* frameSparesOf(HtmlFilterContext& context);
