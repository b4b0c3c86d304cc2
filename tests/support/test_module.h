#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

/// The module of throwing_module.cpp, loaded with local binding for the life of the object.
class TestModule {
public:
    TestModule()
        : handle_(
            dlopen(HTMLFILTER_BINARY_DIR "/support_throwing_module.so", RTLD_NOW | RTLD_LOCAL))
    {
        if (handle_ == nullptr)
            ADD_FAILURE() << dlerror();
    }
    TestModule(const TestModule&) = delete;
    TestModule& operator=(const TestModule&) = delete;
    ~TestModule()
    {
        if (handle_ != nullptr)
            dlclose(handle_);
    }

    template <class Function> Function* function(const char* name) const
    {
        return reinterpret_cast<Function*>(dlsym(handle_, name));
    }

private:
    void* handle_;
};
