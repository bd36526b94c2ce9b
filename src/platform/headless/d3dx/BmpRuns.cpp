#include "platform/headless/d3dx/BmpRuns.h"

#include <cstring>

namespace headless {

namespace {

// Second bytes of pairs that begin with 0; larger values count the uncoded pixels that follow.
enum BmpEscape { kEndOfRow = 0, kEndOfPicture = 1, kMove = 2 };

class BmpRunReader {
public:
    BmpRunReader(ImageFile bytes, bool isFourBits, UINT pictureWidth, UINT pictureHeight,
                 uint8_t* indices)
        : coded(bytes),
          fourBits(isFourBits),
          width(pictureWidth),
          height(pictureHeight),
          out(indices)
    {}

    bool Run()
    {
        while (!ended && y < height) {
            if (coded.size() - position < 2)
                return y + 1 == height &&
                       x >= width; // the end mark of a full picture may be missing
            const unsigned first = coded[position];
            const unsigned second = coded[position + 1];
            position += 2;
            if (!(first == 0 ? Escape(second) : Repeat(first, second)))
                return false;
        }
        return true;
    }

private:
    // A run that extends past its row is cut there.
    void Put(unsigned index)
    {
        if (x < width)
            out[size_t{y} * width + x++] = static_cast<uint8_t>(index);
    }

    bool Repeat(unsigned count, unsigned value)
    {
        for (unsigned i = 0; i < count; ++i)
            Put(fourBits ? (i % 2 == 0 ? value >> 4 : value & 15) : value);
        return true;
    }

    bool Escape(unsigned code)
    {
        switch (code) {
        case kEndOfRow:
            x = 0;
            ++y;
            return true;
        case kEndOfPicture:
            ended = true;
            return true;
        case kMove:
            return Move();
        default:
            return Literal(code);
        }
    }

    bool Move()
    {
        if (coded.size() - position < 2)
            return false;
        x += coded[position];
        y += coded[position + 1];
        position += 2;
        return x <= width && y <= height;
    }

    // Literals are padded to a multiple of two bytes.
    bool Literal(unsigned count)
    {
        const size_t bytes = fourBits ? (count + 1) / 2 : count;
        const size_t padded = (bytes + 1) / 2 * 2;
        if (coded.size() - position < padded)
            return false;
        for (unsigned i = 0; i < count; ++i) {
            const unsigned pair = coded[position + (fourBits ? i / 2 : i)];
            Put(fourBits ? (i % 2 == 0 ? pair >> 4 : pair & 15) : pair);
        }
        position += padded;
        return true;
    }

    ImageFile coded;
    size_t position = 0;
    bool fourBits;
    bool ended = false;
    UINT width;
    UINT height;
    UINT x = 0;
    UINT y = 0;
    uint8_t* out; // not owned
};

} // namespace

bool UnpackBmpRuns(ImageFile coded, bool fourBits, UINT width, UINT height, uint8_t* indicesOut)
{
    std::memset(indicesOut, 0, size_t{width} * height);
    return BmpRunReader(coded, fourBits, width, height, indicesOut).Run();
}

} // namespace headless
