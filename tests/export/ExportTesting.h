#pragma once

#include <string>

#include "export/ExportScene.h"
#include "gltf/NoticeList.h"
#include "tests/gltf/GltfDocument.h"
#include "tests/info/InfoTesting.h"

/// Exports scenes in its own directory.
class ExportTest : public InfoTest {
protected:
    /// Loads a scene from bytes and exports it.
    GltfDocument ExportBytes(LoadedScene& loaded, const std::string& bytes,
                             const std::string& name = "scene.qsb",
                             const std::string& target = "scene.glb")
    {
        LoadBytes(loaded, bytes, name);
        notices = {};
        EXPECT_EQ(ExportScene(loaded, target, notices), "");
        return GltfDocument(target);
    }
    GltfDocument Export(const QsbFile& file)
    {
        LoadedScene loaded;
        return ExportBytes(loaded, MakeQsb(file).bytes);
    }
    GltfDocument ExportText(const std::string& body)
    {
        LoadedScene loaded;
        return ExportBytes(loaded, "*3DSMAX_QSAEXPORT 211\n" + body, "scene.qsa");
    }

    NoticeList notices;
};
