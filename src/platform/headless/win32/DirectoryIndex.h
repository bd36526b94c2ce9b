#pragma once

#include <string>

namespace headless {

/// The entry of `directory` ("" is the current one) that equals `name` except for case: the first
/// in byte order if there are several, empty if there is none. A large directory is indexed, so
/// that a run over 100,000 files does not read it for each of them; the index is dropped when the
/// directory's modification time changes.
std::string FindEntryIgnoringCase(const std::string& directory, const std::string& name);

/// This process has just created, replaced or removed the entry at `path`. Updates the index, which
/// would otherwise be rebuilt as for an outside change. Out of memory, it drops the index.
void NoteEntryChanged(const std::string& path) noexcept;

} // namespace headless
