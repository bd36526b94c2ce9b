#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Messages between the supervisor and its workers: a length of four bytes and as many bytes. Both ends
// check every length, because the other end may have crashed in the middle of a message.

/// The longest message. A result with a thousand long texts and a small picture stays below it.
inline constexpr uint32_t kMostWireBytes = 16u << 20;

/// Builds one message.
class WireWriter {
public:
    void U8(uint8_t value) { Raw(&value, sizeof value); }
    void U32(uint32_t value) { Raw(&value, sizeof value); }
    void U64(uint64_t value) { Raw(&value, sizeof value); }
    void F64(double value) { Raw(&value, sizeof value); }
    void Text(std::string_view text);

    const std::string& Bytes() const { return bytes; }

private:
    void Raw(const void* data, size_t size) { bytes.append(static_cast<const char*>(data), size); }

    std::string bytes;
};

/// Reads one message. What is not there reads as 0 or empty, and `HasFailed` is true from then on.
class WireReader {
public:
    explicit WireReader(std::string_view message) : rest(message) {}

    uint8_t U8() { return Take<uint8_t>(); }
    uint32_t U32() { return Take<uint32_t>(); }
    uint64_t U64() { return Take<uint64_t>(); }
    double F64() { return Take<double>(); }
    std::string Text();
    /// A count of things of at least `leastBytes` each; 0 if the message cannot hold so many.
    uint32_t Count(size_t leastBytes);

    bool HasFailed() const { return hasFailed; }
    /// True if the whole message was read and nothing was missing.
    bool IsAtEnd() const { return !hasFailed && rest.empty(); }

private:
    template <typename T>
    T Take()
    {
        T value{};
        TakeRaw(&value, sizeof value);
        return value;
    }
    void TakeRaw(void* out, size_t size);

    std::string_view rest;
    bool hasFailed = false;
};

/// Sends a message over a socket and waits until it is sent. False if the other end is gone.
bool SendWire(int socket, std::string_view message);

/// Waits for a whole message. False at the end of the connection or if the length is not possible.
bool ReceiveWire(int socket, std::string& messageOut);

/// Puts messages together from what has arrived so far.
class WireAssembler {
public:
    enum class Arrival { kNothing, kSome, kEnd };

    /// Reads what is there without waiting.
    Arrival ReadFrom(int socket);
    /// The next whole message. False if there is none yet, or never will be (`IsBroken`).
    bool Next(std::string& messageOut);
    /// A length that is not possible has arrived.
    bool IsBroken() const { return isBroken; }

private:
    std::string gathered;
    bool isBroken = false;
};
