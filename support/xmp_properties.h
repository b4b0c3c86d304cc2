#pragma once

#include "support/export.h"

/// Delivers the document properties of an XMP packet through the host's routines. io: the opened
/// substream with the packet. soRoutines: the table of output routines, by routine id minus 1; both
/// user words go to every routine as its last arguments.
ZV_EXPORT void XMPSPutDocPropsImp(
    void* io, void* const* soRoutines, void* userData1, void* userData2);
