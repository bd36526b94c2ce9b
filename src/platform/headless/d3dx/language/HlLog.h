#pragma once

#include <string>
#include <vector>

#include "platform/headless/d3dx/effect/FxDiagnostics.h"

namespace headless::hl {

using fx::FxError;
using fx::FxPlace;

/// What a compiler has to say about a text.
struct HlMessage {
    FxPlace place;
    FxError kind = FxError::Syntax;
    std::string text;
    bool isWarning = false;
};

/// Collects errors and warnings, each place once: loops and calls come to the same text again.
class HlLog {
public:
    static constexpr size_t kMaxErrors = 20;
    static constexpr size_t kMaxWarnings = 100;

    /// Always returns false.
    bool Error(FxPlace place, FxError kind, std::string text)
    {
        hasFailed = true;
        if (errors < kMaxErrors && Add(place, kind, std::move(text), false))
            ++errors;
        return false;
    }
    void Warning(FxPlace place, FxError kind, std::string text)
    {
        if (messages.size() - errors < kMaxWarnings)
            Add(place, kind, std::move(text), true);
    }
    bool Failed() const { return hasFailed; }
    bool IsFull() const { return errors >= kMaxErrors; }
    size_t ErrorCount() const { return errors; }
    const std::vector<HlMessage>& Messages() const { return messages; }

private:
    bool Add(FxPlace place, FxError kind, std::string text, bool isWarning)
    {
        for (const HlMessage& other : messages)
            if (other.place.file == place.file && other.place.line == place.line &&
                other.place.column == place.column && other.isWarning == isWarning)
                return false;
        messages.push_back({place, kind, std::move(text), isWarning});
        return true;
    }

    std::vector<HlMessage> messages;
    size_t errors = 0;
    bool hasFailed = false;
};

} // namespace headless::hl
