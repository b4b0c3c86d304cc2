#include "support/bail_out.h"

#include "support/exception.h"

void UTBailOutEx(std::uint32_t code, std::uint32_t first, std::uint32_t second)
{
    throw UTBailOut(code, first, second);
}
