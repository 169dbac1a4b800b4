// How sanitizers behave in this command, when it is built with one.

/// Out of memory is an answer, not an end.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options() {
    return "allocator_may_return_null=1:detect_leaks=0";
}
/// A race ends the check that it was seen in.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options() {
    return "halt_on_error=1:exitcode=66:allocator_may_return_null=1";
}
