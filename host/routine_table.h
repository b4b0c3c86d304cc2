#pragma once

#include "host/host_sink.h"
#include "host/module.h"

#include <cstdint>
#include <exception>
#include <string>

namespace host {

/// Thrown through the filter when it calls SOAbandonFilter, which is not expected to return.
struct AbandonError {
    std::uint32_t code; ///< an ABANDON_ code
};

/// The first handles that the host gives; each kind counts on its own.
constexpr std::uint32_t kFirstString = 1;
constexpr std::uint32_t kFirstReference = 1;
constexpr std::uint32_t kFirstRow = 100'001;
constexpr std::uint32_t kFirstCell = 200'001;

/// The state behind the routines of one document; the filter passes its address back as userData1.
struct HostSession {
    HostSink& sink; ///< borrowed for the conversion
    std::uint32_t stopEvery = 0; ///< every so many calls SOEmitBreak answers 1; 0 for never
    std::uint64_t calls = 0; ///< routines called so far
    std::uint64_t breaks = 0; ///< calls of SOEmitBreak so far
    bool documentEnded = false; ///< the break of kind BREAK_DOCUMENT has come
    std::uint32_t nextString = kFirstString;
    std::uint32_t nextReference = kFirstReference;
    std::uint32_t nextRow = kFirstRow;
    std::uint32_t nextCell = kFirstCell;
    std::exception_ptr failure = nullptr; ///< what a routine of the host threw first; null for none
    std::u16string reserved = {}; ///< the buffer of SOReserveChars
};

/// Installs all routines of the host and the session in an open context.
void installRoutines(const Module& module, HostSession& session, HtmlFilterContext* context);

} // namespace host
