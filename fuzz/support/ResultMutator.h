#pragma once

#include <cstdint>

#include "batch/SceneJob.h"
#include "fuzz/support/Dice.h"

/// Changes one thing of what a worker tells of a job.
inline void ChangeResult(SceneResult& result, Dice& dice)
{
    static constexpr const char* kTexts[] = {"", "a", "/a/b.png", "\xFF\n", "Can not open file"};
    switch (dice.Below(7)) {
    case 0:
        result.status = static_cast<SceneStatus>(dice.Below(kSceneStatuses));
        break;
    case 1:
        result.messages.push_back({static_cast<uint16_t>(dice.Bits()),
                                   static_cast<MessageLevel>(dice.Below(3)), dice.Pick(kTexts),
                                   dice.Pick(kTexts), dice.Below(3)});
        break;
    case 2:
        result.inputs.push_back({dice.Pick(kTexts), dice.OneIn(2), {dice.Bits(), 1, {}}});
        break;
    case 3:
        result.thumb.assign(dice.Below(40), 'x');
        break;
    case 4:
        result.counts.vertices = dice.Bits();
        break;
    case 5:
        result.seconds = dice.OneIn(2) ? -1 : __builtin_nan("");
        break;
    default:
        result.messages.resize(dice.Below(3));
        break;
    }
}
