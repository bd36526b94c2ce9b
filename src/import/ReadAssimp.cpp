#include "import/ReadAssimp.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <numbers>

#include <assimp/DefaultIOSystem.h>
#include <assimp/Importer.hpp>
#include <assimp/MemoryIOWrapper.h>
#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include "base/ReadWholeFile.h"
#include "gltf/ModelFault.h"
#include "gltf/NoticeList.h"
#include "import/GltfReader.h"

namespace fs = std::filesystem;

namespace {

constexpr double kUsualTicks = 25; // for a second, where a file does not say
constexpr float kSmoothAngle = 60; // degrees, for meshes without normals
constexpr unsigned kSteps = aiProcess_Triangulate | aiProcess_JoinIdenticalVertices |
                            aiProcess_FlipUVs | aiProcess_SortByPType | aiProcess_GenSmoothNormals |
                            aiProcess_ValidateDataStructure;

/// The library's matrices have their translation in the last column.
ModelMatrix RowMatrix(const aiMatrix4x4& m)
{
    return {m.a1, m.b1, m.c1, m.d1, m.a2, m.b2, m.c2, m.d2,
            m.a3, m.b3, m.c3, m.d3, m.a4, m.b4, m.c4, m.d4};
}

ModelVector ColorOf(const aiMaterial& material, const char* key, unsigned type, unsigned index,
                    const ModelVector& fallback)
{
    aiColor4D color;
    if (aiGetMaterialColor(&material, key, type, index, &color) != AI_SUCCESS)
        return fallback;
    return {color.r, color.g, color.b};
}

double NumberOf(const aiMaterial& material, const char* key, unsigned type, unsigned index,
                double fallback)
{
    ai_real value = 0;
    const bool isThere =
        aiGetMaterialFloatArray(&material, key, type, index, &value, nullptr) == AI_SUCCESS;
    return isThere && std::isfinite(value) ? value : fallback;
}

/// Notes each further file that the library looks for.
class NotingFiles : public Assimp::DefaultIOSystem {
public:
    NotingFiles(const std::string& modelIn, std::vector<std::string>& notedIn)
        : model(modelIn),
          noted(notedIn)
    {}

    bool Exists(const char* file) const override
    {
        Note(file);
        std::error_code ignored;
        return fs::exists(file, ignored);
    }
    /// Files are read here as a whole, because the library takes a signal that interrupts it for their end.
    Assimp::IOStream* Open(const char* file, const char*) override
    {
        Note(file);
        std::string bytes;
        if (!ReadWholeFile(file, bytes))
            return nullptr;
        if (std::strstr(file, ".md5"))
            bytes = WithReturns(bytes);
        auto owned = std::make_unique<uint8_t[]>(bytes.size()); // of the stream, which deletes it
        std::memcpy(owned.get(), bytes.data(), bytes.size());
        auto* const stream = new Assimp::MemoryIOStream(owned.get(), bytes.size(), true);
        static_cast<void>(owned.release());
        return stream;
    }

private:
    /// The library's reader of MD5 texts takes every second line of a header for a part of the one before,
    /// unless lines end as on Windows.
    static std::string WithReturns(const std::string& text)
    {
        std::string lines;
        for (const char byte : text) {
            if (byte == '\n' && (lines.empty() || lines.back() != '\r'))
                lines += '\r';
            lines += byte;
        }
        return lines;
    }

    void Note(const std::string& file) const
    {
        if (file != model && std::find(noted.begin(), noted.end(), file) == noted.end())
            noted.push_back(file);
    }

    std::string model;
    std::vector<std::string>& noted;
};

/// Builds a model from what the library read.
class AssimpReader {
public:
    AssimpReader(const aiScene& sourceIn, const std::string& path, NoticeList& noticesIn)
        : source(sourceIn),
          folder(path.substr(0, path.find_last_of('/') + 1)),
          notices(noticesIn)
    {}

    Model Read(const std::string& animation)
    {
        ReadMaterials();
        ReadNodes();
        ReadViews();
        ReadAnimation(animation);
        return std::move(model);
    }

private:
    // ---- Materials

