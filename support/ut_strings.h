#pragma once

#include "support/export.h"

#include <cstdint>

// Texts are zero-terminated; wide means units of 16 bits, narrow bytes. No code page is applied: a
// byte is the unit of the same number. Copies expect room for the text and its terminator.

/// Copies narrow text to wide; answers the destination.
ZV_EXPORT char16_t* UTwsstrcpy(char16_t* destination, const char* source);

/// Copies wide text to narrow, the low byte of each unit, up to the unit 0; answers the
/// destination.
ZV_EXPORT char* UTswstrcpy(char* destination, const char16_t* source);

/// Copies wide text to wide; answers the destination.
ZV_EXPORT char16_t* _UTwstrcpy(char16_t* destination, const char16_t* source);

/// Compares wide text with narrow: 0 when equal, else the sign of the first difference.
ZV_EXPORT int UTwsstrcmp(const char16_t* wide, const char* narrow);

/// The same for the first `count` characters at most.
ZV_EXPORT int UTwsstrncmp(const char16_t* wide, const char* narrow, std::uint32_t count);

/// The first occurrence of `part` in `text`, which for an empty part is `text`; null when there is
/// none.
ZV_EXPORT const char16_t* UTwcsstr(const char16_t* text, const char16_t* part);

/// The first occurrence of the unit, the terminator included; null when there is none.
ZV_EXPORT const char16_t* UTwstrchr(const char16_t* text, char16_t unit);

/// Other than 0 when the byte begins a two-byte character of the character set. charSetId: a host
/// character set identifier; 0 for every byte of a set that has no lead bytes.
ZV_EXPORT int UTIsLeadByte(std::uint32_t charSetId, std::uint8_t byte);
