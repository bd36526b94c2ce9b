#pragma once

#include "app/Banner.h"
#include "scene/KRE_3dScene.h"

/// The scene on show. Stale between files: use it only while a file is being processed.
extern KRE_3dScene* gCurrentScene;

/// One scene file during its conversion; owns everything that belongs to it. Errors pass through all
/// operations.
class SceneSession {
public:
    /// Loads the scene and fits settings, projection, camera and lights to it. Added objects are stored
    /// in the target file too.
    void Load(const char* fileName);
    /// Objects that the file itself has, without default lights.
    int32_t ObjectsInFile() const { return objectsInFile; }
    /// The scene, loaded; owned here.
    KRE_3dScene& Scene() { return scene; }
    /// Writes the scene as QSB.
    void Save(const char* targetName);
    /// Draws the scene at the current time, with `banner` over it, into the back buffer.
    void DrawFrame(const char (&banner)[kBannerSize]);
    /// Draws the frame and presents it.
    void ShowFrame(const char (&banner)[kBannerSize]);

private:
    void PrepareSettings();
    void PrepareView();
    void ChooseCamera();
    void AddDefaultLights();
    double FrameTime(double now) const;
    double FramesPerSecond(double now) const;

    // In this order, so that the scene is destroyed first.
    KRE_Light light;   ///< template of the default lights
    KRE_Camera camera; ///< looks at the scene if it has no camera of its own
    KRE_3dScene scene;
    int32_t objectsInFile = 0;
    int cameraIndex = -1;    ///< the scene's camera in use, -1 for the free one
    float sceneEnd = 100.0f; ///< seconds
    double t0 = 0.0;         ///< seconds on the clock, when the scene was ready
    double startTime = 0.0;  ///< seconds in the scene
};
