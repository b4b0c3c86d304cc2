#include "host/cli/output_file.h"

#include "host/cli/descriptors.h"
#include "host/cli/errors.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace host::cli {

namespace {

    constexpr mode_t kNewFileMode = 0666;
    constexpr mode_t kModeBits = 07777;

    std::string folderOf(const std::string& place)
    {
        const std::string folder = std::filesystem::path(place).parent_path().string();
        return folder.empty() ? "." : folder;
    }

    /// The file that a name stands for. A link stays one and its file is written, also when that is
    /// not there yet: so does whoever opens the link for writing.
    std::string behindLinks(const std::string& name)
    {
        constexpr int kMostLinks = 40;
        std::filesystem::path place = name;
        std::error_code error;
        for (int links = 0; links < kMostLinks; ++links) {
            const auto target = std::filesystem::read_symlink(place, error);
            if (error)
                break;
            place = place.parent_path() / target;
        }
        return place.string();
    }

    std::string besideName(const std::string& place)
    {
        return place + ".part" + std::to_string(::getpid());
    }

} // namespace

OutputFile::OutputFile(const std::string& name)
    : shown_("'" + name + "'")
{
    if (name.empty() || name == "-") {
        shown_ = "standard output";
        file_ = STDOUT_FILENO;
        return;
    }
    owned_ = true;
    struct stat status = {};
    const bool exists = ::stat(name.c_str(), &status) == 0;
    if (!exists && errno == ELOOP)
        fail();
    if (exists && S_ISDIR(status.st_mode))
        throw BadUse("cannot write " + shown_ + ": it is a directory");
    if (exists && !S_ISREG(status.st_mode)) {
        file_ = ::open(name.c_str(), O_WRONLY | O_CLOEXEC);
        if (file_ < 0)
            fail();
        return;
    }
    if (exists && ::access(name.c_str(), W_OK) != 0)
        fail();
    place_ = behindLinks(name);
    openBeside();
    if (exists)
        ::fchmod(file_, status.st_mode & kModeBits);
}

OutputFile::~OutputFile()
{
    if (owned_ && file_ >= 0)
        ::close(file_);
    if (!temporary_.empty())
        ::unlink(temporary_.c_str());
}

// A file without a name vanishes with the process, however that ends; not every file system has it.
void OutputFile::openBeside()
{
    file_ = ::open(folderOf(place_).c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, kNewFileMode);
    if (file_ >= 0)
        return;
    const std::string name = besideName(place_);
    file_ = ::open(name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, kNewFileMode);
    if (file_ < 0)
        fail();
    temporary_ = name;
}

void OutputFile::fail() const
{
    if (errno == EPIPE)
        throw ClosedPipe();
    throw BadUse("cannot write " + shown_ + ": " + std::strerror(errno));
}

void OutputFile::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file_, bytes.data(), bytes.size());
        if (written >= 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
        else if (errno == EAGAIN)
            awaitWritable(file_);
        else if (errno != EINTR)
            fail();
    }
}

void OutputFile::commit()
{
    if (place_.empty())
        return;
    if (temporary_.empty()) {
        const std::string self = "/proc/self/fd/" + std::to_string(file_);
        const std::string name = besideName(place_);
        if (::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0)
            fail();
        temporary_ = name;
    }
    const int file = file_;
    file_ = -1;
    if (::close(file) != 0)
        fail();
    if (std::rename(temporary_.c_str(), place_.c_str()) != 0)
        fail();
    temporary_.clear();
}

} // namespace host::cli
