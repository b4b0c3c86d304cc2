#pragma once

#include "host/host_sink.h"
#include "host/session.h"
#include "host/trace_sink.h"

#include <dlfcn.h>

#include <sstream>
#include <string>
#include <vector>

namespace host_test {

/// The file of a fake module (fake_module.cpp). fault: empty for the one that behaves.
inline std::string fakeModulePath(const std::string& fault = "")
{
    return std::string(HTMLFILTER_BINARY_DIR) + "/fake_module" + fault + ".so";
}

/// What the fake module has opened, allocated and not given back; the module must be loaded.
inline int fakeLiveDocuments()
{
    void* library = dlopen(fakeModulePath().c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (library == nullptr)
        return 0;
    const auto count = reinterpret_cast<int (*)()>(dlsym(library, "fakeLiveDocuments"));
    const int live = count();
    dlclose(library);
    return live;
}

inline std::vector<std::string> splitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

/// The trace of a document that the fake module plays.
inline std::vector<std::string> fakeTrace(
    const std::string& document, const host::ConversionOptions& options = {})
{
    const host::Module module(fakeModulePath());
    host::MemoryStream stream(document);
    host::StringWriter writer;
    host::TraceSink sink(writer);
    host::convert(module, stream, options, sink);
    return splitLines(writer.text);
}

} // namespace host_test
