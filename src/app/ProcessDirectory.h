#pragma once

/// Converts every match of `gFilePattern` in the current directory and, with /s, in every directory
/// below it, depth first, files before subdirectories. Hidden and system entries are skipped, and
/// so is a link that leads back to a directory above it in the walk. Prints a line for each file.
/// Restores the current directory.
void ProcessDirectory();

/// Splits `gFilePattern` at its last separator, makes its directory the current one, converts what
/// the leaf part matches and restores the current directory. A directory that cannot be entered
/// is an empty run.
void ProcessFilePattern();
