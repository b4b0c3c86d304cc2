#include "host/cli/module_path.h"

#include "host/cli/errors.h"

#include <filesystem>

namespace host::cli {

namespace {

    constexpr char kModuleName[] = "htmlfilter.so";

} // namespace

std::string findModule(const std::string& named)
{
    if (!named.empty())
        return named;
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error)
        throw BadUse("cannot tell where the program stands; name the module by --module PATH");
    const auto folder = program.parent_path();
    const auto beside = folder / kModuleName;
    if (std::filesystem::exists(beside, error))
        return beside.string();
    const auto installed = folder.parent_path() / "lib" / "htmlfilter" / kModuleName;
    if (std::filesystem::exists(installed, error))
        return installed.string();
    throw BadUse("no filter module: neither '" + beside.string() + "' nor '" + installed.string()
        + "' is there; name it by --module PATH");
}

} // namespace host::cli
