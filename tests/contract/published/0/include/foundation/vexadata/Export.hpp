// What leaves the shared library: everything is hidden but what carries this mark.
#pragma once

/// Marks a class, function or variable as part of the library's binary interface.
#define VEXADATA_API __attribute__((visibility("default")))
