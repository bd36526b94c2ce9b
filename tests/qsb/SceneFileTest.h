#pragma once

#include <filesystem>
#include <string>

#include "check/CheckScene.h"
#include "scene/KRE_3dScene.h"
#include "tests/gfx/ErrorText.h"
#include "tests/support/QsbBytes.h"
#include "tests/support/SceneEngine.h"

inline constexpr uint32_t kBumpMaps = 2; ///< a flag of `Load`

/// Loads and saves scenes in its own directory.
class SceneFileTest : public SceneEngineTest {
protected:
    /// Writes the bytes as "scene.qsb" and loads it.
    void LoadBytes(KRE_3dScene& scene, const std::string& bytes, uint32_t flags = 0)
    {
        std::filesystem::remove("scene.qsb"); // overwriting it would wait for the disk
        directory.Write("scene.qsb", bytes);
        gGfx->LoadScene(scene, "scene.qsb", flags);
    }
    void Load(KRE_3dScene& scene, const QsbFile& file, uint32_t flags = 0)
    {
        LoadBytes(scene, MakeQsb(file).bytes, flags);
        EXPECT_EQ(CheckScene(scene), "");
    }
    /// The error of a load of the bytes; "" if it succeeds.
    std::string LoadError(const std::string& bytes, uint32_t flags = 0)
    {
        KRE_3dScene scene;
        return ErrorText([&] { LoadBytes(scene, bytes, flags); });
    }
    /// The bytes of the saved scene.
    std::string Saved(KRE_3dScene& scene)
    {
        gGfx->SaveScene(scene, "saved.qsb");
        return directory.Read("saved.qsb");
    }
    /// The bytes after a load and a save.
    std::string Resaved(const std::string& bytes, uint32_t flags = 0)
    {
        KRE_3dScene scene;
        LoadBytes(scene, bytes, flags);
        EXPECT_EQ(CheckScene(scene), "");
        return Saved(scene);
    }
};
