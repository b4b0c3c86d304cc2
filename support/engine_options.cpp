#include "support/engine_options.h"

#include "support/exception.h"

#include <cxxabi.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <shared_mutex>
#include <utility>

namespace {

constexpr std::uint32_t CODE_NO_MEMORY = 13;

struct OptionValue {
    std::unique_ptr<unsigned char[]> bytes;
    std::uint32_t size = 0;
};

/// Handle and id; the engine's own options stand under the handle 0.
using OptionKey = std::pair<std::uintptr_t, std::uint32_t>;

/// The options of the engine and of all documents: the one state that the process shares.
class OptionStore {
public:
    static OptionStore& instance()
    {
        // Never destroyed: a host may free the options of a handle as late as it likes.
        alignas(OptionStore) static std::byte place[sizeof(OptionStore)];
        static OptionStore& store = *new (place) OptionStore;
        return store;
    }

    int set(OptionKey key, const void* value, std::uint32_t size)
    {
        if (value == nullptr && size != 0)
            return 1;
        if (value == nullptr) {
            const std::unique_lock lock(mutex_);
            options_.erase(key);
            return 0;
        }
        OptionValue copy{std::unique_ptr<unsigned char[]>(new unsigned char[size]), size};
        std::memcpy(copy.bytes.get(), value, size);
        const std::unique_lock lock(mutex_);
        options_[key] = std::move(copy);
        return 0;
    }

    int get(OptionKey key, void* value, std::uint32_t size) const
    {
        const std::shared_lock lock(mutex_);
        const auto found = options_.find(key);
        if (found == options_.end() || found->second.size != size || value == nullptr)
            return 1;
        std::memcpy(value, found->second.bytes.get(), size);
        return 0;
    }

    void free(std::uintptr_t handle)
    {
        const std::unique_lock lock(mutex_);
        const auto first = options_.lower_bound({handle, 0});
        auto last = first;
        while (last != options_.end() && last->first.first == handle)
            ++last;
        options_.erase(first, last);
    }

private:
    mutable std::shared_mutex mutex_;
    std::map<OptionKey, OptionValue> options_;
};

std::uintptr_t handleNumber(const void* handle) { return reinterpret_cast<std::uintptr_t>(handle); }

/// C hosts can't catch, so no memory is a result here like any other.
int setOption(OptionKey key, const void* value, std::uint32_t size)
{
    try {
        return OptionStore::instance().set(key, value, size);
    } catch (const std::bad_alloc&) {
        return 1;
    }
}

int report(UTFailure* failure, std::uint32_t kind, std::uint32_t code, const char* message)
{
    if (failure != nullptr) {
        *failure = UTFailure{kind, code, {}};
        if (message != nullptr)
            std::memcpy(failure->message, message,
                std::min(std::strlen(message), sizeof failure->message - 1));
    }
    return static_cast<int>(kind);
}

} // namespace

int UTSetGlobalOption(uint32_t id, const void* value, uint32_t size)
{
    return setOption({0, id}, value, size);
}

int UTSetOption(void* handle, uint32_t id, const void* value, uint32_t size)
{
    return handle == nullptr ? 1 : setOption({handleNumber(handle), id}, value, size);
}

int UTGetGlobalOption(uint32_t id, void* value, uint32_t size)
{
    return OptionStore::instance().get({0, id}, value, size);
}

int UTGetOption(void* handle, uint32_t id, void* value, uint32_t size)
{
    if (handle == nullptr)
        return 1;
    return OptionStore::instance().get({handleNumber(handle), id}, value, size);
}

void UTFreeOptions(void* handle)
{
    if (handle != nullptr)
        OptionStore::instance().free(handleNumber(handle));
}

int UTGuardedCall(void (*call)(void*), void* argument, UTFailure* failure)
{
    try {
        call(argument);
        return report(failure, UT_FAILURE_NONE, 0, nullptr);
    } catch (const zorvan::Exception& exception) {
        return report(failure, UT_FAILURE_EXCEPTION, exception.code(), exception.message());
    } catch (const UTBailOut& bailOut) {
        return report(failure, UT_FAILURE_BAIL_OUT, bailOut.code, "the filter gave up");
    } catch (const std::bad_alloc&) {
        return report(failure, UT_FAILURE_NO_MEMORY, CODE_NO_MEMORY, "out of memory");
    } catch (const std::exception& exception) {
        return report(failure, UT_FAILURE_OTHER, 0, exception.what());
    } catch (const abi::__forced_unwind&) {
        // A thread that is being cancelled has to go on unwinding.
        throw;
    } catch (...) {
        return report(failure, UT_FAILURE_OTHER, 0, nullptr);
    }
}
