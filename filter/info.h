#pragma once

#include <cstdint>

/// The type byte of every row of the file type table.
constexpr std::uint8_t kFileTypeKind = 120;

/// A file type that the filter accepts.
struct FileType {
    std::uint16_t id;
    std::uint8_t kind; ///< kFileTypeKind
    char name[33]; ///< zero-terminated
};

/// The row whose name is told to every host, whatever the type of its file is.
const FileType& firstFileType();
