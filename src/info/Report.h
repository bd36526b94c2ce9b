#pragma once

#include "info/LoadedScene.h"
#include "info/Output.h"

/// The short report for people. Long lists are cut with a count of the rest, unless `all`.
void PrintReport(LoadedScene& loaded, bool all, Output& output);

/// The hierarchy by parent links, an object a line, with what it is. Objects whose parents lead in a
/// circle stand at the end, each circle at one of its members.
void PrintTree(LoadedScene& loaded, Output& output);

/// The scene as one JSON document, described in docs/qsbinfo.md.
void PrintJson(LoadedScene& loaded, Output& output);

/// For each material with an effect the technique that it is drawn with, and why none of those before
/// it. Loads the effects.
void PrintEffects(LoadedScene& loaded, Output& output);

/// What is wrong with the scene, a line each, or that nothing is; true then. The reader's warnings
/// are told and are no fault.
bool PrintCheck(LoadedScene& loaded, Output& output);

/// The warnings of a load, indented, a line each; nothing without any.
void PrintWarnings(const LoadedScene& loaded, bool all, Output& output);
