#pragma once

/// Converts every match of `gFilePattern` in the current directory and, under /s, in every directory
/// below it, depth first, files before subdirectories. Hidden and system entries are left out, and
/// so is a link that leads back to a directory on the way down. Prints a line for each file.
/// The current directory is the one from before on return.
void ProcessDirectory();

/// Splits `gFilePattern` at its last separator, makes its directory the current one, converts what
/// the leaf part names and returns to the directory from before. A directory that cannot be entered
/// is an empty run.
void ProcessFilePattern();
