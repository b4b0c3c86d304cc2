#include "host/module.h"

#include "support/exception.h"

#include <algorithm>
#include <dlfcn.h>

namespace host {

namespace {

    /// What dlopen can't mistake for a name to be looked up along the library path.
    std::string asFilePath(const std::string& path)
    {
        return path.find('/') == std::string::npos ? "./" + path : path;
    }

    /// Takes a slot as the entry point that it holds; false when the module left the slot empty.
    template <typename Entry> bool takeSlot(Entry& entry, const FilterEntryTable& table, int slot)
    {
        entry = reinterpret_cast<Entry>(table.slots[slot]);
        return entry != nullptr;
    }

    // A module of another make may have more file types than are expected: a count of 16 bits can't
    // pass this.
    constexpr std::size_t kFileTypeCapacity = 0x10000;

} // namespace

std::string describeThrown()
{
    try {
        throw;
    } catch (const zorvan::Exception& exception) {
        const char* message = exception.message();
        return "exception " + std::to_string(exception.code())
            + (message == nullptr ? "" : ": " + std::string(message));
    } catch (const UTBailOut& bailOut) {
        return "bail-out " + std::to_string(bailOut.code);
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "something unknown";
    }
}

void Module::Unload::operator()(void* library) const { dlclose(library); }

Module::Module(const std::string& path)
    : path_(path)
{
    library_.reset(dlopen(asFilePath(path).c_str(), RTLD_NOW | RTLD_LOCAL));
    if (library_ == nullptr) {
        const char* reason = dlerror();
        throw ModuleError("cannot load module '" + path
            + "': " + (reason == nullptr ? "no reason given" : reason));
    }
    fillEntryPoints();
    checkAnswers();
}

bool Module::acceptsFileType(std::uint16_t fileType) const
{
    return std::find(fileTypes_.begin(), fileTypes_.end(), fileType) != fileTypes_.end();
}

void Module::fail(const std::string& reason) const
{
    throw ModuleError("module '" + path_ + "' " + reason);
}

void Module::failForThrown(const std::string& thrown) const
{
    fail("answers wrongly: it threw " + thrown);
}

// The handler ends, and the exception with it, while the module that it may belong to is loaded.
bool Module::info(void* result, std::uint16_t code) const
{
    std::string thrown;
    try {
        return entry_.getInfo(result, code) == 1;
    } catch (...) {
        thrown = describeThrown();
    }
    failForThrown(thrown);
}

void Module::fillTable(FilterEntryTable& table) const
{
    const auto getRtns = reinterpret_cast<VwGetRtnsEntry>(dlsym(library_.get(), "VwGetRtns"));
    if (getRtns == nullptr)
        fail("is no filter: it has no VwGetRtns");
    std::string thrown;
    try {
        getRtns(table.slots, FILTER_TABLE_GENERATION);
        return;
    } catch (...) {
        thrown = describeThrown();
    }
    failForThrown(thrown);
}

void Module::fillEntryPoints()
{
    FilterEntryTable table = {};
    fillTable(table);
    const bool complete = takeSlot(entry_.streamOpen, table, SLOT_STREAM_OPEN)
        && takeSlot(entry_.streamSection, table, SLOT_STREAM_SECTION)
        && takeSlot(entry_.streamRead, table, SLOT_STREAM_READ)
        && takeSlot(entry_.streamTell, table, SLOT_STREAM_TELL)
        && takeSlot(entry_.streamSeek, table, SLOT_STREAM_SEEK)
        && takeSlot(entry_.getInfo, table, SLOT_GET_INFO)
        && takeSlot(entry_.getData, table, SLOT_GET_DATA)
        && takeSlot(entry_.setData, table, SLOT_SET_DATA)
        && takeSlot(entry_.localUp, table, SLOT_LOCAL_UP)
        && takeSlot(entry_.localDown, table, SLOT_LOCAL_DOWN)
        && takeSlot(entry_.allocProc, table, SLOT_ALLOC_PROC)
        && takeSlot(entry_.freeProc, table, SLOT_FREE_PROC)
        && takeSlot(entry_.setUser, table, SLOT_SET_USER)
        && takeSlot(entry_.setSoRtn, table, SLOT_SET_SO_RTN)
        && takeSlot(entry_.streamClose, table, SLOT_STREAM_CLOSE);
    if (!complete)
        fail("answers wrongly: its entry table has gaps");
}

void Module::checkAnswers()
{
    std::uint32_t probe = 0;
    if (!info(&probe, INFO_BYTE_ORDER) || probe != INFO_BYTE_ORDER_PROBE)
        fail("answers wrongly: its byte order is not this machine's");
    std::uint16_t count = 0;
    if (!info(&count, INFO_FILE_TYPE_COUNT) || count == 0)
        fail("answers wrongly: it has no file types");
    fileTypes_.assign(kFileTypeCapacity, 0);
    if (!info(fileTypes_.data(), INFO_FILE_TYPES))
        fail("answers wrongly: it does not tell its file types");
    fileTypes_.resize(count);
    fileTypes_.shrink_to_fit();
}

} // namespace host
