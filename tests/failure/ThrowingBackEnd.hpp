// The embedded back-end behind wrappers, each of whose operations can be made to throw: those of arrays,
// objects and classes, of iterators and of element references.
#pragma once

#include <foundation/vexadata/ArrayFactory.hpp>

#include <cstddef>

namespace failure {

/// What fails: an operation, by throwing; a query that must not throw, by throwing all the same; an operation
/// that gives a pointer, by giving null.
enum class Failing { operation, query, result };

enum class Thrown { libraryError, standardError, foreignType };

/// An error that no interface knows.
struct Foreign {};

/// A factory over the embedded back-end.
foundation::vexadata::ArrayFactory throwingFactory();

/// From now on, step number `number` (1 is the next one) of those that may fail so fails, once.
void failAt(std::size_t number, Failing failing, Thrown thrown = Thrown::libraryError) noexcept;
void failNothing() noexcept;
/// Whether the failure asked for has happened.
bool hasFailed() noexcept;

} // namespace failure
