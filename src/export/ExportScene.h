#pragma once

#include <string>
#include <vector>

class LoadedScene;
class NoticeList;

/// Writes a loaded scene as glTF 2.0: one file if the name ends in ".glb", otherwise a text with its
/// buffer and pictures beside it. What is not carried is added to `notices`. Returns what is wrong, or an
/// empty text. Changes the scene: its animations no longer repeat.
std::string ExportScene(LoadedScene& loaded, const std::string& path, NoticeList& notices);
