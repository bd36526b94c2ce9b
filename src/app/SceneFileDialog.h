#pragma once

/// Asks for the scene file to open, in `gFilePattern`. False if the user cancels, which leaves the
/// pattern empty.
bool AskForSceneFile();
