#pragma once

#include "info/LoadedScene.h"
#include "info/Output.h"

/// Prints the short report for people. Long lists are cut, with a count of the rest, unless `all`.
void PrintReport(LoadedScene& loaded, bool all, Output& output);

/// Prints the hierarchy by parent links, one object per line, with what it is. Objects whose
/// parents form a cycle come last, each cycle starting at one of its members.
void PrintTree(LoadedScene& loaded, Output& output);

/// Prints the scene as one JSON document, described in docs/qsbinfo.md.
void PrintJson(LoadedScene& loaded, Output& output);

/// Prints, for each material with an effect, the technique that it is drawn with, and why each one
/// before it does not run. Loads the effects.
void PrintEffects(LoadedScene& loaded, Output& output);

/// Prints what is wrong with the scene, one line each, or that nothing is; then returns true. The
/// reader's warnings are printed too, but are not faults.
bool PrintCheck(LoadedScene& loaded, Output& output);

/// Prints the warnings of a load, indented, one per line; nothing if there are none.
void PrintWarnings(const LoadedScene& loaded, bool all, Output& output);
