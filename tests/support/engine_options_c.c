/* Proves that hosts in C can include the header and use what it declares. */

#include "support/engine_options.h"

#include <string.h>

int engineOptionsFromC(void (*thrower)(void*), void* argument);

int engineOptionsFromC(void (*thrower)(void*), void* argument)
{
    uint32_t value = 7;
    uint32_t read = 0;
    int handle = 0;
    UTFailure failure;
    if (UTSetOption(&handle, 0x52B6A, &value, sizeof value) != 0)
        return 1;
    if (UTGetOption(&handle, 0x52B6A, &read, sizeof read) != 0 || read != 7)
        return 2;
    UTFreeOptions(&handle);
    if (UTGetOption(&handle, 0x52B6A, &read, sizeof read) == 0)
        return 3;
    if (UTSetGlobalOption(1000, &value, sizeof value) != 0)
        return 4;
    if (UTGetGlobalOption(1000, &read, sizeof read) != 0 || UTSetGlobalOption(1000, NULL, 0) != 0)
        return 5;
    if (UTGuardedCall(thrower, argument, &failure) != UT_FAILURE_EXCEPTION)
        return 6;
    if (failure.code != 137 || strcmp(failure.message, "text") != 0)
        return 7;
    return 0;
}
