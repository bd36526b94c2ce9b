#pragma once

#include <utility>

/// Owner of one reference to a COM object. Reference counts are the object's own; this releases the
/// one that it holds when it goes.
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
    /// Holds a reference of its own beside the caller's; null is allowed.
    static ComPointer Share(T* reference)
    {
        if (reference)
            reference->AddRef();
        return Adopt(reference);
    }

    /// Releases the reference, if there is one.
    void Free()
    {
        if (T* held = std::exchange(object, nullptr))
            held->Release();
    }
    /// Gives the reference to the caller.
    T* Detach() { return std::exchange(object, nullptr); }
    /// Where a call that makes an object writes it. What is held is released first.
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
