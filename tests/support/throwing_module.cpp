// A module as a host loads it: what it throws has to be caught by type on the other side.

#include "support/bail_out.h"
#include "support/engine_options.h"
#include "support/exception.h"

extern "C" ZV_EXPORT void throwException()
{
    throw zorvan::Exception(137, "ArrayList.get(): invalid parameter", nullptr, nullptr, 0);
}

extern "C" ZV_EXPORT void throwBailOut() { UTBailOutEx(0x105, 1, 2); }

extern "C" ZV_EXPORT int readGlobalOption(uint32_t id, void* value, uint32_t size)
{
    return UTGetGlobalOption(id, value, size);
}

extern "C" ZV_EXPORT int readOption(void* handle, uint32_t id, void* value, uint32_t size)
{
    return UTGetOption(handle, id, value, size);
}
