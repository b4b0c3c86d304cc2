#include "filter/entry_points.h"

namespace {

constexpr std::uint16_t kNoPosition = 0xFFFF;

} // namespace

// STAND-IN: positions can be neither taken nor restored; both answer what a failed seek answers.
std::uint16_t VwStreamTell(StreamBlock*, HtmlFilterContext*) { return kNoPosition; }

std::uint16_t VwStreamSeek(StreamBlock*, HtmlFilterContext*) { return kNoPosition; }
