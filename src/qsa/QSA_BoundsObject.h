#pragma once

class ErrorClass;
class KRE_3dScene;

/// Removes the first mesh named "Bounds" from the scene and makes its box the scene's bounds.
/// Clones of it keep their geometry; a `Warning` names the clone that owns it now. False if there
/// is no such mesh.
bool TakeBoundsObject(KRE_3dScene& scene, ErrorClass& report);
