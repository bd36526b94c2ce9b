#pragma once

// The file dialogs. Both write into `gFilePattern`, which is also the pattern of the directory walk.

/// Asks for the scene file to open, in `gFilePattern`. False if the user cancels, which leaves the
/// pattern empty.
bool AskForSceneFile();

/// Asks under which name to save a scene, in `gFilePattern`; nothing is added to what the user types.
/// False if the user cancels, which leaves the pattern empty.
/// QUIRK: a walk under /s goes on with what stands in the pattern then, so that after a cancelled
/// dialog it finds nothing more.
bool AskForTargetFile();
