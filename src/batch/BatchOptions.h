#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// How far workers are closed in, for scenes of strangers.
enum class Confining : uint8_t {
    kNo,
    kWhole,     ///< or nothing is converted
    kBestEffort ///< without the parts that are missing
};

/// What the command line requests.
struct BatchOptions {
    bool help = false;
    bool version = false;
    std::string error; ///< what is wrong with the command line; empty if nothing is

    // What is converted.
    std::vector<std::string> paths;
    std::vector<std::string> includes; ///< patterns of names; {"*.qsa"} unless others are given
    std::vector<std::string> excludes;
    std::string listFile; ///< of `--from-file`; "-" is standard input
    bool listHasNulls = false;
    bool import = false;       ///< models are imported, scenes are converted as they are
    std::string importOptions; ///< as on the importer's own command line

    // Where it goes.
    std::string outDirectory;    ///< empty: beside the source
    std::string framesDirectory; ///< empty: frames are not kept

    // How frames are drawn.
    bool draw = false; ///< also without keeping them
    int frameWidth = 320;
    int frameHeight = 240;
    std::optional<int> camera;
    std::optional<double> timeSeconds;
    bool loop = false;
    bool fit = false;
    bool noLight = false;
    bool noSpecular = false;
    bool zBuffer = false;

    // How it is done.
    int workers = 0;                   ///< 0: as many as processors
    double timeoutSeconds = 60;        ///< 0: none
    uint64_t memoryBytes = 4ull << 30; ///< 0: no limit
    bool failFast = false;
    bool strict = false;
    bool check = false;
    Confining confining = Confining::kNo;
    bool durable = false; ///< results are on the disk before they count as done

    // Only what changed.
    std::string stateFile; ///< empty: the default place
    bool force = false;
    bool dryRun = false;
    bool rehash = false;

    // What it says.
    bool quiet = false;
    bool verbose = false;
    std::string journalFile;
    bool keepsThumbs = false; ///< small pictures of the frames, for a page that is made later
    std::string reportFile;

    bool IsConfined() const { return confining != Confining::kNo; }
    bool Draws() const { return draw || !framesDirectory.empty(); }
    /// The options as the converter takes them, for the engine of the workers.
    std::string EngineOptions() const;
    /// Those that change the target; the same text means the same bytes.
    std::string TargetKey() const;
    /// Those that change the frame.
    std::string FrameKey() const;
};
