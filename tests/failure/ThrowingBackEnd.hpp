// The embedded back-end behind wrappers, each of whose operations can be made to throw: those of arrays, objects and classes, of
// iterators and of element references.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>

#include <cstddef>

namespace failure {

/// What comes out of a failing operation.
enum class Thrown { libraryError, standardError, foreignType };

/// An error that no interface knows.
struct Foreign {};

/// A factory over the embedded back-end.
foundation::vexadata::ArrayFactory throwingFactory();

/// From now on, operation number `number` (1 is the next one) throws, once.
void throwAt(std::size_t number, Thrown thrown) noexcept;
void throwNothing() noexcept;
/// Whether the failure asked for has happened.
bool hasThrown() noexcept;

} // namespace failure