    void ReadMaterials()
    {
        for (unsigned i = 0; i < source.mNumMaterials; ++i) {
            const aiMaterial& material = *source.mMaterials[i];
            ModelMaterial& made = model.materials.emplace_back();
            aiString name;
            if (material.Get(AI_MATKEY_NAME, name) == AI_SUCCESS)
                made.name = name.C_Str();
            made.diffuse = ColorOf(material, AI_MATKEY_COLOR_DIFFUSE, {1, 1, 1});
            made.ambient = ColorOf(material, AI_MATKEY_COLOR_AMBIENT, made.diffuse);
            if (made.ambient == ModelVector{0, 0, 0})
                made.ambient = made.diffuse;
            made.specular = ColorOf(material, AI_MATKEY_COLOR_SPECULAR, {0, 0, 0});
            made.emissive = ColorOf(material, AI_MATKEY_COLOR_EMISSIVE, {0, 0, 0});
            made.power = NumberOf(material, AI_MATKEY_SHININESS, 0);
            if (!(made.power > 0))
                made.specular = {0, 0, 0};
            made.opacity = std::clamp(NumberOf(material, AI_MATKEY_OPACITY, 1), 0.0, 1.0);
            made.alpha = made.opacity < 1 ? ModelAlpha::kBlend : ModelAlpha::kCutOut;
            int twoSided = 0;
            made.twoSided =
                material.Get(AI_MATKEY_TWOSIDED, twoSided) == AI_SUCCESS && twoSided != 0;
            ReadMap(material, made);
        }
    }

    void ReadMap(const aiMaterial& material, ModelMaterial& made)
    {
        const aiTextureType type = material.GetTextureCount(aiTextureType_DIFFUSE) > 0
                                       ? aiTextureType_DIFFUSE
                                       : aiTextureType_BASE_COLOR;
        for (int other = aiTextureType_SPECULAR; other <= aiTextureType_REFLECTION; ++other)
            notices.Add("maps other than that of the colour are not carried",
                        material.GetTextureCount(static_cast<aiTextureType>(other)));
        aiString file;
        unsigned set = 0;
        aiTextureMapMode modes[2] = {aiTextureMapMode_Wrap, aiTextureMapMode_Wrap};
        if (material.GetTexture(type, 0, &file, nullptr, &set, nullptr, nullptr, modes) !=
            AI_SUCCESS)
            return;
        made.map.image = ImageOf(file.C_Str());
        for (size_t axis = 0; axis < 2; ++axis) {
            made.map.mirror[axis] = modes[axis] == aiTextureMapMode_Mirror;
            made.map.tile[axis] = modes[axis] == aiTextureMapMode_Wrap;
        }
    }

    int ImageOf(const std::string& file)
    {
        const auto [place, isNew] = images.emplace(file, static_cast<int>(model.images.size()));
        if (!isNew)
            return place->second;
        ModelImage& image = model.images.emplace_back();
        if (const aiTexture* inside = source.GetEmbeddedTexture(file.c_str())) {
            image.name = fs::path(inside->mFilename.C_Str()).filename().string();
            if (inside->mHeight == 0)
                image.bytes.assign(reinterpret_cast<const char*>(inside->pcData), inside->mWidth);
            return place->second;
        }
        std::string path = file;
        std::replace(path.begin(), path.end(), '\\', '/');
        const std::string leaf = path.substr(path.find_last_of("/:") + 1);
        std::error_code ignored;
        // Paths of the artist's machine mean nothing here.
        const bool isThere = path[0] != '/' && fs::is_regular_file(folder + path, ignored);
        image.name = leaf;
        image.file = folder + (isThere ? path : leaf);
        return place->second;
    }

    // ---- Nodes and meshes

