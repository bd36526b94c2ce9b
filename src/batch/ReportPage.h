#pragma once

#include <string>
#include <vector>

#include "batch/SceneJob.h"

/// A page that shows all scenes of a run, without anything from elsewhere: a card for each scene with its
/// frame, sizes, counts and messages, a search, and a filter by status. Of more than 5,000 scenes only
/// those that failed or have warnings get a card.
class ReportPage {
public:
    static constexpr size_t kMostCards = 5000;

    /// `sceneCount` is the number of scenes of the run.
    ReportPage(const std::string& path, size_t sceneCount);

    /// `isDrawn` tells whether the run draws frames.
    void Add(const std::string& path, const SceneResult& result, bool isDrawn);
    /// Replaces the file by the whole page. False, with `errno` set, if it cannot be written.
    bool Write();

private:
    std::string file;
    size_t sceneCount;
    std::string cards;
    size_t counts[kSceneStatuses] = {};
    size_t withWarnings = 0;
};
