#pragma once

#include "filter/entry_table.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace host {

/// The longest document: positions in it are 32-bit words, and 0xFFFFFFFF means the end.
constexpr std::uint64_t kLongestDocument = 0xFFFFFFFE;

/// A read of a document failed, which the filter can't tell from its end: what it made of the
/// document is half of it. The text is the system's.
class ReadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A document as the filter reads it: the C operations over bytes that a derived class supplies.
/// Offers 64-bit positions, and makes streams of ranges of itself, which belong to it until the
/// filter closes them.
class DocumentStream : public ::HostStream {
public:
    virtual ~DocumentStream();
    DocumentStream(const DocumentStream&) = delete;
    DocumentStream& operator=(const DocumentStream&) = delete;

    /// Bytes of the document.
    std::uint64_t size() const { return size_; }
    /// Range streams that the filter has opened and not closed.
    std::size_t openRanges() const { return ranges_.size(); }
    /// The errno of the first read that failed, in the document or a range of it; 0 when none did.
    int readFailure() const { return readFailure_; }

    /// Reads up to `size` bytes from a position, which may lie behind the end, and tells how many
    /// came; 0 is the end. Answers false, and sets errno, when reading fails.
    virtual bool readAt(
        std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t& count)
        = 0;

protected:
    explicit DocumentStream(std::uint64_t size);

private:
    friend struct StreamCalls;

    std::uint64_t size_;
    std::uint64_t position_ = 0;
    int readFailure_ = 0;
    DocumentStream* parent_ = nullptr; // borrowed; null for a whole document
    std::vector<std::unique_ptr<DocumentStream>> ranges_;
};

/// A document in memory.
class MemoryStream : public DocumentStream {
public:
    explicit MemoryStream(std::string bytes);
    bool readAt(
        std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t& count) override;

private:
    std::string bytes_;
};

/// A document in a regular file.
class FileStream : public DocumentStream {
public:
    /// file: an open descriptor, closed with the object. size: its bytes.
    FileStream(int file, std::uint64_t size);
    ~FileStream() override;
    bool readAt(
        std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t& count) override;

private:
    int file_;
};

} // namespace host
