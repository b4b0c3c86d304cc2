#include "support/filter_access.h"

void* FASwitchFilterContext(void* hostArea, void*)
{
    return hostArea == nullptr ? nullptr : *static_cast<void**>(hostArea);
}
