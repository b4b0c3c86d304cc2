#pragma once

#include "filter/entry_table.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {

/// A module that can't be loaded, or that answers wrongly. The text names the module and says why.
class ModuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the exception at hand says, for a message; to be called within its handler. The text is a
/// copy, good when the module that threw is gone.
std::string describeThrown();

/// The entry points of a module, as types.
struct EntryPoints {
    VwStreamOpenEntry streamOpen = nullptr;
    VwStreamSectionEntry streamSection = nullptr;
    VwStreamReadEntry streamRead = nullptr;
    VwStreamTellEntry streamTell = nullptr;
    VwStreamSeekEntry streamSeek = nullptr;
    VwGetInfoEntry getInfo = nullptr;
    VwGetDataEntry getData = nullptr;
    VwSetDataEntry setData = nullptr;
    VwLocalUpEntry localUp = nullptr;
    VwLocalDownEntry localDown = nullptr;
    VwAllocProcEntry allocProc = nullptr;
    VwFreeProcEntry freeProc = nullptr;
    VwSetUserEntry setUser = nullptr;
    VwSetSoRtnEntry setSoRtn = nullptr;
    VwStreamCloseEntry streamClose = nullptr;
};

/// A loaded and checked filter module; it is unloaded with the object.
class Module {
public:
    /// Loads the module and asks it for its entry points, its file types and its byte order. path:
    /// a file, never looked up along a search path. Throws ModuleError.
    explicit Module(const std::string& path);
    ~Module() = default;
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    const std::string& path() const { return path_; }
    const EntryPoints& entry() const { return entry_; }
    /// The file types that the module accepts, in its order; at least one.
    const std::vector<std::uint16_t>& fileTypes() const { return fileTypes_; }
    bool acceptsFileType(std::uint16_t fileType) const;
    /// Asks VwGetInfo; false when the module does not answer the code. Throws ModuleError when it
    /// throws.
    bool info(void* result, std::uint16_t code) const;
    /// Throws ModuleError that tells what a module's entry point has thrown.
    [[noreturn]] void failForThrown(const std::string& thrown) const;

private:
    void fillTable(FilterEntryTable& table) const;
    void fillEntryPoints();
    void checkAnswers();
    [[noreturn]] void fail(const std::string& reason) const;

    std::string path_;
    struct Unload {
        void operator()(void* library) const;
    };
    std::unique_ptr<void, Unload> library_;
    EntryPoints entry_;
    std::vector<std::uint16_t> fileTypes_;
};

} // namespace host
