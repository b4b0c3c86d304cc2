#pragma once

#include "host/session.h"

#include <vector>

namespace host {

/// Sets options of the engine, which all documents of the process see, and drops them at its end.
/// They must stand before a conversion begins and no other conversion may run beside it.
class GlobalOptionScope {
public:
    /// Throws std::bad_alloc.
    explicit GlobalOptionScope(const std::vector<OptionValue>& options);
    ~GlobalOptionScope();
    GlobalOptionScope(const GlobalOptionScope&) = delete;
    GlobalOptionScope& operator=(const GlobalOptionScope&) = delete;

private:
    void dropAll() const;

    std::vector<OptionValue> options_;
};

} // namespace host
