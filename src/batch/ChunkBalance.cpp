#include "batch/ChunkBalance.h"

#include <algorithm>
#include <functional>
#include <queue>
#include <tuple>

std::vector<SceneChunk> BalancedChunks(const std::vector<ChunkScene>& scenes, size_t chunkCount)
{
    std::vector<const ChunkScene*> order;
    order.reserve(scenes.size());
    for (const ChunkScene& scene : scenes)
        order.push_back(&scene);
    std::sort(order.begin(), order.end(), [](const ChunkScene* a, const ChunkScene* b) {
        return a->sizeBytes != b->sizeBytes ? a->sizeBytes > b->sizeBytes : a->path < b->path;
    });
    std::vector<SceneChunk> chunks(std::min(chunkCount, scenes.size()));
    using Place = std::tuple<uint64_t, size_t, size_t>; // bytes, scenes, number
    std::priority_queue<Place, std::vector<Place>, std::greater<>> places;
    for (size_t i = 0; i < chunks.size(); ++i)
        places.emplace(0, 0, i);
    for (const ChunkScene* const scene : order) {
        const size_t number = std::get<2>(places.top());
        places.pop();
        SceneChunk& chunk = chunks[number];
        chunk.scenes.push_back(scene);
        chunk.sizeBytes += scene->sizeBytes;
        places.emplace(chunk.sizeBytes, chunk.scenes.size(), number);
    }
    return chunks;
}

size_t ChunkCountFor(const std::vector<ChunkScene>& scenes, uint64_t chunkBytes)
{
    uint64_t total = 0;
    for (const ChunkScene& scene : scenes)
        total += scene.sizeBytes;
    const uint64_t count = total / chunkBytes + (total % chunkBytes != 0);
    return static_cast<size_t>(std::max<uint64_t>(1, count));
}
