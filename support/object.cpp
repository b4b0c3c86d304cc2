#include "support/object.h"

#include "support/zv_string.h"

#include <cstdint>

namespace {

/// The address folded to 32 bits, without the three bits that are 0 in all of them. An object may
/// be a lone pointer to its class, so neighbors lie 8 bytes apart and no further bit can go. Far
/// apart two objects may have the same number.
std::uint32_t identityHash(const void* object)
{
    const auto address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(object)) >> 3;
    return static_cast<std::uint32_t>(address ^ (address >> 32));
}

const zorvan::String& emptyString()
{
    static const zorvan::String empty;
    return empty;
}

} // namespace

namespace zorvan {

AbstractObject::~AbstractObject() = default;

Object::~Object() = default;

std::uint32_t Object::hashCode() const { return identityHash(this); }

bool Object::equals(const Object& other) const { return this == &other; }

const String& Object::toString() const { return emptyString(); }

Object2::~Object2() = default;

std::uint32_t Object2::hashCode() const { return identityHash(this); }

bool Object2::equals(const Object2& other) const { return this == &other; }

const String& Object2::toString() const { return emptyString(); }

Comparable::~Comparable() = default;

} // namespace zorvan
