#pragma once

// The file dialogs. Both write into `gFilePattern`, which is also the pattern of the directory walk.

/// Asks for the scene file to open, in `gFilePattern`. False if the user cancels, which leaves the
/// pattern empty.
bool AskForSceneFile();

/// Asks for the name to save a scene under, in `gFilePattern`; nothing is added to what the user types.
/// False if the user cancels, which leaves the pattern empty.
/// QUIRK: a walk with /s continues with the changed pattern, so after a cancelled dialog it finds
/// nothing more.
bool AskForTargetFile();
