#include "info/SceneFields.h"

void AddHeaderFields(const QSA_SceneHeader& header, FieldList& fields)
{
    fields.Real("frameSpeed", header.frameSpeed);
    fields.Real("firstFrame", header.firstFrame);
    fields.Real("lastFrame", header.lastFrame);
    fields.Text("soundFile", header.soundFile.c_str());
    fields.Text("scriptFile", header.scriptFile.c_str());
}

static void AddClipFields(const KRE_ClipObject& clip, FieldList& fields)
{
    fields.Whole("clipMode", clip.clipMode);
    fields.Real("radius", clip.radius);
    fields.Vector("center", clip.center);
    fields.Vector("boxMin", clip.boxMin);
    fields.Vector("boxMax", clip.boxMax);
}

void AddSceneFields(const KRE_3dScene& scene, FieldList& fields)
{
    AddNodeFields(scene, fields);
    AddClipFields(scene, fields);
    fields.Bits("ambientColor", scene.ambientColor);
    fields.Bits("backgroundColor", scene.backgroundColor);
}

void AddSettingsFields(const KRE_SceneSettings& settings, FieldList& fields)
{
    fields.Whole("clearBackground", settings.clearBackground);
    fields.Whole("mirrorView", settings.mirrorView);
    fields.Whole("reserved", settings.reserved);
    fields.Whole("showObjects", settings.showObjects);
    fields.Whole("showLights", settings.showLights);
    fields.Whole("useAmbient", settings.useAmbient);
    fields.Whole("useLights", settings.useLights);
    fields.Whole("useFog", settings.useFog);
    fields.Whole("sortTransparent", settings.sortTransparent);
    fields.Whole("showHierarchy", settings.showHierarchy);
    fields.Bits("fogColor", settings.fogColor);
    fields.Whole("fogMode", settings.fogMode);
    fields.Whole("fogPerVertex", settings.fogPerVertex);
    fields.Real("fogStart", settings.fogStart);
    fields.Real("fogEnd", settings.fogEnd);
    fields.Real("fogDensity", settings.fogDensity);
    fields.Whole("drawTransparentOnly", settings.drawTransparentOnly);
}

// ---- Objects

void AddNodeFields(const KRE_3dObject& node, FieldList& fields)
{
    fields.Whole("objectKind", node.objectKind);
    fields.Matrix("initTM", node.initTM);
    fields.Vector("mirror", node.mirror);
    fields.Vector("position", node.position);
    fields.Vector("scale", node.scale);
    fields.Vector("rotationAxis", node.rotationAxis);
    fields.Real("rotationAngle", node.rotationAngle);
    fields.Matrix("pivotTM", node.pivotTM);
    fields.Text("parentName", node.parentName.c_str());
    fields.Whole("inheritPosition", node.inheritPosition);
    fields.Whole("inheritScale", node.inheritScale);
    fields.Whole("inheritRotation", node.inheritRotation);
    fields.Whole("inheritMirror", node.inheritMirror);
    fields.Whole("posKeyCount", node.posKeyCount);
    fields.Whole("rotKeyCount", node.rotKeyCount);
    fields.Whole("scaleKeyCount", node.scaleKeyCount);
    fields.Whole("loop", node.loop);
    fields.Real("loopEnd", node.loopEnd);
}

void AddMeshFields(const KRE_Mesh& mesh, FieldList& fields)
{
    AddNodeFields(mesh, fields);
    AddClipFields(mesh, fields);
    fields.Whole("ownGeometry", mesh.ownGeometry);
    fields.Whole("visible", mesh.visible);
    fields.Whole("hasTransparency", mesh.hasTransparency);
    fields.Whole("materialCount", mesh.materialCount);
    fields.Text("cloneSource", mesh.cloneSource.c_str());
    fields.Whole("boneCount", mesh.bones.Count());
    fields.Whole("vertexCount", mesh.vertexCount);
    fields.Whole("faceCount", mesh.faceCount);
    fields.Bits("fvf", mesh.fvf);
    fields.Whole("userTag", mesh.userTag);
}

