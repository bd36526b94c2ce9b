// Loading textures, compared with the bare decode or read of the same file in the same process. The
// counter `ratio` is the time of the whole load divided by that of the bare one.

#include "platform/headless/d3dx/ImageFileBytes.h"
#include "platform/headless/d3dx/PngWriter.h"
#include "tests/support/HiddenWindow.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <d3dx9.h>
#include <filesystem>
#include <png.h>
#include <vector>

using namespace headless;

namespace {

constexpr UINT kSide = 2048;

using Seconds = std::chrono::duration<double>;

[[noreturn]] void Fail(const char* what)
{
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

// A picture that compresses neither completely nor not at all: slopes with some noise.
std::vector<uint32_t> TestPicture()
{
    std::vector<uint32_t> pixels(size_t{kSide} * kSide);
    uint32_t noise = 12345;
    for (UINT y = 0; y < kSide; ++y) {
        for (UINT x = 0; x < kSide; ++x) {
            noise = noise * 1664525 + 1013904223;
            const uint32_t grain = noise >> 29;
            pixels[size_t{y} * kSide + x] =
                0xFF000000 | ((x >> 3) + grain) << 16 | ((y >> 3) & 0xFF) << 8 | (x + y) >> 4;
        }
    }
    return pixels;
}

void Put(std::vector<uint8_t>& bytes, size_t offset, uint32_t value)
{
    std::memcpy(&bytes[offset], &value, 4);
}

// A DXT5 file of one level; its contents do not affect the time.
std::vector<uint8_t> DdsBytes()
{
    std::vector<uint8_t> bytes(128 + size_t{kSide} * kSide, 0x5A);
    std::memset(bytes.data(), 0, 128);
    std::memcpy(bytes.data(), "DDS ", 4);
    std::memcpy(&bytes[84], "DXT5", 4);
    Put(bytes, 4, 124);
    Put(bytes, 8, 0x1007);
    Put(bytes, 12, kSide);
    Put(bytes, 16, kSide);
    Put(bytes, 76, 32);
    Put(bytes, 80, 4);
    Put(bytes, 108, 0x1000);
    return bytes;
}

// The files, in a directory of this process that is removed at its end.
class BenchFiles {
public:
    BenchFiles()
    {
        const auto unique =
            std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
        folder = std::filesystem::temp_directory_path() / ("texture-bench-" + unique);
        std::filesystem::create_directory(folder);
        std::string error;
        if (!WritePngFile(Png().c_str(), kSide, kSide, TestPicture().data(), false, error))
            Fail(error.c_str());
        const std::vector<uint8_t> dds = DdsBytes();
        FILE* stream = std::fopen(Dds().c_str(), "wb");
        if (!stream || std::fwrite(dds.data(), 1, dds.size(), stream) != dds.size())
            Fail("the DDS file cannot be written");
        std::fclose(stream);
    }
    ~BenchFiles() { std::filesystem::remove_all(folder); }
    BenchFiles(const BenchFiles&) = delete;
    BenchFiles& operator=(const BenchFiles&) = delete;

    std::string Png() const { return (folder / "bench.png").string(); }
    std::string Dds() const { return (folder / "bench.dds").string(); }

private:
    std::filesystem::path folder;
};

const BenchFiles& Files()
{
    static const BenchFiles files;
    return files;
}

IDirect3DDevice9* MakeDevice()
{
    static const HiddenWindow kWindow(64, 64);
    static IDirect3D9* const d3d = Direct3DCreate9(D3D_SDK_VERSION);
    D3DPRESENT_PARAMETERS parameters = {};
    parameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
    parameters.hDeviceWindow = kWindow.Handle();
    parameters.Windowed = TRUE;
    IDirect3DDevice9* device = nullptr;
    if (FAILED(d3d->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, kWindow.Handle(),
                                 D3DCREATE_SOFTWARE_VERTEXPROCESSING, &parameters, &device)))
        Fail("no device");
    return device;
}

IDirect3DDevice9* Device()
{
    static IDirect3DDevice9* const device = MakeDevice();
    return device;
}

// The best of some runs: the machine's speed when nothing else disturbs it.
template <typename Work>
double BestSeconds(const Work& work)
{
    double best = 1e30;
    for (int i = 0; i < 5; ++i) {
        const auto start = std::chrono::steady_clock::now();
        work();
        best = std::min(best, Seconds(std::chrono::steady_clock::now() - start).count());
    }
    return best;
}

// libpng's own simplified reader, to the same layout of pixels.
void DecodeBare(const std::string& path)
{
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str()))
        Fail(image.message);
    image.format = PNG_FORMAT_BGRA;
    std::vector<uint8_t> pixels(PNG_IMAGE_SIZE(image));
    if (!png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr))
        Fail(image.message);
    benchmark::DoNotOptimize(pixels.data());
}

void ReadBare(const std::string& path)
{
    ImageFileBytes file;
    if (FAILED(file.Read(path.c_str())))
        Fail("the file cannot be read");
    benchmark::DoNotOptimize(file.Bytes().data());
}

void Load(const std::string& path, UINT levels, D3DFORMAT format)
{
    IDirect3DTexture9* texture = nullptr;
    if (FAILED(D3DXCreateTextureFromFileExA(Device(), path.c_str(), 0, 0, levels, 0, format,
                                            D3DPOOL_MANAGED, D3DX_FILTER_LINEAR, D3DX_FILTER_BOX, 0,
                                            nullptr, nullptr, &texture)))
        Fail("the texture cannot be loaded");
    texture->Release();
}

void Measure(benchmark::State& state, const std::string& path, D3DFORMAT format, double bareSeconds)
{
    const auto levels = static_cast<UINT>(state.range(0));
    double best = 1e30;
    for ([[maybe_unused]] const auto& step : state) {
        const auto start = std::chrono::steady_clock::now();
        Load(path, levels, format);
        best = std::min(best, Seconds(std::chrono::steady_clock::now() - start).count());
    }
    state.counters["ratio"] = best / bareSeconds;
    state.counters["bareMs"] = bareSeconds * 1e3;
}

void PngTexture(benchmark::State& state)
{
    const std::string path = Files().Png();
    Measure(state, path, D3DFMT_UNKNOWN, BestSeconds([&path] { DecodeBare(path); }));
}

void PngTextureIn16Bits(benchmark::State& state)
{
    const std::string path = Files().Png();
    Measure(state, path, D3DFMT_R5G6B5, BestSeconds([&path] { DecodeBare(path); }));
}

void PngTextureCompressed(benchmark::State& state)
{
    const std::string path = Files().Png();
    Measure(state, path, D3DFMT_DXT1, BestSeconds([&path] { DecodeBare(path); }));
}

void DdsTexture(benchmark::State& state)
{
    const std::string path = Files().Dds();
    Measure(state, path, D3DFMT_UNKNOWN, BestSeconds([&path] { ReadBare(path); }));
}

// The argument is the number of mip levels, 0 for the full chain.
BENCHMARK(PngTexture)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK(PngTextureIn16Bits)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);
BENCHMARK(PngTextureCompressed)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(DdsTexture)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

} // namespace
