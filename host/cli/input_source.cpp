#include "host/cli/input_source.h"

#include "host/cli/descriptors.h"
#include "host/cli/errors.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace host::cli {

namespace {

    constexpr std::size_t kPieceSize = 256 * 1024;

    /// An open file, closed with the object.
    struct OpenFile {
        explicit OpenFile(int descriptor)
            : number(descriptor)
        {
        }
        ~OpenFile()
        {
            if (number >= 0)
                ::close(number);
        }
        OpenFile(const OpenFile&) = delete;
        OpenFile& operator=(const OpenFile&) = delete;
        int release() { return std::exchange(number, -1); }

        int number;
    };

    [[noreturn]] void failToRead(const std::string& shown)
    {
        throw BadUse("cannot read " + shown + ": " + std::strerror(errno));
    }

    [[noreturn]] void failForSize(const std::string& shown)
    {
        throw BadUse(shown + " has more than " + std::to_string(kLongestDocument)
            + " bytes, which 32-bit positions cannot address");
    }

    std::string readWhole(int file, const std::string& shown)
    {
        std::string bytes;
        std::size_t used = 0;
        for (;;) {
            if (bytes.size() - used < kPieceSize)
                bytes.resize(bytes.size() + std::max(kPieceSize, bytes.size() / 2));
            const ssize_t got = ::read(file, bytes.data() + used, bytes.size() - used);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0 && errno == EAGAIN) {
                awaitReadable(file);
                continue;
            }
            if (got < 0)
                failToRead(shown);
            used += static_cast<std::size_t>(got);
            if (used > kLongestDocument)
                failForSize(shown);
            if (got == 0)
                break;
        }
        bytes.resize(used);
        return bytes;
    }

    bool isStandardInput(const std::string& name) { return name.empty() || name == "-"; }

    std::string shownInput(const std::string& name)
    {
        return isStandardInput(name) ? "standard input" : "'" + name + "'";
    }

    bool standsAtStart(int file) { return ::lseek(file, 0, SEEK_CUR) == 0; }

} // namespace

std::unique_ptr<DocumentStream> openInput(const std::string& name)
{
    const std::string shown = shownInput(name);
    OpenFile file(isStandardInput(name) ? copyDescriptor(STDIN_FILENO)
                                        : ::open(name.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status = {};
    if (file.number < 0 || ::fstat(file.number, &status) != 0)
        failToRead(shown);
    if (S_ISDIR(status.st_mode))
        throw BadUse("cannot read " + shown + ": it is a directory");
    // A file of the system that tells no size is read like a pipe.
    if (S_ISREG(status.st_mode) && status.st_size > 0 && standsAtStart(file.number)) {
        const auto size = static_cast<std::uint64_t>(status.st_size);
        if (size > kLongestDocument)
            failForSize(shown);
        return std::make_unique<FileStream>(file.release(), size);
    }
    return std::make_unique<MemoryStream>(readWhole(file.number, shown));
}

Outcome convertInput(const Module& module, DocumentStream& input, const std::string& name,
    const ConversionOptions& options, HostSink& sink)
{
    try {
        return convert(module, input, options, sink);
    } catch (const ReadError& error) {
        throw BadUse("cannot read " + shownInput(name) + ": " + error.what());
    }
}

} // namespace host::cli
