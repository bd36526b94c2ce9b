#pragma once

#include <utility>

#include <unistd.h>

/// An open file descriptor; its owner closes it.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int opened) : number(opened) {}
    Descriptor(Descriptor&& other) noexcept : number(std::exchange(other.number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(number, other.number);
        return *this;
    }
    ~Descriptor() { Close(); }

    int Get() const { return number; }
    bool IsOpen() const { return number >= 0; }
    void Close()
    {
        if (number >= 0)
            close(number);
        number = -1;
    }

private:
    int number = -1;
};
