#pragma once

/// While it lives, pictures and effects of QSB files are looked for in this directory and not in that of the
/// file: a target that was written elsewhere finds those of its source. Empty for the current directory. One
/// at a time.
class SceneDirectory {
public:
    /// The text has to live as long.
    explicit SceneDirectory(const char* directory);
    ~SceneDirectory();
    SceneDirectory(const SceneDirectory&) = delete;
    SceneDirectory& operator=(const SceneDirectory&) = delete;
};
