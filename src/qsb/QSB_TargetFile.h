#pragma once

#include "base/File.h"
#include "platform/ReplacementFile.h"

/// A file that is written beside its target and takes its place when it is complete. Whatever ends
/// the writing before that leaves the target as it was. Messages name the target.
class QSB_TargetFile : public File {
public:
    QSB_TargetFile() = default;
    ~QSB_TargetFile() override;

    [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) override;

    /// Begins to write. False, with a `Warning`, if the target cannot be written; any write is an
    /// `Error` then.
    bool CreateFor(const char* targetPath);
    /// Puts the file in the target's place.
    void Finish();

private:
    String targetName;
    ReplacementFile replacement;
};
