// Everything a client needs.
#pragma once

#include <foundation/vexadata/Array.hpp>
#include <foundation/vexadata/ArrayFactory.hpp>
#include <foundation/vexadata/ArrayView.hpp>
#include <foundation/vexadata/BufferAccess.hpp>
#include <foundation/vexadata/CharArray.hpp>
#include <foundation/vexadata/EnumArray.hpp>
#include <foundation/vexadata/Exception.hpp>
#include <foundation/vexadata/InProcessCustomWorkspace.hpp>
#include <foundation/vexadata/Print.hpp>
#include <foundation/vexadata/SparseArray.hpp>
#include <foundation/vexadata/StructArray.hpp>
#include <foundation/vexadata/TypedArray.hpp>
#include <foundation/vexadata/ValueObjectArray.hpp>
#include <foundation/vexadata/Visit.hpp>
