#pragma once

#include <utility>

/// Owns one reference to a COM object and releases it when destroyed. The object does the counting.
template <class T>
class ComPointer {
public:
    ComPointer() = default;
    ~ComPointer() { Free(); }
    ComPointer(const ComPointer& other) : object(other.object)
    {
        if (object)
            object->AddRef();
    }
    ComPointer(ComPointer&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    ComPointer& operator=(ComPointer other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }

    /// Takes over the caller's reference; null is allowed.
    static ComPointer Adopt(T* reference)
    {
        ComPointer owner;
        owner.object = reference;
        return owner;
    }
    /// Takes an additional reference beside the caller's; null is allowed.
    static ComPointer Share(T* reference)
    {
        if (reference)
            reference->AddRef();
        return Adopt(reference);
    }

    /// Releases the reference, if any.
    void Free()
    {
        if (T* held = std::exchange(object, nullptr))
            held->Release();
    }
    /// Hands the reference over to the caller.
    T* Detach() { return std::exchange(object, nullptr); }
    /// The address to pass to a call that creates an object. Releases the current reference first.
    T** Out()
    {
        Free();
        return &object;
    }

    T* Get() const { return object; }
    T* operator->() const { return object; }
    explicit operator bool() const { return object != nullptr; }

private:
    T* object = nullptr;
};
