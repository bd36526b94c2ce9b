// What fuzz targets ask of the sanitizers beside ASAN_OPTIONS: nearly all time of a small input goes into
// memory. Fewer frames are kept of each allocation, and less memory waits before it is used again, so that
// it stays in the processor's cache: still what several inputs of 1 KiB free.

extern "C" const char* __asan_default_options()
{
    return "malloc_context_size=8:quarantine_size_mb=4:thread_local_quarantine_size_kb=64:"
           "max_malloc_fill_size=0:allocator_may_return_null=1";
}
