#include "containers/failures.h"

#include "support/exception.h"

#include <new>

namespace zorvan {

void throwContainerFailure(std::uint32_t code, const char* message)
{
    throw Exception(code, message, nullptr, nullptr, 0);
}

void throwOutOfStorage() { throw std::bad_alloc(); }

} // namespace zorvan