    /// Parents before their children, without recursion: files decide how deep the tree is.
    void ReadNodes()
    {
        std::vector<std::pair<const aiNode*, int>> waiting = {{source.mRootNode, -1}};
        std::vector<std::pair<const aiNode*, int>> drawn;
        while (!waiting.empty()) {
            const auto [node, parent] = waiting.back();
            waiting.pop_back();
            const int number =
                AddNode(node->mName.C_Str(), parent, RowMatrix(node->mTransformation));
            named.emplace(node->mName.C_Str(), number);
            if (node->mNumMeshes > 0)
                drawn.emplace_back(node, number);
            for (unsigned i = node->mNumChildren; i > 0; --i)
                waiting.emplace_back(node->mChildren[i - 1], number);
        }
        for (const auto& [node, number] : drawn)
            AddMeshes(*node, number);
    }

    int AddNode(const std::string& name, int parent, const ModelMatrix& matrix)
    {
        const int number = static_cast<int>(model.nodes.size());
        ModelNode& made = model.nodes.emplace_back();
        made.name = name;
        made.parent = parent;
        bool sheared = false;
        SplitMatrix(matrix, made.position, made.rotation, made.scale, sheared);
        if (sheared)
            notices.Add("shear is not carried");
        if (parent >= 0)
            model.nodes[static_cast<size_t>(parent)].children.push_back(number);
        return number;
    }

    void AddMeshes(const aiNode& node, int number)
    {
        std::vector<unsigned> rigid;
        for (unsigned i = 0; i < node.mNumMeshes; ++i) {
            const aiMesh& mesh = *source.mMeshes[node.mMeshes[i]];
            if (mesh.HasBones())
                AddSkinned(mesh, node.mName.C_Str());
            else
                rigid.push_back(node.mMeshes[i]);
        }
        if (rigid.empty())
            return;
        const auto [place, isNew] = meshes.emplace(rigid, static_cast<int>(model.meshes.size()));
        model.nodes[static_cast<size_t>(number)].mesh = place->second;
        if (!isNew)
            return;
        ModelMesh& made = model.meshes.emplace_back();
        made.name = node.mName.C_Str();
        for (const unsigned mesh : rigid)
            AddPrimitive(*source.mMeshes[mesh], made);
    }

