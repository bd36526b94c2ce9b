#pragma once

#include <array>
#include <string>

namespace headless {

// Counts live objects. An object counts while the caller holds a reference to it.

enum class ObjectKind { Interface, Device, Texture, Surface, VertexBuffer, IndexBuffer, Shader };
constexpr int kObjectKindCount = 7;

class ObjectCensus {
public:
    void Add(ObjectKind kind) { ++counts[static_cast<size_t>(kind)]; }
    void Remove(ObjectKind kind) { --counts[static_cast<size_t>(kind)]; }
    int Total() const;
    /// "2 textures, 1 surface", in the order of the kinds; "" if there are none.
    std::string Report() const;

private:
    std::array<int, kObjectKindCount> counts = {};
};

/// All objects of the process.
extern ObjectCensus gObjectCensus;

/// Writes "what released with live children: ..." to standard error and keeps it for the tests.
void ReportLeak(const char* what, const ObjectCensus& children);

/// The text of the last report; clears it.
std::string TakeLastLeak();

} // namespace headless
