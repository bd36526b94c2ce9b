#pragma once

class File;
class KRE_3dScene;

/// Writes all of a QSB file, with the header of the scene that was loaded last, to a file that is open for
/// writing. Does not close it.
void WriteScene(KRE_3dScene& scene, File& file);
