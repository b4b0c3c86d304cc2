#include "host/cli/descriptors.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace host::cli {

namespace {

    void await(int file, short event)
    {
        pollfd wanted = {file, event, 0};
        // A failed wait is no matter: what is tried again then tells what is wrong.
        ::poll(&wanted, 1, /*timeout=*/-1);
    }

} // namespace

void holdStandardStreams()
{
    // Ascending, so that each call gives the number that is missing.
    for (int file = STDIN_FILENO; file <= STDERR_FILENO; ++file) {
        if (::fcntl(file, F_GETFD) == -1 && errno == EBADF)
            static_cast<void>(::open("/dev/null", file == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
}

int copyDescriptor(int file) { return ::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1); }

void awaitReadable(int file) { await(file, POLLIN); }

void awaitWritable(int file) { await(file, POLLOUT); }

} // namespace host::cli
