#pragma once

/// Called for each search for a texture of a scene, with the name and the path; the path is empty
/// if it was not found. Scenes from QSB files forget the names of such textures. Null: not called.
extern void (*gTextureSearchSink)(const char* name, const char* path);
