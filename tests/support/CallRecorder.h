#pragma once

#include <d3d9.h>

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The calls of a recording device and of the recording `IDirect3D9` that created it, in order, and
/// the failures that a test has planned for them. Tests share ownership with both, so it can be
/// read after they are gone.
class CallRecorder {
public:
    /// One line for each call: its name, then its arguments, separated by single blanks.
    const std::vector<std::string>& Lines() const { return lines; }

    /// The lines of the calls of one name.
    std::vector<std::string> LinesOf(std::string_view name) const;

    /// All lines, each followed by a line end.
    std::string Joined() const;

    void ClearLines() { lines.clear(); }

    /// The next call of this name returns `result` and does not reach the device; it is recorded
    /// all the same. Several orders for one name are used in order, one per call. With `match`,
    /// only a call whose line has these words (whole, in this order, adjacent) counts. Calls that
    /// do not return an HRESULT cannot fail.
    void FailNext(const char* name, HRESULT result, const char* match = "");

    /// The same for each such call until `ClearFailures`.
    void FailAlways(const char* name, HRESULT result, const char* match = "");

    void ClearFailures() { failures.clear(); }

    /// Orders of `FailNext` that no call has used yet; a test may expect 0 at its end.
    size_t FailuresLeft() const;

    // For the recording objects.

    struct Noted {
        size_t line;
        std::optional<HRESULT> failure; // the planned result, if one is due
    };

    /// Empty arguments are omitted.
    Noted Note(const char* name, std::initializer_list<std::string> arguments);

    /// Appends " -> result" to a recorded line, if it is still there.
    void NoteResult(size_t line, const std::string& result);

    /// `kind#1` for the first object of its kind that appears, then `kind#2`, ...; an object keeps
    /// its first name. "null" for null.
    std::string NameOfObject(const char* kind, const void* object);

    /// A name not used before, for an object that was just created: its address may be that of an
    /// object that is gone.
    std::string NameOfNewObject(const char* kind, const void* object);

private:
    struct Failure {
        std::string name;
        HRESULT result;
        std::string match;
        bool isLasting;
    };

    std::optional<HRESULT> TakeFailure(const char* name, const std::string& line);

    std::vector<std::string> lines;
    std::vector<Failure> failures;
    std::map<const void*, std::string> objectNames;
    std::map<std::string, int> objectCounts; // by kind
};
