#pragma once

#include <algorithm>
#include <limits>
#include <vector>

#include "import/Model.h"

/// The weights of a vertex that the converter keeps: those from 0.1 on, the largest four, with the sum 1. If all
/// are smaller, the largest one counts alone. In descending order. Takes finite weights.
inline std::vector<ModelWeight> KeptWeights(const std::vector<ModelWeight>& given)
{
    constexpr double kLeast = 0.1;
    constexpr size_t kMost = 4;
    std::vector<ModelWeight> kept;
    for (const ModelWeight& weight : given) {
        const auto same = std::find_if(kept.begin(), kept.end(), [&](const ModelWeight& other) {
            return other.joint == weight.joint;
        });
        if (same != kept.end())
            same->weight =
                std::min(same->weight + weight.weight, std::numeric_limits<float>::max());
        else if (weight.weight > 0)
            kept.push_back(weight);
    }
    std::stable_sort(kept.begin(), kept.end(), [](const ModelWeight& a, const ModelWeight& b) {
        return a.weight > b.weight;
    });
    const auto sum = [&kept] { // in double precision, as damaged files have the largest floats
        double all = 0;
        for (const ModelWeight& weight : kept)
            all += double{weight.weight};
        return all;
    };
    const double least = kLeast * sum();
    while (kept.size() > 1 && (kept.size() > kMost || kept.back().weight < least))
        kept.pop_back();
    const double all = sum();
    for (ModelWeight& weight : kept)
        weight.weight = static_cast<float>(weight.weight / all);
    return kept;
}
