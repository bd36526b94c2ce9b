#include "platform/headless/d3d9/BlockCodec.h"

#include <algorithm>

namespace headless {

namespace {

struct Rgb {
    int r, g, b;
};

Rgb Expand565(uint32_t word)
{
    const int r = static_cast<int>(word >> 11 & 31);
    const int g = static_cast<int>(word >> 5 & 63);
    const int b = static_cast<int>(word & 31);
    return {r << 3 | r >> 2, g << 2 | g >> 4, b << 3 | b >> 2};
}

uint32_t Load16(const uint8_t* bytes)
{
    return bytes[0] | static_cast<uint32_t>(bytes[1]) << 8;
}

void Store16(uint32_t value, uint8_t* out)
{
    out[0] = static_cast<uint8_t>(value);
    out[1] = static_cast<uint8_t>(value >> 8);
}

uint32_t PackRgb(const Rgb& colour, uint32_t alpha)
{
    return alpha << 24 | static_cast<uint32_t>(colour.r) << 16 |
           static_cast<uint32_t>(colour.g) << 8 | static_cast<uint32_t>(colour.b);
}

Rgb UnpackRgb(uint32_t argb)
{
    return {static_cast<int>(argb >> 16 & 255), static_cast<int>(argb >> 8 & 255),
            static_cast<int>(argb & 255)};
}

Rgb TwoThirds(const Rgb& near, const Rgb& far)
{
    return {(2 * near.r + far.r + 1) / 3, (2 * near.g + far.g + 1) / 3,
            (2 * near.b + far.b + 1) / 3};
}

/// The four colours of a block. In three-colour mode the last is transparent black.
void MakePalette(uint32_t c0, uint32_t c1, bool threeColours, uint32_t* paletteOut)
{
    const Rgb a = Expand565(c0);
    const Rgb b = Expand565(c1);
    paletteOut[0] = PackRgb(a, 255);
    paletteOut[1] = PackRgb(b, 255);
    if (threeColours) {
        paletteOut[2] = PackRgb({(a.r + b.r) / 2, (a.g + b.g) / 2, (a.b + b.b) / 2}, 255);
        paletteOut[3] = 0;
    } else {
        paletteOut[2] = PackRgb(TwoThirds(a, b), 255);
        paletteOut[3] = PackRgb(TwoThirds(b, a), 255);
    }
}

/// The eight alphas of a DXT5 block: the two stored ones, then either six interpolated ones, or
/// four interpolated ones, 0 and 255.
void MakeAlphas(int a0, int a1, int* alphasOut)
{
    alphasOut[0] = a0;
    alphasOut[1] = a1;
    const int steps = a0 > a1 ? 7 : 5;
    for (int i = 1; i < steps; ++i)
        alphasOut[i + 1] = ((steps - i) * a0 + i * a1 + steps / 2) / steps;
    if (steps == 5) {
        alphasOut[6] = 0;
        alphasOut[7] = 255;
    }
}

void DecodeColours(const uint8_t* block, bool mayBeThree, uint32_t* argbOut)
{
    const uint32_t c0 = Load16(block);
    const uint32_t c1 = Load16(block + 2);
    uint32_t palette[4];
    MakePalette(c0, c1, mayBeThree && c0 <= c1, palette);
    const uint32_t codes = Load16(block + 4) | Load16(block + 6) << 16;
    for (int i = 0; i < 16; ++i)
        argbOut[i] = palette[codes >> 2 * i & 3];
}

void DecodeExplicitAlpha(const uint8_t* block, uint32_t* argbInOut)
{
    for (int i = 0; i < 16; ++i) {
        const uint32_t nibble = block[i / 2] >> 4 * (i % 2) & 15u;
        argbInOut[i] = (argbInOut[i] & 0xFFFFFF) | nibble * 17 << 24;
    }
}

uint64_t Load48(const uint8_t* bytes)
{
    uint64_t value = 0;
    for (int i = 5; i >= 0; --i)
        value = value << 8 | bytes[i];
    return value;
}

void DecodeInterpolatedAlpha(const uint8_t* block, uint32_t* argbInOut)
{
    int alphas[8];
    MakeAlphas(block[0], block[1], alphas);
    const uint64_t codes = Load48(block + 2);
    for (int i = 0; i < 16; ++i) {
        const auto alpha = static_cast<uint32_t>(alphas[codes >> 3 * i & 7]);
        argbInOut[i] = (argbInOut[i] & 0xFFFFFF) | alpha << 24;
    }
}

struct Vec {
    double r, g, b;
};

Vec ToVec(uint32_t argb)
{
    const Rgb c = UnpackRgb(argb);
    return {static_cast<double>(c.r), static_cast<double>(c.g), static_cast<double>(c.b)};
}

double Dot(const Vec& a, const Vec& b)
{
    return a.r * b.r + a.g * b.g + a.b * b.b;
}

uint32_t QuantiseByte(double value, int max)
{
    const double scaled = std::clamp(value, 0.0, 255.0) * max / 255.0;
    return static_cast<uint32_t>(scaled + 0.5);
}

uint32_t ToWord565(const Vec& c)
{
    return QuantiseByte(c.r, 31) << 11 | QuantiseByte(c.g, 63) << 5 | QuantiseByte(c.b, 31);
}

/// The colours of a block that matter: in three-colour mode those of opaque pixels, else all.
struct ColourSet {
    Vec points[16];
    int count = 0;
};

Vec Mean(const ColourSet& set)
{
    Vec sum = {0, 0, 0};
    for (int i = 0; i < set.count; ++i)
        sum = {sum.r + set.points[i].r, sum.g + set.points[i].g, sum.b + set.points[i].b};
    return {sum.r / set.count, sum.g / set.count, sum.b / set.count};
}

/// The direction in which the colours spread most, by power iteration on their covariance. Starts
/// from the row with the largest variance, which cannot be perpendicular to the answer.
Vec PrincipalAxis(const ColourSet& set, const Vec& mean)
{
    Vec rows[3] = {};
    for (int i = 0; i < set.count; ++i) {
        const Vec& p = set.points[i];
        const Vec d = {p.r - mean.r, p.g - mean.g, p.b - mean.b};
        rows[0] = {rows[0].r + d.r * d.r, rows[0].g + d.r * d.g, rows[0].b + d.r * d.b};
        rows[1] = {rows[1].r + d.g * d.r, rows[1].g + d.g * d.g, rows[1].b + d.g * d.b};
        rows[2] = {rows[2].r + d.b * d.r, rows[2].g + d.b * d.g, rows[2].b + d.b * d.b};
    }
    const double spread[3] = {rows[0].r, rows[1].g, rows[2].b};
    Vec axis = rows[std::max_element(spread, spread + 3) - spread];
    for (int i = 0; i < 8; ++i) {
        const double size = std::max({axis.r, -axis.r, axis.g, -axis.g, axis.b, -axis.b});
        if (size == 0.0)
            return {1, 1, 1};
        axis = {axis.r / size, axis.g / size, axis.b / size};
        axis = {Dot(rows[0], axis), Dot(rows[1], axis), Dot(rows[2], axis)};
    }
    return axis;
}

struct EndPoints {
    uint32_t c0, c1;
};

EndPoints FitRange(const ColourSet& set)
{
    const Vec axis = PrincipalAxis(set, Mean(set));
    int low = 0;
    int high = 0;
    for (int i = 1; i < set.count; ++i) {
        if (Dot(set.points[i], axis) < Dot(set.points[low], axis))
            low = i;
        if (Dot(set.points[i], axis) > Dot(set.points[high], axis))
            high = i;
    }
    return {ToWord565(set.points[high]), ToWord565(set.points[low])};
}

int NearestColour(const uint32_t* palette, int count, const Vec& colour, double* errorOut)
{
    int best = 0;
    double bestError = 1e30;
    for (int i = 0; i < count; ++i) {
        const Vec p = ToVec(palette[i]);
        const Vec d = {p.r - colour.r, p.g - colour.g, p.b - colour.b};
        if (Dot(d, d) < bestError) {
            bestError = Dot(d, d);
            best = i;
        }
    }
    *errorOut = bestError;
    return best;
}

double TotalError(const EndPoints& ends, bool threeColours, const ColourSet& set, int* codesOut)
{
    uint32_t palette[4];
    MakePalette(ends.c0, ends.c1, threeColours, palette);
    double total = 0;
    for (int i = 0; i < set.count; ++i) {
        double error = 0;
        codesOut[i] = NearestColour(palette, threeColours ? 3 : 4, set.points[i], &error);
        total += error;
    }
    return total;
}

/// The best end points for the chosen codes: each pixel is w * c0 + (1 - w) * c1 with the weight w
/// of its code; the normal equations of that least-squares problem are 2 by 2.
bool Refine(const ColourSet& set, const int* codes, bool threeColours, EndPoints* endsOut)
{
    static constexpr double kFour[] = {1.0, 0.0, 2.0 / 3.0, 1.0 / 3.0};
    static constexpr double kThree[] = {1.0, 0.0, 0.5, 0.0};
    double aa = 0, ab = 0, bb = 0;
    Vec ax = {0, 0, 0}, bx = {0, 0, 0};
    for (int i = 0; i < set.count; ++i) {
        const double a = threeColours ? kThree[codes[i]] : kFour[codes[i]];
        const double b = 1.0 - a;
        const Vec& p = set.points[i];
        aa += a * a;
        ab += a * b;
        bb += b * b;
        ax = {ax.r + a * p.r, ax.g + a * p.g, ax.b + a * p.b};
        bx = {bx.r + b * p.r, bx.g + b * p.g, bx.b + b * p.b};
    }
    const double det = aa * bb - ab * ab;
    if (det < 1e-6)
        return false;
    endsOut->c0 = ToWord565({(ax.r * bb - bx.r * ab) / det, (ax.g * bb - bx.g * ab) / det,
                             (ax.b * bb - bx.b * ab) / det});
    endsOut->c1 = ToWord565({(bx.r * aa - ax.r * ab) / det, (bx.g * aa - ax.g * ab) / det,
                             (bx.b * aa - ax.b * ab) / det});
    return true;
}

/// DXT1 encodes its mode in the order of the end points: c0 > c1 means four colours. If they are
/// equal, all pixels take code 0, which is the same colour in both modes.
EndPoints Ordered(const EndPoints& ends, bool threeColours)
{
    const bool swap = threeColours ? ends.c0 > ends.c1 : ends.c0 < ends.c1;
    return swap ? EndPoints{ends.c1, ends.c0} : ends;
}

EndPoints ChooseEndPoints(const ColourSet& set, bool threeColours)
{
    int codes[16];
    const EndPoints first = FitRange(set);
    const double firstError = TotalError(first, threeColours, set, codes);
    EndPoints refined = first;
    if (!Refine(set, codes, threeColours, &refined))
        return first;
    return TotalError(refined, threeColours, set, codes) < firstError ? refined : first;
}

void EncodeColours(const uint32_t* argb, bool mayBeThree, uint8_t* out)
{
    ColourSet set;
    bool transparent[16] = {};
    bool threeColours = false;
    for (int i = 0; i < 16; ++i) {
        transparent[i] = mayBeThree && argb[i] >> 24 < 128;
        threeColours = threeColours || transparent[i];
        if (!transparent[i])
            set.points[set.count++] = ToVec(argb[i]);
    }
    EndPoints ends = {0, 0};
    int codes[16] = {};
    if (set.count > 0) {
        ends = Ordered(ChooseEndPoints(set, threeColours), threeColours);
        TotalError(ends, threeColours, set, codes);
    }
    uint32_t word = 0;
    for (int i = 0, next = 0; i < 16; ++i) {
        const int code = transparent[i] ? 3 : codes[next++];
        word |= static_cast<uint32_t>(ends.c0 == ends.c1 && code != 3 ? 0 : code) << 2 * i;
    }
    Store16(ends.c0, out);
    Store16(ends.c1, out + 2);
    Store16(word & 0xFFFF, out + 4);
    Store16(word >> 16, out + 6);
}

void EncodeExplicitAlpha(const uint32_t* argb, uint8_t* out)
{
    for (int i = 0; i < 16; i += 2) {
        const uint32_t low = ((argb[i] >> 24) * 15 + 127) / 255;
        const uint32_t high = ((argb[i + 1] >> 24) * 15 + 127) / 255;
        out[i / 2] = static_cast<uint8_t>(low | high << 4);
    }
}

/// Codes of the nearest alphas, three bits each; gives the sum of squared errors.
int MatchAlphas(const int* alphas, const uint32_t* argb, uint64_t* codesOut)
{
    int total = 0;
    *codesOut = 0;
    for (int i = 0; i < 16; ++i) {
        const int alpha = static_cast<int>(argb[i] >> 24);
        const auto distance = [alpha](int x, int y) {
            return (x - alpha) * (x - alpha) < (y - alpha) * (y - alpha);
        };
        const int* best = std::min_element(alphas, alphas + 8, distance);
        total += (*best - alpha) * (*best - alpha);
        *codesOut |= static_cast<uint64_t>(best - alphas) << 3 * i;
    }
    return total;
}

/// Tries six alphas between the extremes, and four between the extremes other than 0 and 255.
void EncodeInterpolatedAlpha(const uint32_t* argb, uint8_t* out)
{
    int low = 255, high = 0, innerLow = 255, innerHigh = 0;
    for (int i = 0; i < 16; ++i) {
        const int alpha = static_cast<int>(argb[i] >> 24);
        low = std::min(low, alpha);
        high = std::max(high, alpha);
        if (alpha != 0 && alpha != 255) {
            innerLow = std::min(innerLow, alpha);
            innerHigh = std::max(innerHigh, alpha);
        }
    }
    if (innerLow > innerHigh)
        innerLow = innerHigh = 0;
    int eight[8], six[8];
    uint64_t eightCodes = 0, sixCodes = 0;
    MakeAlphas(high, low, eight);
    MakeAlphas(innerLow, innerHigh, six);
    const bool useSix = MatchAlphas(six, argb, &sixCodes) < MatchAlphas(eight, argb, &eightCodes);
    out[0] = static_cast<uint8_t>(useSix ? six[0] : eight[0]);
    out[1] = static_cast<uint8_t>(useSix ? six[1] : eight[1]);
    const uint64_t codes = useSix ? sixCodes : eightCodes;
    for (int i = 0; i < 6; ++i)
        out[2 + i] = static_cast<uint8_t>(codes >> 8 * i);
}

bool HasExplicitAlpha(D3DFORMAT format)
{
    return format == D3DFMT_DXT2 || format == D3DFMT_DXT3;
}

} // namespace

void DecodeBlock(D3DFORMAT format, const uint8_t* block, uint32_t* argbOut)
{
    if (format == D3DFMT_DXT1) {
        DecodeColours(block, true, argbOut);
        return;
    }
    DecodeColours(block + 8, false, argbOut);
    if (HasExplicitAlpha(format))
        DecodeExplicitAlpha(block, argbOut);
    else
        DecodeInterpolatedAlpha(block, argbOut);
}

void EncodeBlock(D3DFORMAT format, const uint32_t* argb, uint8_t* blockOut)
{
    if (format == D3DFMT_DXT1) {
        EncodeColours(argb, true, blockOut);
        return;
    }
    EncodeColours(argb, false, blockOut + 8);
    if (HasExplicitAlpha(format))
        EncodeExplicitAlpha(argb, blockOut);
    else
        EncodeInterpolatedAlpha(argb, blockOut);
}

} // namespace headless
