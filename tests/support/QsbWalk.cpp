#include "tests/support/QsbWalk.h"

#include <cstdint>
#include <cstring>

namespace {

/// Walks a file record by record. Stops after the first fault.
class Walk {
public:
    explicit Walk(std::string& bytesIn) : bytes(bytesIn) {}

    bool File()
    {
        if (bytes.substr(0, 4) != "QSB\x6A")
            Fail();
        Skip(4 + 3 * 4);
        Text(); // sound
        Text(); // script
        Object();
        Skip(kClip + 2 * 4);
        if (Byte() != 0)
            Texture();
        Skip(17 * 4);
        for (int32_t left = Count(); left > 0 && !failed; --left)
            Mesh();
        for (int32_t left = Count(); left > 0 && !failed; --left) {
            Target();
            Skip(4);
        }
        for (int32_t left = Count(); left > 0 && !failed; --left)
            Object();
        for (int32_t left = Count(); left > 0 && !failed; --left) {
            Target();
            Skip(4 + 4 + 104);
        }
        return !failed && at == bytes.size();
    }

private:
    static constexpr size_t kClip = 44;

    void Fail()
    {
        failed = true;
        at = bytes.size();
    }
    void Skip(size_t size)
    {
        if (size > bytes.size() - at)
            Fail();
        else
            at += size;
    }
    void Blank(size_t size)
    {
        const size_t start = at;
        Skip(size);
        if (!failed)
            std::memset(&bytes[start], 0, size);
    }
    uint8_t Byte()
    {
        const size_t start = at;
        Skip(1);
        return failed ? uint8_t{0} : static_cast<uint8_t>(bytes[start]);
    }
    int32_t Int()
    {
        const size_t start = at;
        Skip(4);
        int32_t value = 0;
        if (!failed)
            std::memcpy(&value, &bytes[start], sizeof value);
        return value;
    }
    int32_t Count()
    {
        const int32_t count = Int();
        if (count < 0)
            Fail();
        return failed ? 0 : count;
    }
    size_t Size() { return static_cast<size_t>(Count()); }
    bool Text()
    {
        const size_t length = Size();
        Skip(length);
        return length > 0;
    }

    void Keys(size_t dataBytes)
    {
        if (Count() == 0)
            return;
        do
            Skip(4 + 2 + dataBytes);
        while (Byte() != 0);
    }
    void Object()
    {
        const size_t start = at;
        Skip(2);
        if (failed || std::memcmp(&bytes[start], "\x34\x12", 2) != 0)
            Fail();
        Skip(4 + 116 + 48);
        Text();
        Text();
        Skip(1);
        Keys(36);
        Keys(84);
        Keys(36);
        Skip(4 + 4);
    }
    void Target()
    {
        Object();
        Text();
    }
    void Track(size_t keyBytes)
    {
        const size_t count = Size();
        Skip(4 + 1 + 1 + 4 + count * keyBytes);
    }
    void Material()
    {
        Skip(4 * 16 + 4 + 3 * 4 + 4 + 4);
        for (int i = 0; i < 4; ++i)
            Track(52);
        Track(16);
        Skip(5 + 4);
        if (!Text())
            return;
        for (int i = 0; i < 8; ++i) {
            if (Byte() != 0)
                Skip(4);
            if (Byte() != 0)
                Skip(12);
        }
    }
    void Texture()
    {
        Skip(6 * 4);
        for (int slot = 0; slot < 4; ++slot) {
            for (int i = 0; i < 5; ++i)
                Track(16);
            Skip(5 * 4);
            Text();
            Skip(4 + 4);
        }
    }
    void Geometry()
    {
        const size_t vertices = Size();
        const size_t faces = Size();
        const auto fvf = static_cast<uint32_t>(Int());
        const uint32_t position = fvf & 0xE; // 2 without betas, 6, 8, 10, 12 with one to four
        const size_t betas = position >= 6 ? (position - 4) / 2 : 0;
        for (size_t i = 0; i < vertices && !failed; ++i) {
            Skip(12 + ((fvf & 0xF00) != 0 ? 8 : 0));
            Blank(3 * 2 + betas * 2);
            Skip((fvf & 0x1000) != 0 ? 4 : 0);
        }
        Skip(faces * (6 + 2));
    }
    void Mesh()
    {
        Object();
        Skip(kClip + 3 * 4);
        const int32_t materials = Count();
        for (int32_t i = 0; i < materials && !failed; ++i)
            Material();
        for (int32_t i = 0; i < materials && !failed; ++i)
            Texture();
        const bool isClone = Text();
        const int32_t bones = Count();
        if (!isClone)
            Geometry();
        Skip(4);
        for (int32_t i = 0; i < bones && !failed; ++i) {
            Text();
            Skip(2 * 64);
        }
    }

    std::string& bytes;
    size_t at = 0;
    bool failed = false;
};

} // namespace

std::string WithoutCutNumbers(std::string bytes)
{
    if (!Walk(bytes).File())
        return "no whole QSB file";
    return bytes;
}
