#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "info/FieldList.h"
#include "info/LoadedScene.h"
#include "info/Output.h"
#include "info/SceneFields.h"

struct DiffOptions {
    /// Floats that differ by no more than this are the same; without a value, floats that the file
    /// format rounds to the same number. Integers must be equal.
    std::optional<double> tolerance;
    bool all = false; ///< every line of an array, not only the first ones
};

/// Prints what differs between two scenes, one line "<path>: <first> | <second>" each.
class SceneDiff {
public:
    static constexpr int64_t kMostLines = 10; ///< of one array

    SceneDiff(const DiffOptions& optionsIn, Output& outputIn) : options(optionsIn), output(outputIn)
    {}
    SceneDiff(const SceneDiff&) = delete;
    SceneDiff& operator=(const SceneDiff&) = delete;

    /// Compares everything that files store except the scene's name, which is that of its file.
    /// Objects are paired by list and name; those of the same name by their order. Returns the
    /// number of differences.
    int64_t Compare(LoadedScene& first, LoadedScene& second);

private:
    template <class List, class ComparePair>
    void CompareLists(const char* listName, List& first, List& second, ComparePair comparePair);
    void CompareMeshes(const std::string& path, KRE_Mesh& first, KRE_Mesh& second);
    void CompareGeometry(const std::string& path, KRE_Mesh& first, KRE_Mesh& second);
    void CompareKeys(const std::string& path, const KRE_3dObject& first,
                     const KRE_3dObject& second);
    void CompareMaterials(const std::string& path, const KRE_MaterialInfo& first,
                          const KRE_MaterialInfo& second);
    void CompareTextures(const std::string& path, const KRE_Texture& first,
                         const KRE_Texture& second);
    template <class Key>
    void CompareKeyList(const std::string& path, const KRE_KeyList<Key>& first,
                        const KRE_KeyList<Key>& second);
    template <class Track>
    void CompareTrack(const std::string& path, const Track& first, const Track& second);
    void CompareTracks(const std::string& path, const std::vector<NamedTrack>& first,
                       const std::vector<NamedTrack>& second);

    template <class Record>
    void CompareRecords(const std::string& path, const Record& first, const Record& second);
    /// Compares the elements that both arrays have; `add(isSecond, i, fields)` adds the fields of
    /// one.
    template <class Add>
    void CompareArray(const std::string& path, int64_t count, Add add);
    void CompareFieldLists(const std::string& path);
    void CompareFields(const std::string& path, const Field& first, const Field& second);
    bool IsSame(const Field& first, const Field& second, int32_t i) const;
    void Tell(const std::string& path, const std::string& first, const std::string& second);

    const DiffOptions options;
    Output& output;
    FieldList firstFields;
    FieldList secondFields;
    int64_t differences = 0;
    int64_t linesLeft = INT64_MAX; ///< of the current array
};
