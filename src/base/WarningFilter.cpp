#include "base/WarningFilter.h"

#include <cstring>

#include "base/FormatText.h"
#include "base/Log.h"

void FilterWarning(const WarningState& state, const char* text)
{
    if (gLogSink) { // it handles repeats itself
        LogWrite("%s", text);
        return;
    }
    // QUIRK: a text that exceeds its buffer is truncated when it is stored, so it never equals the stored
    // text and each of its repeats is logged.
    if (std::strcmp(text, state.lastText) == 0) {
        if (state.repeat < kMaxWarningRepeat)
            ++state.repeat;
        return;
    }
    CopyText(state.lastText, static_cast<size_t>(state.lastTextSize), text);
    // QUIRK: the very first warning is never remembered, so its first repeat is logged once more.
    if (state.count == 0)
        state.lastText[0] = 0;

    if (state.repeat >= kMaxWarningRepeat)
        LogWrite("Warning Repeat: >%i", static_cast<int>(state.repeat));
    else if (state.repeat > 0)
        LogWrite("Warning Repeat: %i", static_cast<int>(state.repeat));
    ++state.count;
    state.repeat = 0;
    LogWrite("%s", text);
    if (state.count == kMaxWarnings)
        LogWrite("%s", state.limitMessage);
}

void FlushWarningRepeat(uint32_t& repeat)
{
    if (repeat == 0)
        return;
    LogWrite("Warning Repeat: %i", static_cast<int>(repeat));
    repeat = 0;
}
