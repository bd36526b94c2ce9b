// The foundation's hot operations at the sizes of large scenes.

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "base/DynaMem.h"
#include "base/SearchTree.h"
#include "base/TextDataFileReader.h"

namespace {

constexpr int32_t kNames = 10000;
constexpr int32_t kElements = 100000;

/// Names as exporters number them: all in one bucket, which is the hardest case.
std::vector<String> NodeNames()
{
    std::vector<String> names(kNames);
    for (int32_t i = 0; i < kNames; ++i)
        names[static_cast<size_t>(i)].Format("Object%05i", i);
    return names;
}

void SearchTreeInsert(benchmark::State& state)
{
    const std::vector<String> names = NodeNames();
    for (auto _ : state) {
        SearchTree<int> tree;
        for (const String& name : names)
            benchmark::DoNotOptimize(tree.Insert(name));
    }
    state.SetItemsProcessed(state.iterations() * kNames);
}
BENCHMARK(SearchTreeInsert)->Unit(benchmark::kMillisecond);

void SearchTreeFind(benchmark::State& state)
{
    const std::vector<String> names = NodeNames();
    SearchTree<int> tree;
    for (const String& name : names)
        tree.Insert(name);
    for (auto _ : state) {
        for (const String& name : names)
            benchmark::DoNotOptimize(tree.Find(name));
    }
    state.SetItemsProcessed(state.iterations() * kNames);
}
BENCHMARK(SearchTreeFind)->Unit(benchmark::kMillisecond);

struct Element {
    float values[8] = {};
};
using ElementList = DynaMem<Element, 128>;

void DynaMemAdd(benchmark::State& state)
{
    for (auto _ : state) {
        ElementList list;
        for (int32_t i = 0; i < kElements; ++i)
            list.Add();
        benchmark::DoNotOptimize(list.Count());
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}
BENCHMARK(DynaMemAdd)->Unit(benchmark::kMillisecond);

void DynaMemDelete(benchmark::State& state)
{
    for (auto _ : state) {
        state.PauseTiming();
        auto list = std::make_unique<ElementList>();
        for (int32_t i = 0; i < kElements; ++i)
            list->Add();
        state.ResumeTiming();
        // By slot: an index would rebuild the order for each one.
        for (int32_t slot = kElements - 1; slot >= 0; --slot)
            list->DeleteSlot(slot);
        benchmark::DoNotOptimize(list->Count());
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}
BENCHMARK(DynaMemDelete)->Unit(benchmark::kMillisecond);

void DynaMemWalk(benchmark::State& state)
{
    ElementList list;
    for (int32_t i = 0; i < kElements; ++i)
        list.Add();
    for (auto _ : state) {
        float sum = 0.0f;
        for (const Element* element : list)
            sum += element->values[0];
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * kElements);
}
BENCHMARK(DynaMemWalk)->Unit(benchmark::kMicrosecond);

/// Lines of three coordinates as in scene files, some 8 MB.
std::string VertexText()
{
    std::mt19937 random(1);
    std::string text;
    char line[96];
    for (int i = 0; i < 200000; ++i) {
        const auto coordinate = [&random] { return static_cast<double>(random()) / 1e7 - 200.0; };
        const double x = coordinate();
        const double y = coordinate();
        std::snprintf(line, sizeof line, "\t\t%.4f\t%.4f\t%.4f\n", x, y, coordinate());
        text += line;
    }
    return text;
}

std::unique_ptr<TextDataFileReader> ReaderOf(const std::string& text)
{
    auto bytes = std::make_unique<uint8_t[]>(text.size());
    std::memcpy(bytes.get(), text.data(), text.size());
    auto reader = std::make_unique<TextDataFileReader>();
    reader->SetData(std::move(bytes), static_cast<int32_t>(text.size()));
    return reader;
}

double ScanWithReader(TextDataFileReader& reader)
{
    double sum = 0.0;
    float value = 0.0f;
    reader.SeekRelative(INT32_MIN);
    while (reader.SkipSpace() == 0) {
        reader.ReadFloat(&value);
        sum += static_cast<double>(value);
    }
    return sum;
}

/// The time of the plain library for the same bytes, for comparison.
double ScanWithLibrary(const std::string& text)
{
    double sum = 0.0;
    const char* const end = text.data() + text.size();
    for (const char* at = text.data();;) {
        while (at != end && static_cast<unsigned char>(*at) < 33)
            ++at;
        if (at == end)
            return sum;
        double value = 0.0;
        at = std::from_chars(at, end, value).ptr;
        sum += static_cast<double>(static_cast<float>(value));
    }
}

void ReaderNumbers(benchmark::State& state)
{
    const std::string text = VertexText();
    const auto reader = ReaderOf(text);
    if (ScanWithReader(*reader) != ScanWithLibrary(text))
        state.SkipWithError("the two scans disagree");
    double readerSeconds = 0.0;
    double librarySeconds = 0.0;
    const auto timed = [](double* secondsOut, auto scan) {
        const auto start = std::chrono::steady_clock::now();
        benchmark::DoNotOptimize(scan());
        *secondsOut +=
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    };
    for (auto _ : state) {
        double seconds = 0.0;
        timed(&seconds, [&] { return ScanWithReader(*reader); });
        state.SetIterationTime(seconds);
        readerSeconds += seconds;
        timed(&librarySeconds, [&] { return ScanWithLibrary(text); });
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
    state.counters["time_to_from_chars"] = readerSeconds / librarySeconds;
}
BENCHMARK(ReaderNumbers)->UseManualTime()->Unit(benchmark::kMillisecond);

void LibraryNumbers(benchmark::State& state)
{
    const std::string text = VertexText();
    for (auto _ : state)
        benchmark::DoNotOptimize(ScanWithLibrary(text));
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(LibraryNumbers)->Unit(benchmark::kMillisecond);

void ReaderWords(benchmark::State& state)
{
    const std::string text = VertexText();
    const auto reader = ReaderOf(text);
    for (auto _ : state) {
        TokenBuffer word;
        reader->SeekRelative(INT32_MIN);
        while (reader->SkipSpace() == 0)
            benchmark::DoNotOptimize(reader->ReadWord(word));
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}
BENCHMARK(ReaderWords)->Unit(benchmark::kMillisecond);

} // namespace
