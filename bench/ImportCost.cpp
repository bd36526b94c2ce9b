// import_cost FILE...   compares the import of scenes with a bare scan of the same texts: CPU time of
// each in one process, the best of three; and the peak memory of an import.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "base/ErrorClass.h"
#include "base/KRE_Base.h"
#include "base/Log.h"
#include "bench/BareScan.h"
#include "gfx/KRE_Gfx.h"
#include "qsa/QSALoader.h"
#include "scene/KRE_3dScene.h"
#include "tests/support/HiddenWindow.h"

namespace {

constexpr int kRepetitions = 3;

double CpuSeconds()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Resets the peak.
void ForgetPeakMemory()
{
    if (std::FILE* file = std::fopen("/proc/self/clear_refs", "w")) {
        std::fputs("5", file);
        std::fclose(file);
    }
}

double PeakMiB()
{
    long kib = 0;
    char line[256];
    std::FILE* file = std::fopen("/proc/self/status", "r");
    while (file && std::fgets(line, sizeof line, file)) {
        if (std::strncmp(line, "VmHWM:", 6) == 0)
            kib = std::atol(line + 6);
    }
    if (file)
        std::fclose(file);
    return static_cast<double>(kib) / 1024.0;
}

/// Seconds of a bare scan; 0 if the file cannot be read.
double TimeScan(const char* path, double* bytesOut)
{
    const int file = open(path, O_RDONLY | O_CLOEXEC);
    struct stat info = {};
    if (file < 0 || fstat(file, &info) != 0 || info.st_size == 0)
        return 0.0;
    const size_t size = static_cast<size_t>(info.st_size);
    *bytesOut = static_cast<double>(size);
    const double before = CpuSeconds();
    void* const text = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    const BareScanResult result = BareScan(static_cast<const char*>(text), size);
    munmap(text, size);
    const double seconds = CpuSeconds() - before;
    close(file);
    if (result.sum == 0.125)
        std::puts("");
    return seconds;
}

struct ImportFigures {
    double seconds = 0.0;
    double peakMiB = 0.0;
    double faces = 0.0;
};

ImportFigures TimeImport(const char* path)
{
    ImportFigures figures;
    QSALoader loader;
    auto scene = std::make_unique<KRE_3dScene>();
    ForgetPeakMemory();
    const double before = CpuSeconds();
    loader.Load(*scene, path, 0);
    figures.seconds = CpuSeconds() - before;
    figures.peakMiB = PeakMiB();
    for (const KRE_Mesh* mesh : scene->meshes)
        figures.faces += mesh->faceCount;
    return figures;
}

void Compare(const char* path)
{
    double bytes = 0.0;
    double scan = 1e9;
    ImportFigures best;
    best.seconds = 1e9;
    for (int i = 0; i < kRepetitions; ++i) {
        scan = std::min(scan, TimeScan(path, &bytes));
        const ImportFigures figures = TimeImport(path);
        best.peakMiB = std::max(best.peakMiB, figures.peakMiB);
        best.seconds = std::min(best.seconds, figures.seconds);
        best.faces = figures.faces;
    }
    const double textMiB = bytes / 1048576.0;
    const char* slash = std::strrchr(path, '/');
    std::printf("%-18s %8.1f %8.0f %8.0f %8.2f %10.1f %10.1f", slash ? slash + 1 : path,
                bytes / 1e6, bytes / 1e6 / scan, bytes / 1e6 / best.seconds, best.seconds / scan,
                best.peakMiB, textMiB * 1.25 + 32.0);
    if (best.faces > 0.0)
        std::printf(" %10.1f", best.seconds / best.faces * 1e9);
    std::printf("\n");
    std::fflush(stdout);
}

} // namespace

int main(int count, char** arguments)
{
    gLogEntries = kMaxLogEntries; // nothing is written
    const HiddenWindow window(64, 64);
    KRE_Gfx engine;
    engine.InitDevice(window.Handle(), 1, nullptr, 16, 0, 2, 0);
    gGfx = &engine;
    std::printf("%-18s %8s %8s %8s %8s %10s %10s %10s\n", "scene", "MB", "scan MB/s", "MB/s",
                "ratio", "peak MiB", "goal MiB", "ns/face");
    int result = 0;
    for (int i = 1; i < count; ++i) {
        try {
            Compare(arguments[i]);
        } catch (const KRE_Error& error) {
            std::fprintf(stderr, "%s: %s\n", error.source, error.message);
            result = 1;
        } catch (const ErrorMsg& error) {
            std::fprintf(stderr, "%s: %s\n", error.source, error.message);
            result = 1;
        }
    }
    gGfx = nullptr;
    return result;
}
