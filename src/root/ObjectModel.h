#pragma once

#include <cstdint>
#include <span>

#include "automation/Interface.h"

namespace veldmark {

/// The version of the object model that clients see: that of its type library.
inline constexpr std::uint16_t kModelMajorVersion = 2;
inline constexpr std::uint16_t kModelMinorVersion = 0;

/// The identifier of the type library.
const Identity& LibraryIdentity();

/// The tables of all exported classes, in a fixed order: the root first, then by subsystem.
std::span<const Interface* const> ObjectModel();
/// The enumerations that members and events mention, in the order in which they are first met, and
/// then those that only lend names to numbers.
std::span<const Enumeration* const> Enumerations();
/// The event interfaces of the classes, in the order of the classes.
std::span<const EventInterface* const> EventInterfaces();

/// The class with this identifier; null when there is none.
const Interface* FindClass(const Identity& class_identity);

}  // namespace veldmark
