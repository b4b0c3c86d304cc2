#pragma once

namespace host::cli {

/// Makes sure that no file which is opened later takes the number of a standard stream that the
/// caller has closed: what is meant for the terminal would go into it. Such a stream stays
/// unusable: reading from it, or writing to it, fails as it would if it were closed.
void holdStandardStreams();

/// A copy of a descriptor that is none of the standard streams, closed with a new program; -1 when
/// there is none to be had.
int copyDescriptor(int file);

/// Waits until a descriptor that has answered EAGAIN can be read.
void awaitReadable(int file);
/// Waits until a descriptor that has answered EAGAIN can be written.
void awaitWritable(int file);

} // namespace host::cli
