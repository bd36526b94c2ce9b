#pragma once

#include <string>

namespace headless {

/// The entry of `directory` ("" is the current one) that equals `name` but for letter case: the
/// first in byte order if there are several, empty if there is none.
/// A large directory is indexed, so that a run over 100,000 files does not read it for each of them;
/// the index is dropped when the directory's time of change moves.
std::string FindEntryIgnoringCase(const std::string& directory, const std::string& name);

/// Tells that this process has just made, replaced or removed the entry at `path`, which would
/// otherwise look like somebody else's change and cost a new index. Without memory the index is
/// dropped: the file is made or removed all the same.
void NoteEntryChanged(const std::string& path) noexcept;

} // namespace headless
