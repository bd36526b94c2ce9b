#pragma once

/// Told of each search for a texture of a scene, with the name and the path; the path is empty for one
/// that was not found. Scenes from QSB files forget the names of such textures. Null: nobody is told.
extern void (*gTextureSearchSink)(const char* name, const char* path);
