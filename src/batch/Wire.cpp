#include "batch/Wire.h"

#include <cerrno>
#include <cstring>

#include <sys/socket.h>

void WireWriter::Text(std::string_view text)
{
    U32(static_cast<uint32_t>(text.size()));
    Raw(text.data(), text.size());
}

void WireReader::TakeRaw(void* out, size_t size)
{
    if (hasFailed || size > rest.size()) {
        hasFailed = true;
        return;
    }
    std::memcpy(out, rest.data(), size);
    rest.remove_prefix(size);
}

std::string WireReader::Text()
{
    const uint32_t size = U32();
    if (hasFailed || size > rest.size()) {
        hasFailed = true;
        return {};
    }
    std::string text(rest.substr(0, size));
    rest.remove_prefix(size);
    return text;
}

uint32_t WireReader::Count(size_t leastBytes)
{
    const uint32_t count = U32();
    if (hasFailed || count > rest.size() / leastBytes) {
        hasFailed = true;
        return 0;
    }
    return count;
}

static bool SendAll(int socket, const char* data, size_t size)
{
    while (size > 0) {
        const ssize_t sent = send(socket, data, size, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        data += sent;
        size -= static_cast<size_t>(sent);
    }
    return true;
}

bool SendWire(int socket, std::string_view message)
{
    if (message.size() > kMostWireBytes)
        return false;
    const auto size = static_cast<uint32_t>(message.size());
    std::string whole(reinterpret_cast<const char*>(&size), sizeof size);
    whole.append(message);
    return SendAll(socket, whole.data(), whole.size());
}

WireAssembler::Arrival WireAssembler::ReadFrom(int socket)
{
    return Receive(socket, MSG_DONTWAIT);
}

bool WireAssembler::Await(int socket, std::string& messageOut)
{
    while (!Next(messageOut)) {
        if (isBroken || Receive(socket, 0) == Arrival::kEnd)
            return false;
    }
    return true;
}

WireAssembler::Arrival WireAssembler::Receive(int socket, int flags)
{
    char part[65536];
    const ssize_t got = recv(socket, part, sizeof part, flags);
    if (got > 0) {
        gathered.append(part, static_cast<size_t>(got));
        return Arrival::kSome;
    }
    if (got < 0 && (errno == EAGAIN || errno == EINTR))
        return Arrival::kNothing;
    return Arrival::kEnd;
}

bool WireAssembler::Next(std::string& messageOut)
{
    uint32_t size = 0;
    if (isBroken || gathered.size() < sizeof size)
        return false;
    std::memcpy(&size, gathered.data(), sizeof size);
    if (size > kMostWireBytes) {
        isBroken = true;
        return false;
    }
    if (gathered.size() - sizeof size < size)
        return false;
    messageOut.assign(gathered, sizeof size, size);
    gathered.erase(0, sizeof size + size);
    return true;
}
