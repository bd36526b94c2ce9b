#pragma once

#include <algorithm>
#include <vector>

#include "import/Model.h"

/// The weights of a vertex that the converter keeps: those from 0.1 on, the largest four, with the sum 1. If all
/// are smaller, the largest one counts alone. In descending order.
inline std::vector<ModelWeight> KeptWeights(const std::vector<ModelWeight>& given)
{
    constexpr float kLeast = 0.1f;
    constexpr size_t kMost = 4;
    std::vector<ModelWeight> kept;
    for (const ModelWeight& weight : given) {
        const auto same = std::find_if(kept.begin(), kept.end(), [&](const ModelWeight& other) {
            return other.joint == weight.joint;
        });
        if (same != kept.end())
            same->weight += weight.weight;
        else if (weight.weight > 0)
            kept.push_back(weight);
    }
    std::stable_sort(kept.begin(), kept.end(), [](const ModelWeight& a, const ModelWeight& b) {
        return a.weight > b.weight;
    });
    float all = 0;
    for (const ModelWeight& weight : kept)
        all += weight.weight;
    while (kept.size() > 1 && (kept.size() > kMost || kept.back().weight < kLeast * all)) {
        kept.pop_back();
    }
    float sum = 0;
    for (const ModelWeight& weight : kept)
        sum += weight.weight;
    for (ModelWeight& weight : kept)
        weight.weight /= sum;
    return kept;
}
