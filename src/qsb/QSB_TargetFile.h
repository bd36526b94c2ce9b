#pragma once

#include "base/File.h"
#include "platform/ReplacementFile.h"

/// A file that is written next to its target and replaces it once complete. If writing ends before
/// that, for whatever reason, the target stays as it was. Messages name the target.
class QSB_TargetFile : public File {
public:
    QSB_TargetFile() = default;
    ~QSB_TargetFile() override;

    [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) override;

    /// Starts writing. False, with a `Warning`, if the target cannot be written; any write is then
    /// an `Error`.
    bool CreateFor(const char* targetPath);
    /// Puts the file in the target's place.
    void Finish();

private:
    String targetName;
    ReplacementFile replacement;
};
