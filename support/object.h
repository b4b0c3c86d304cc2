#pragma once

#include "support/export.h"

#include <cstdint>

namespace zorvan {

class String;

/// The root of the class tree: whatever derives from it can be deleted through it.
class ZV_EXPORT AbstractObject {
public:
    AbstractObject() = default;
    AbstractObject(const AbstractObject&) = default;
    AbstractObject& operator=(const AbstractObject&) = default;
    virtual ~AbstractObject();
};

/// An object with an identity: equal to itself only, unless a class overrides that.
class ZV_EXPORT Object : public virtual AbstractObject {
public:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
    ~Object() override;

    /// A number that equal objects share; by default one of the object's identity.
    virtual std::uint32_t hashCode() const;

    virtual bool equals(const Object& other) const;

    /// A text of the object, which the object keeps. By default empty.
    virtual const String& toString() const;
};

/// A second root of the same shape, for pairs.
class ZV_EXPORT Object2 : public virtual AbstractObject {
public:
    Object2() = default;
    Object2(const Object2&) = default;
    Object2& operator=(const Object2&) = default;
    ~Object2() override;

    virtual std::uint32_t hashCode() const;
    virtual bool equals(const Object2& other) const;
    virtual const String& toString() const;
};

/// What Smoothsort can put in order.
class ZV_EXPORT Comparable {
public:
    Comparable() = default;
    Comparable(const Comparable&) = default;
    Comparable& operator=(const Comparable&) = default;
    virtual ~Comparable();

    /// Negative when this one comes first, 0 when both are equal, positive when `other` comes
    /// first.
    virtual std::int32_t compareTo(const Comparable& other) const = 0;
};

} // namespace zorvan
