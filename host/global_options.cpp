#include "host/global_options.h"

#include "support/engine_options.h"

#include <new>

namespace host {

GlobalOptionScope::GlobalOptionScope(const std::vector<OptionValue>& options)
    : options_(options)
{
    for (const OptionValue& option : options_) {
        if (UTSetGlobalOption(option.id, &option.value, sizeof option.value) != 0) {
            dropAll();
            throw std::bad_alloc();
        }
    }
}

GlobalOptionScope::~GlobalOptionScope() { dropAll(); }

void GlobalOptionScope::dropAll() const
{
    for (const OptionValue& option : options_)
        UTSetGlobalOption(option.id, nullptr, 0);
}

} // namespace host
