#pragma once

#include <cstdint>

#include <d3d9.h>

/// Which markers of a list are drawn; 0 and above is one entry's index.
enum MarkerChoice : int32_t { kMarkersNone = -2, kMarkersAll = -1 };

class File;
class QSB_InputFile;

/// The display switches of a scene.
struct KRE_SceneSettings {
    int32_t clearBackground = 0; ///< clear or paint the background before drawing
    int32_t mirrorView = 0;      ///< draw through a view mirrored in X
    int32_t reserved = 0;
    int32_t showObjects = kMarkersNone;
    int32_t showLights = kMarkersNone;
    int32_t useAmbient = 0; ///< set the ambient colour at draw
    int32_t useLights = 1;  ///< set and enable the lights at draw
    int32_t useFog = 0;
    int32_t sortTransparent = 1; ///< opaque meshes first, transparent ones sorted
    int32_t showHierarchy = 0;   ///< a line from each object to its parent
    uint32_t fogColor = 0;       ///< 0xAARRGGBB
    int32_t fogMode = D3DFOG_EXP;
    int32_t fogPerVertex = 1; ///< 0: per pixel, from the fog table
    float fogStart = 0.0f;    ///< linear fog, with `fogEnd`
    float fogEnd = 1.0f;
    float fogDensity = 0.5f;         ///< exponential fog
    int32_t drawTransparentOnly = 1; ///< the sorted pass leaves out the opaque meshes
    int32_t disableLightsAfter = 1;  ///< switch the scene's lights off after drawing; not stored

    /// As in QSB files; a load leaves what the file does not hold at its default.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);
};
static_assert(D3DFOG_EXP == 1);
