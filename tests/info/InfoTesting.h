#pragma once

#include <string>
#include <vector>

#include "info/LoadedScene.h"
#include "info/Output.h"
#include "tests/support/QsbBytes.h"
#include "tests/support/SceneEngine.h"

/// A mesh of one triangle, (0, 0, 0), (1, 0, 0), (0, 1, 0), with texture coordinates and one material.
inline QsbMesh InfoTriangle(const std::string& name)
{
    QsbMesh mesh;
    mesh.object.kind = 1;
    mesh.object.name = name;
    mesh.fvf = 0x112;
    mesh.vertices.resize(3);
    mesh.vertices[1].position = {1, 0, 0};
    mesh.vertices[2].position = {0, 1, 0};
    mesh.faces = {{0, 1, 2}};
    mesh.materials.resize(1);
    mesh.textures.resize(1);
    return mesh;
}

inline QsbObject InfoHelper(const std::string& name, const std::string& parent = "")
{
    QsbObject object;
    object.kind = 4;
    object.name = name;
    object.parentName = parent;
    return object;
}

/// A scene with each kind of object: the mesh "Hull" below the helper "Keel", the camera "Eye" that
/// looks at the bone "Arm", and the light "Sun".
inline QsbFile InfoBoat()
{
    QsbFile file;
    file.scene.objects = {InfoHelper("Keel"), InfoHelper("Arm", "Keel")};
    file.scene.objects[1].kind = 2;
    file.scene.meshes = {InfoTriangle("Hull")};
    file.scene.meshes[0].object.parentName = "Keel";
    file.scene.cameras.resize(1);
    file.scene.cameras[0].target.object.kind = 8;
    file.scene.cameras[0].target.object.name = "Eye";
    file.scene.cameras[0].target.targetName = "Arm";
    file.scene.lights.resize(1);
    file.scene.lights[0].target.object.kind = 32;
    file.scene.lights[0].target.object.name = "Sun";
    return file;
}

/// Loads files from bytes, with its own engine and directory.
class InfoTest : public SceneEngineTest {
protected:
    ~InfoTest() override
    {
        // Its directory may only contain what a test wrote itself.
        EXPECT_FALSE(directory.Has("logfile.txt"));
    }

    /// Writes the bytes under a name and loads them.
    void LoadBytes(LoadedScene& loaded, const std::string& bytes,
                   const std::string& name = "scene.qsb")
    {
        directory.Write(name, bytes);
        EXPECT_TRUE(loaded.Load(name)) << loaded.errorText;
    }
    void Load(LoadedScene& loaded, const QsbFile& file, const std::string& name = "scene.qsb")
    {
        LoadBytes(loaded, MakeQsb(file).bytes, name);
    }
    /// The output of `print(loaded, output)` for a file.
    template <class Print>
    std::string Printed(const QsbFile& file, Print print)
    {
        LoadedScene loaded;
        Load(loaded, file);
        Output output;
        print(loaded, output);
        return output.Text();
    }
};
