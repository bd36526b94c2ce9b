#pragma once

/// Owns one reference to a reference-counted interface and releases it.
template <class Interface>
class ComPointer {
public:
    ComPointer() = default;
    ~ComPointer() { Reset(); }
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;

    void Reset()
    {
        if (pointer)
            pointer->Release();
        pointer = nullptr;
    }

    /// Takes a further reference to `other`, which may be null.
    void Share(Interface* other)
    {
        if (other)
            other->AddRef();
        Reset();
        pointer = other;
    }

    /// Hands the reference to the caller.
    Interface* Detach()
    {
        Interface* result = pointer;
        pointer = nullptr;
        return result;
    }

    /// For operations that give a reference by an out parameter; drops the one held before.
    Interface** Receive()
    {
        Reset();
        return &pointer;
    }

    Interface* Get() const { return pointer; }
    Interface* operator->() const { return pointer; }
    explicit operator bool() const { return pointer != nullptr; }

private:
    Interface* pointer = nullptr; // owned
};
