#pragma once

class ErrorClass;
class KRE_3dScene;

/// Takes the first mesh named "Bounds" out of the scene, and its box for the scene's bounds. Clones of
/// it keep their geometry; a `Warning` tells which of them owns it now. False if there is no such mesh.
bool TakeBoundsObject(KRE_3dScene& scene, ErrorClass& report);
