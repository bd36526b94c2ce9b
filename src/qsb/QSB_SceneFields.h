#pragma once

#include "qsb/QSB_Archive.h"
#include "scene/KRE_3dScene.h"

// What files store for scenes, objects and their keys: one list for each record, in file order.
// docs/qsb-format.md describes the records; docs/extending.md says how to add a field.

// ---- Keys of objects

/// Positions and scales.
template <class Archive, class Key>
void VectorKeyFields(Archive& archive, Key& key)
{
    archive.Real("time", key.time);
    archive.Whole("interpolation", key.interpolation);
    archive.Vector("value", key.value);
    archive.Vector("inTangent", key.inTangent);
    archive.Vector("outTangent", key.outTangent);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_PosKeyData>& key)
{
    VectorKeyFields(archive, key);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_ScaleKeyData>& key)
{
    VectorKeyFields(archive, key);
}

/// Inlined: scenes hold millions of them.
template <class Archive>
[[gnu::always_inline]] inline void Fields(Archive& archive, Stored<Archive, KRE_RotKeyData>& key)
{
    archive.Real("time", key.time);
    archive.Whole("interpolation", key.interpolation);
    archive.Vector("axis", key.axis);
    archive.Real("angle", key.angle);
    archive.Real("tension", key.tension);
    archive.Real("continuity", key.continuity);
    archive.Real("bias", key.bias);
    archive.Real("easeIn", key.easeIn);
    archive.Real("easeOut", key.easeOut);
    archive.Quaternion("rotation", key.rotation);
    archive.Quaternion("inControl", key.inControl);
    archive.Quaternion("outControl", key.outControl);
}

// ---- Objects

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_3dObject>& node)
{
    archive.Whole("objectKind", node.objectKind);
    archive.Matrix("initTM", node.initTM);
    archive.Vector("mirror", node.mirror);
    archive.Vector("position", node.position);
    archive.Vector("scale", node.scale);
    archive.Vector("rotationAxis", node.rotationAxis);
    archive.Real("rotationAngle", node.rotationAngle);
    archive.AffineMatrix("pivotTM", node.pivotTM);
    archive.Name(node.name);
    archive.Text("parentName", node.parentName);
    archive.Flags({{"inheritPosition", node.inheritPosition},
                   {"inheritScale", node.inheritScale},
                   {"inheritRotation", node.inheritRotation},
                   {"inheritMirror", node.inheritMirror}});
    if (!archive.Keys("posKeyCount", "position keys", node.posKeys, node.posKeyCount))
        node.Error("numPosKey does not match actual size");
    if (!archive.Keys("rotKeyCount", "rotation keys", node.rotKeys, node.rotKeyCount))
        node.Error("numRotKey does not match actual size");
    if (!archive.Keys("scaleKeyCount", "scale keys", node.scaleKeys, node.scaleKeyCount))
        node.Error("numScaleKey does not match actual size");
    archive.Whole("loop", node.loop);
    archive.Real("loopEnd", node.loopEnd);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_Target3dObject>& node)
{
    BaseFields<KRE_3dObject>(archive, node);
    archive.Text("targetName", node.targetName);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_Camera>& camera)
{
    BaseFields<KRE_Target3dObject>(archive, camera);
    archive.Real("fov", camera.fov);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_Light>& light)
{
    BaseFields<KRE_Target3dObject>(archive, light);
    archive.Whole("lightOn", light.lightOn);
    archive.Whole("lightMode", light.lightMode);
    auto& device = light.light;
    archive.Whole("type", device.Type);
    archive.Color("diffuse", device.Diffuse);
    archive.Color("specular", device.Specular);
    archive.Color("ambient", device.Ambient);
    archive.Vector("lightPosition", device.Position);
    archive.Vector("lightDirection", device.Direction);
    archive.Real("range", device.Range);
    archive.Real("falloff", device.Falloff);
    archive.Real("attenuation0", device.Attenuation0);
    archive.Real("attenuation1", device.Attenuation1);
    archive.Real("attenuation2", device.Attenuation2);
    archive.Real("theta", device.Theta);
    archive.Real("phi", device.Phi);
}

// ---- Meshes

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_ClipObject>& clip)
{
    archive.Whole("clipMode", clip.clipMode);
    archive.Real("radius", clip.radius);
    archive.Vector("center", clip.center);
    archive.Vector("boxMin", clip.boxMin);
    archive.Vector("boxMax", clip.boxMax);
}

template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_BoneInfo>& bone)
{
    archive.Text("name", bone.name);
    archive.Matrix("boneInitTM", bone.boneInitTM);
    archive.Matrix("meshInitTM", bone.meshInitTM);
}

/// What comes before a mesh's vertices and faces.
struct QSB_Geometry {
    int32_t vertexCount = 0;
    int32_t faceCount = 0;
    DWORD fvf = 0;
};

template <class Archive>
void Fields(Archive& archive, Stored<Archive, QSB_Geometry>& geometry)
{
    archive.Whole("vertexCount", geometry.vertexCount);
    archive.Whole("faceCount", geometry.faceCount);
    archive.Bits("fvf", geometry.fvf);
}

/// An archive of meshes has four more operations: materials with their textures, the number of bones,
/// the geometry of a mesh that is not a clone, and the bones.
template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_Mesh>& mesh)
{
    BaseFields<KRE_3dObject>(archive, mesh);
    BaseFields<KRE_ClipObject>(archive, mesh);
    archive.Whole("ownGeometry", mesh.ownGeometry);
    archive.Whole("visible", mesh.visible);
    archive.Whole("hasTransparency", mesh.hasTransparency);
    archive.Materials("materialCount", mesh);
    archive.Text("cloneSource", mesh.cloneSource);
    archive.BoneCount("boneCount", mesh);
    archive.Geometry(mesh);
    archive.Whole("userTag", mesh.userTag);
    archive.Bones(mesh);
}

// ---- Scenes

/// The scene itself: its background picture, settings and lists of objects follow.
template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_3dScene>& scene)
{
    BaseFields<KRE_3dObject>(archive, scene);
    if (archive.Has(kQsbSceneBounds))
        BaseFields<KRE_ClipObject>(archive, scene);
    archive.Bits("ambientColor", scene.ambientColor);
    archive.Bits("backgroundColor", scene.backgroundColor);
}

/// `disableLightsAfter` is not stored.
template <class Archive>
void Fields(Archive& archive, Stored<Archive, KRE_SceneSettings>& settings)
{
    archive.Whole("clearBackground", settings.clearBackground);
    archive.Whole("mirrorView", settings.mirrorView);
    archive.Whole("reserved", settings.reserved);
    archive.Whole("showObjects", settings.showObjects);
    archive.Whole("showLights", settings.showLights);
    archive.Whole("useAmbient", settings.useAmbient);
    archive.Whole("useLights", settings.useLights);
    archive.Whole("useFog", settings.useFog);
    archive.Whole("sortTransparent", settings.sortTransparent);
    archive.Whole("showHierarchy", settings.showHierarchy);
    archive.Bits("fogColor", settings.fogColor);
    archive.Whole("fogMode", settings.fogMode);
    archive.Whole("fogPerVertex", settings.fogPerVertex);
    archive.Real("fogStart", settings.fogStart);
    archive.Real("fogEnd", settings.fogEnd);
    archive.Real("fogDensity", settings.fogDensity);
    if (archive.Has(kQsbEffectNames))
        archive.Whole("drawTransparentOnly", settings.drawTransparentOnly);
}
