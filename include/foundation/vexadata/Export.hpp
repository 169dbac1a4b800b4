// What leaves the shared library: everything is hidden but what carries this mark.
#pragma once

/// Marks a class, function or variable as part of the library's binary interface.
#define VEXADATA_API __attribute__((visibility("default")))

/// A function that must disappear into its caller. Element handles and iterators are built anew at every
/// step; when one of these calls stays, compilers keep the object in memory at that step, because a call has
/// seen its address. Compilers' own judgement does not suffice: without the mark at the making of iterators,
/// g++ 12
/// -O2 takes 1.4 times as long for an in-place transform. For functions where a benchmark shows the
/// difference; the others are left to the compiler.
#define VEXADATA_INLINE [[gnu::always_inline]]
