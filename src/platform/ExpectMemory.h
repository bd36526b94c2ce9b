#pragma once

#include <cstdint>

/// Tells the host that about `bytes` will soon be allocated, in pieces of any size. The host may then
/// get address space for them at once, in pages that are cheaper to make than single ones. Only a
/// hint: nothing is used until it is allocated, and nothing fails that would not fail otherwise.
void ExpectMemory(int64_t bytes);
