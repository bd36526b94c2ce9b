#include "check/CheckScene.h"
#include "info/NameText.h"
#include "info/Report.h"

bool PrintCheck(LoadedScene& loaded, Output& output)
{
    SceneFaults faults;
    FindSceneFaults(loaded.scene, faults);
    const std::string file = ShownName(loaded.path);
    for (const SceneFault& fault : faults.Kept())
        output.Line({file, ": ", ShownName(fault.object), ": ", ShownName(fault.what)});
    const int64_t rest = faults.Count() - static_cast<int64_t>(faults.Kept().size());
    if (rest > 0)
        output.Line({file, ": and ", CountOf(rest, "fault", "faults"), " more"});
    if (faults.Count() == 0)
        output.Line({file, ": sound"});
    else
        output.Line({file, ": ", CountOf(faults.Count(), "fault", "faults")});
    PrintWarnings(loaded, false, output);
    return faults.Count() == 0;
}
