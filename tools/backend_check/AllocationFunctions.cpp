// The allocation functions of this program, so that back-ends run out of memory when they are told to.
#include <vexa/testing/AllocationFunctions.hpp>