static void AddTargetFields(const KRE_Target3dObject& node, FieldList& fields)
{
    AddNodeFields(node, fields);
    fields.Text("targetName", node.targetName.c_str());
}

void AddCameraFields(const KRE_Camera& camera, FieldList& fields)
{
    AddTargetFields(camera, fields);
    fields.Real("fov", camera.fov);
}

void AddLightFields(const KRE_Light& light, FieldList& fields)
{
    const D3DLIGHT9& device = light.light;
    AddTargetFields(light, fields);
    fields.Whole("lightOn", light.lightOn);
    fields.Whole("lightMode", light.lightMode);
    fields.Whole("type", static_cast<int64_t>(device.Type));
    fields.Color("diffuse", device.Diffuse);
    fields.Color("specular", device.Specular);
    fields.Color("ambient", device.Ambient);
    fields.Vector("lightPosition", device.Position);
    fields.Vector("lightDirection", device.Direction);
    fields.Real("range", device.Range);
    fields.Real("falloff", device.Falloff);
    fields.Real("attenuation0", device.Attenuation0);
    fields.Real("attenuation1", device.Attenuation1);
    fields.Real("attenuation2", device.Attenuation2);
    fields.Real("theta", device.Theta);
    fields.Real("phi", device.Phi);
}

void AddBoneFields(const KRE_BoneInfo& bone, FieldList& fields)
{
    fields.Text("name", bone.name);
    fields.Matrix("boneInitTM", bone.boneInitTM);
    fields.Matrix("meshInitTM", bone.meshInitTM);
}

// ---- Keys

template <class Key>
static void AddVectorKeyFields(const Key& key, FieldList& fields)
{
    fields.Real("time", key.time);
    fields.Whole("interpolation", key.interpolation);
    fields.Vector("value", key.value);
    fields.Vector("inTangent", key.inTangent);
    fields.Vector("outTangent", key.outTangent);
}

void AddKeyFields(const KRE_PosKeyData& key, FieldList& fields)
{
    AddVectorKeyFields(key, fields);
}

void AddKeyFields(const KRE_ScaleKeyData& key, FieldList& fields)
{
    AddVectorKeyFields(key, fields);
}

void AddKeyFields(const KRE_RotKeyData& key, FieldList& fields)
{
    fields.Real("time", key.time);
    fields.Whole("interpolation", key.interpolation);
    fields.Vector("axis", key.axis);
    fields.Real("angle", key.angle);
    fields.Real("tension", key.tension);
    fields.Real("continuity", key.continuity);
    fields.Real("bias", key.bias);
    fields.Real("easeIn", key.easeIn);
    fields.Real("easeOut", key.easeOut);
    fields.Quaternion("rotation", key.rotation);
    fields.Quaternion("inControl", key.inControl);
    fields.Quaternion("outControl", key.outControl);
}

// ---- Geometry

/// Coordinates and texture coordinates, weights and bones; what the layout has not is left out.
void AddVertexFields(KRE_Mesh& mesh, int32_t vertex, FieldList& fields)
{
    constexpr int32_t kNone = VertexInfo::kNoOffset;
    constexpr int32_t kUVBytes = 8; // a format may have less
    fields.Vector("position", *mesh.Position(vertex));
    if (mesh.normalOffset != kNone) {
        fields.Vector("normal", *mesh.Normal(vertex));
        fields.CutTo(1.0 / 32767);
    }
    if (mesh.textureOffset != kNone && mesh.textureOffset + kUVBytes <= mesh.stride)
        fields.Reals("uv", mesh.TexCoord(vertex), 2);
    // The last weight follows from the others and is not stored.
    if (mesh.weightOffset != kNone && mesh.blendCount > 1) {
        fields.Reals("weights", mesh.Weights(vertex), mesh.blendCount - 1);
        fields.CutTo(1.0 / 65535);
    }
    if (mesh.matrixIndexOffset != kNone)
        fields.Wholes("bones", mesh.BlendIndices(vertex), 4);
}

void AddFaceFields(KRE_Mesh& mesh, int32_t face, FieldList& fields)
{
    fields.Wholes("vertices", mesh.Face(face), 3);
    fields.Whole("attribute", *mesh.Attribute(face));
}
