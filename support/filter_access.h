#pragma once

#include "support/export.h"

/// Moves the engine's access context from the caller of the embedded interface to the filter and
/// answers the filter's context: the first word of the host access area, which the caller has set.
/// routines: the caller's routine area; nothing of it is needed. Null for a null area.
ZV_EXPORT void* FASwitchFilterContext(void* hostArea, void* routines);