    ModelPrimitive& AddPrimitive(const aiMesh& mesh, ModelMesh& target)
    {
        ModelPrimitive& made = target.primitives.emplace_back();
        made.material =
            mesh.mMaterialIndex < source.mNumMaterials ? static_cast<int>(mesh.mMaterialIndex) : -1;
        for (unsigned i = 0; i < mesh.mNumVertices; ++i) {
            const aiVector3D& p = mesh.mVertices[i];
            if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z))
                throw ModelFault("a position is not finite");
            made.positions.push_back({p.x, p.y, p.z});
            if (mesh.HasNormals())
                made.normals.push_back(
                    {mesh.mNormals[i].x, mesh.mNormals[i].y, mesh.mNormals[i].z});
            if (mesh.HasTextureCoords(0)) {
                const aiVector3D& uv = mesh.mTextureCoords[0][i];
                made.texCoords.push_back({std::isfinite(uv.x) ? uv.x : 0, //
                                          std::isfinite(uv.y) ? uv.y : 0});
            }
        }
        for (unsigned i = 0; i < mesh.mNumFaces; ++i) {
            const aiFace& face = mesh.mFaces[i];
            if (face.mNumIndices != 3) {
                notices.Add("points and lines are not carried");
                continue;
            }
            for (unsigned c = 0; c < 3; ++c) {
                if (face.mIndices[c] >= mesh.mNumVertices)
                    throw ModelFault("a face has a corner that does not exist");
                made.corners.push_back(face.mIndices[c]);
            }
        }
        CountLosses(mesh);
        return made;
    }

    void CountLosses(const aiMesh& mesh)
    {
        if (mesh.HasVertexColors(0))
            notices.Add("vertex colours are not carried");
        if (mesh.HasTextureCoords(1))
            notices.Add("second texture coordinates are not carried");
        if (mesh.mNumAnimMeshes > 0)
            notices.Add("morphs are not carried");
    }

    void AddSkinned(const aiMesh& mesh, const std::string& name)
    {
        const int number = AddNode(name + " skin", -1, kModelIdentity);
        ModelMesh& target = model.meshes.emplace_back();
        target.name = name;
        ModelPrimitive& primitive = AddPrimitive(mesh, target);
        primitive.weights.resize(primitive.positions.size());
        ModelSkin& skin = model.skins.emplace_back();
        for (unsigned i = 0; i < mesh.mNumBones; ++i) {
            const aiBone& bone = *mesh.mBones[i];
            const auto node = named.find(bone.mName.C_Str());
            if (node == named.end())
                throw ModelFault("a bone names a node that does not exist");
            model.nodes[static_cast<size_t>(node->second)].isBone = true;
            const auto joint = static_cast<uint32_t>(skin.joints.size());
            skin.joints.push_back(node->second);
            skin.binds.push_back(RowMatrix(bone.mOffsetMatrix));
            for (unsigned w = 0; w < bone.mNumWeights; ++w) {
                const aiVertexWeight& weight = bone.mWeights[w];
                if (weight.mVertexId < primitive.weights.size() && weight.mWeight > 0 &&
                    std::isfinite(weight.mWeight))
                    primitive.weights[weight.mVertexId].push_back({joint, weight.mWeight});
            }
        }
        ModelNode& made = model.nodes[static_cast<size_t>(number)];
        made.mesh = static_cast<int>(model.meshes.size()) - 1;
        made.skin = static_cast<int>(model.skins.size()) - 1;
    }

    // ---- Cameras and lights, whose nodes bear their names

    void ReadViews()
    {
        for (unsigned i = 0; i < source.mNumCameras; ++i) {
            const aiCamera& camera = *source.mCameras[i];
            const double aspect = camera.mAspect > 0 ? camera.mAspect : 4.0 / 3;
            // Its readers give the whole angle, whatever its header says, and a quarter of pi as degrees
            // where they do not find one.
            const double across =
                camera.mHorizontalFOV > 0.02f ? camera.mHorizontalFOV : std::numbers::pi / 4;
            const int node =
                AddView(camera.mName.C_Str(), camera.mPosition, camera.mLookAt, camera.mUp);
            model.nodes[static_cast<size_t>(node)].camera = static_cast<int>(model.cameras.size());
            model.cameras.push_back({2 * std::atan(std::tan(std::min(across, 3.1) / 2) / aspect)});
        }
        for (unsigned i = 0; i < source.mNumLights; ++i)
            ReadLight(*source.mLights[i]);
    }

    void ReadLight(const aiLight& light)
    {
        ModelLight made;
        switch (light.mType) {
        case aiLightSource_DIRECTIONAL:
            made.kind = ModelLightKind::kDirectional;
            break;
        case aiLightSource_SPOT:
            made.kind = ModelLightKind::kSpot;
            break;
        case aiLightSource_POINT:
            break;
        default:
            notices.Add("lights of other kinds are not carried");
            return;
        }
        const aiColor3D& color = light.mColorDiffuse;
        made.intensity = std::max({color.r, color.g, color.b});
        if (made.intensity > 0)
            made.color = {color.r / made.intensity, color.g / made.intensity,
                          color.b / made.intensity};
        made.inner = light.mAngleInnerCone / 2;
        made.outer = light.mAngleOuterCone / 2;
        if (light.mAttenuationLinear != 0 || light.mAttenuationQuadratic != 0)
            notices.Add("light does not fade with the distance");
        const int node = AddView(light.mName.C_Str(), light.mPosition, light.mDirection, light.mUp);
        model.nodes[static_cast<size_t>(node)].light = static_cast<int>(model.lights.size());
        model.lights.push_back(made);
    }

    /// A node that looks along `along`: the one of this name, or one below it.
    int AddView(const std::string& name, const aiVector3D& at, aiVector3D along, aiVector3D up)
    {
        if (along.SquareLength() < 1e-12f)
            along = {0, 0, -1};
        along.Normalize();
        aiVector3D side = along ^ up;
        if (side.SquareLength() < 1e-12f)
            side = along ^ aiVector3D(along.y * along.y < 0.5f ? 0.0f : 1.0f,
                                      along.y * along.y < 0.5f ? 1.0f : 0.0f, 0);
        side.Normalize();
        up = side ^ along;
        const ModelMatrix matrix = {side.x,   side.y,   side.z,   0, up.x, up.y, up.z, 0,
                                    -along.x, -along.y, -along.z, 0, at.x, at.y, at.z, 1};
        const auto parent = named.find(name);
        if (parent != named.end() && matrix == kModelIdentity) {
            const ModelNode& node = model.nodes[static_cast<size_t>(parent->second)];
            if (node.camera < 0 && node.light < 0)
                return parent->second;
        }
        return AddNode(name, parent != named.end() ? parent->second : -1, matrix);
    }

    // ---- Animation

    void ReadAnimation(const std::string& wanted)
    {
        const aiAnimation* chosen = nullptr;
        for (unsigned i = 0; i < source.mNumAnimations && !chosen; ++i) {
            const aiAnimation* animation = source.mAnimations[i];
            if (wanted.empty() || wanted == animation->mName.C_Str() || wanted == std::to_string(i))
                chosen = animation;
        }
        if (!chosen && !wanted.empty())
            throw ModelFault("it has no animation '" + wanted + "'");
        if (source.mNumAnimations > 1)
            notices.Add("only one animation is carried, the others are left out",
                        source.mNumAnimations - 1);
        if (!chosen)
            return;
        const double ticks = chosen->mTicksPerSecond > 0 ? chosen->mTicksPerSecond : kUsualTicks;
        for (unsigned i = 0; i < chosen->mNumChannels; ++i) {
            const aiNodeAnim& channel = *chosen->mChannels[i];
            const auto node = named.find(channel.mNodeName.C_Str());
            if (node == named.end())
                continue;
            ModelNode& target = model.nodes[static_cast<size_t>(node->second)];
            const auto vector = [](const aiVector3D& v) {
                return ModelQuaternion{v.x, v.y, v.z, 0};
            };
            const auto turn = [](const aiQuaternion& q) {
                return ModelQuaternion{q.x, q.y, q.z, q.w};
            };
            FillTrack(target.positionTrack, channel.mPositionKeys, channel.mNumPositionKeys, ticks,
                      vector);
            FillTrack(target.rotationTrack, channel.mRotationKeys, channel.mNumRotationKeys, ticks,
                      turn);
            FillTrack(target.scaleTrack, channel.mScalingKeys, channel.mNumScalingKeys, ticks,
                      vector);
        }
    }

    template <class Key, class Value>
    static void FillTrack(ModelTrack& track, const Key* keys, unsigned count, double ticks,
                          const Value& value)
    {
        for (unsigned i = 0; i < count; ++i) {
            const double time = keys[i].mTime / ticks;
            const ModelQuaternion made = value(keys[i].mValue);
            const bool isFinite = std::isfinite(time) && std::isfinite(made[0]) &&
                                  std::isfinite(made[1]) && std::isfinite(made[2]) &&
                                  std::isfinite(made[3]);
            if (!isFinite || (!track.times.empty() && time <= track.times.back()))
                continue;
            track.times.push_back(time);
            track.values.push_back(made);
        }
    }

    const aiScene& source;
    std::string folder;
    NoticeList& notices;
    Model model;
    std::map<std::string, int> images;
    std::map<std::string, int> named; ///< nodes by name, the first of each
    std::map<std::vector<unsigned>, int> meshes;
};

} // namespace

bool KnowsAssimp(const std::string& path)
{
    return Assimp::Importer().IsExtensionSupported(fs::path(path).extension().string());
}

Model ReadAssimp(const std::string& path, const std::string& animation, NoticeList& notices)
{
    std::vector<std::string> inputs;
    Assimp::Importer importer;
    importer.SetIOHandler(new NotingFiles(path, inputs)); // owned by the importer
    importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
    importer.SetPropertyFloat(AI_CONFIG_PP_GSN_MAX_SMOOTHING_ANGLE, kSmoothAngle);
    const aiScene* scene = importer.ReadFile(path, kSteps);
    if (!scene || !scene->mRootNode)
        throw ModelFault(std::string("it cannot be read: ") + importer.GetErrorString());
    Model model = AssimpReader(*scene, path, notices).Read(animation);
    model.inputs = inputs;
    return model;
}
