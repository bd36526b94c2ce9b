#pragma once

#include <memory>

struct ComRelease {
    template <class Object>
    void operator()(Object* object) const
    {
        object->Release();
    }
};

/// Owns one reference to a reference-counted object and releases it.
template <class Object>
using ComHandle = std::unique_ptr<Object, ComRelease>;
