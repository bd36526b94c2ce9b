#include "platform/HostStream.h"

#include "platform/headless/win32/DescriptorStream.h"
#include "platform/headless/win32/Uninterrupted.h"

#include <cerrno>
#include <cstdint>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace headless {

namespace {

int DescriptorOf(void* cookie)
{
    return static_cast<int>(reinterpret_cast<intptr_t>(cookie));
}

ssize_t ReadSome(void* cookie, char* out, size_t size)
{
    return Uninterrupted([&] { return read(DescriptorOf(cookie), out, size); });
}

/// 0 is a failure; so is a count that is too small.
ssize_t WriteAll(void* cookie, const char* bytes, size_t size)
{
    size_t done = 0;
    while (done < size) {
        const ssize_t count =
            Uninterrupted([&] { return write(DescriptorOf(cookie), bytes + done, size - done); });
        if (count <= 0)
            break;
        done += static_cast<size_t>(count);
    }
    return static_cast<ssize_t>(done);
}

int SeekDescriptor(void* cookie, off64_t* offset, int whence)
{
    const off64_t reached = lseek64(DescriptorOf(cookie), *offset, whence);
    if (reached < 0)
        return -1;
    *offset = reached;
    return 0;
}

/// A descriptor is closed even if a signal interrupts the call.
int CloseOnce(void* cookie)
{
    return close(DescriptorOf(cookie)) == 0 || errno == EINTR ? 0 : -1;
}

int FlagsOf(const char* mode)
{
    const bool isBoth = std::strchr(mode, '+') != nullptr;
    const int access = isBoth ? O_RDWR : mode[0] == 'r' ? O_RDONLY : O_WRONLY;
    const int making = mode[0] == 'w' ? O_CREAT | O_TRUNC : mode[0] == 'a' ? O_CREAT | O_APPEND : 0;
    return access | making | (std::strchr(mode, 'e') ? O_CLOEXEC : 0);
}

} // namespace

FILE* DescriptorStream(int descriptor, const char* mode)
{
    const cookie_io_functions_t calls = {ReadSome, WriteAll, SeekDescriptor, CloseOnce};
    FILE* const stream =
        fopencookie(reinterpret_cast<void*>(static_cast<intptr_t>(descriptor)), mode, calls);
    if (stream)
        stream->_fileno = descriptor; // for `fileno`; the stream itself uses the calls above
    return stream;
}

FILE* OpenDescriptorStream(const char* path, const char* mode)
{
    const int descriptor = Uninterrupted([&] { return open(path, FlagsOf(mode), 0666); });
    if (descriptor < 0)
        return nullptr;
    FILE* const stream = DescriptorStream(descriptor, mode);
    if (!stream) {
        close(descriptor);
        errno = ENOMEM;
    }
    return stream;
}

} // namespace headless

using namespace headless;

FILE* OpenHostStream(const char* path, const char* mode)
{
    if (mode[0] != 'r' || std::strchr(mode, '+'))
        return OpenDescriptorStream(path, mode);
    FILE* stream = std::fopen(path, mode);
    while (!stream && errno == EINTR)
        stream = std::fopen(path, mode);
    return stream;
}

size_t ReadStream(FILE* stream, void* bytesOut, size_t size)
{
    size_t done = 0;
    while (done < size) {
        errno = 0;
        done += std::fread(static_cast<char*>(bytesOut) + done, 1, size - done, stream);
        if (done == size || !std::ferror(stream) || errno != EINTR)
            break;
        std::clearerr(stream);
    }
    return done;
}

bool CloseStream(FILE* stream)
{
    return std::fclose(stream) == 0 || errno == EINTR;
}

void MakeStandardStreamsSteady()
{
    // Without memory they stay as they are.
    if (FILE* const in = DescriptorStream(STDIN_FILENO, "r"))
        stdin = in;
    if (FILE* const out = DescriptorStream(STDOUT_FILENO, "w")) {
        if (isatty(STDOUT_FILENO) == 1)
            std::setvbuf(out, nullptr, _IOLBF, 0);
        stdout = out;
    }
    if (FILE* const err = DescriptorStream(STDERR_FILENO, "w")) {
        std::setvbuf(err, nullptr, _IONBF, 0);
        stderr = err;
    }
}
