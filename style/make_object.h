#pragma once

#include "containers/failures.h"
#include "support/process_heap.h"

#include <memory>
#include <utility>

/// A new object. Throws std::bad_alloc when there is no memory for it.
template <class T, class... Arguments> std::unique_ptr<T> makeObject(Arguments&&... arguments)
{
    std::unique_ptr<T> made(zorvan::newObject<T>(std::forward<Arguments>(arguments)...));
    if (made == nullptr)
        zorvan::throwOutOfStorage();
    return made;
}
