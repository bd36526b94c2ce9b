#include "tools/scenes/SceneWriter.h"

#include <iterator>
#include <random>
#include <sstream>

namespace {

class SceneWriter {
public:
    SceneWriter(unsigned seed, SceneEnding sceneEnding) : random(seed), ending(sceneEnding) {}

    std::string Scene()
    {
        text << "*3DSMAX_QSAEXPORT 211\n*SCENE {\n*SCENE_FIRSTFRAME 0\n*SCENE_LASTFRAME 100\n"
             << "*SCENE_FRAMESPEED 30\n*SCENE_TICKSPERFRAME 160\n*SCENE_BACKGROUND_STATIC "
             << Three(0, 1) << "\n*SCENE_AMBIENT_STATIC " << Three(0, 1) << "\n";
        if (Chance(10))
            text << "*SCENE_ENVMAP {\n*BITMAP \"" << Map() << "\"\n}\n";
        text << "}\n";
        Materials();
        if (Chance(30))
            Fog();
        if (Chance(50))
            Camera();
        for (int i = Below(3) + (ending == SceneEnding::Lights ? 11 : 0); i > 0;
             --i) // the tenth light is an error
            Light(i);
        for (int i = Below(4); i >= 0; --i)
            Mesh(i);
        return text.str();
    }

private:
    int Below(size_t limit) { return static_cast<int>(random() % limit); }
    bool Chance(int percent) { return Below(100) < percent; }
    double Real(double low, double high) { return low + (high - low) * Below(10000) / 10000.0; }
    std::string Three(double low, double high)
    {
        std::ostringstream numbers;
        numbers << Real(low, high) << ' ' << Real(low, high) << ' ' << Real(low, high);
        return numbers.str();
    }

    std::string Map()
    {
        static constexpr const char* kMaps[] = {"checker.png", "leaf.tga",  "marble.bmp",
                                                "chrome.png",  "bumps.png", "glow.png",
                                                "sky.png",     "roof.tga",  "lost.png"};
        return ending == SceneEnding::BadMap ? "broken.png" : kMaps[Below(std::size(kMaps))];
    }

    std::string Shader()
    {
        static constexpr const char* kShaders[] = {"glow.fx", "lava.fx", "outline.fx", "ripple.fx",
                                                   "lost.fx"};
        return ending == SceneEnding::BadEffect ? "broken.fx"
                                                : kShaders[Below(std::size(kShaders))];
    }

    void MapBlock(const char* keyword)
    {
        text << keyword << " {\n*BITMAP \"" << Map() << "\"\n*MAP_AMOUNT " << Real(0, 1)
             << "\n*UVW_U_OFFSET " << Real(-1, 1) << "\n*UVW_U_TILING " << Real(0.1, 4)
             << "\n*UVW_W_ANGLE " << Real(0, 3) << "\n";
        if (Chance(30))
            text << "*UVW_TILE_U \"Mirror\"\n*UVW_TILE_V \"None\"\n";
        text << "}\n";
    }

    void Materials()
    {
        materials = 1 + Below(3);
        text << "*MATERIAL_LIST {\n*MATERIAL_COUNT " << materials << "\n";
        for (int i = 0; i < materials; ++i)
            Material(i);
        text << "}\n";
    }

    void Material(int index)
    {
        text << "*MATERIAL " << index << " {\n*MATERIAL_NAME \"m" << index;
        if (Chance(25) || ending == SceneEnding::BadEffect)
            text << " shader='" << Shader() << "' fParam1='" << Real(0, 2)
                 << "' vParam1='1,0.5,0.2'";
        text << "\"\n*MATERIAL_DIFFUSE " << Three(0, 1) << "\n*MATERIAL_AMBIENT " << Three(0, 1)
             << "\n*MATERIAL_SPECULAR " << Three(0, 1) << "\n*MATERIAL_SHINE " << Real(0, 1)
             << "\n*MATERIAL_SHINESTRENGTH " << Real(0, 1) << "\n*MATERIAL_TRANSPARENCY "
             << (Chance(30) ? Real(0, 1) : 0.0) << "\n*MATERIAL_TWOSIDED " << Below(2) << "\n";
        if (Chance(30))
            text << "*MATERIAL_TRANSPARENCY_TYPE " << (Chance(50) ? "Additive" : "Subtractive")
                 << "\n";
        if (Chance(50) || ending == SceneEnding::BadMap)
            MapBlock("*MAP_DIFFUSE");
        if (Chance(25))
            MapBlock("*MAP_REFLECT");
        if (Chance(25))
            MapBlock("*MAP_BUMP");
        text << "}\n";
    }

    void Place(double reach)
    {
        text
            << "*NODE_TM {\n*TM_ROW0 1 0 0\n*TM_ROW1 0 1 0\n*TM_ROW2 0 0 1\n*TM_ROW3 0 0 0\n*TM_POS "
            << Three(-reach, reach) << "\n*TM_ROTAXIS " << Three(-1, 1) << "\n*TM_ROTANGLE "
            << Real(0, 3) << "\n*TM_SCALE " << Three(0.2, 2) << "\n}\n";
    }

    void Fog()
    {
        text << "*ATMOSPHERIC {\n*STDFOG {\n*FOG_COLOR " << Three(0, 1)
             << "\n*FOG_NEAR 0\n*FOG_FAR " << Real(10, 100) << "\n}\n}\n";
    }

    void Camera()
    {
        text << "*CAMERAOBJECT {\n*NODE_NAME \"Camera\"\n";
        Place(30);
        text << "*CAMERA_SETTINGS {\n*CAMERA_FOV " << Real(0.2, 1.5) << "\n}\n}\n";
    }

    void Light(int index)
    {
        static constexpr const char* kTypes[] = {"Omni", "Directional", "TargetSpot", "Laser"};
        text << "*LIGHTOBJECT {\n*NODE_NAME \"Light" << index << "\"\n";
        Place(30);
        text << "*LIGHT_TYPE " << kTypes[Below(4)]
             << "\n*LIGHT_USELIGHT 1\n*LIGHT_SETTINGS {\n*LIGHT_COLOR " << Three(0, 1)
             << "\n*LIGHT_INTENS " << Real(0, 2) << "\n*LIGHT_ASPECT 1\n*LIGHT_HOTSPOT 30\n"
             << "*LIGHT_FALLOFF 50\n*LIGHT_TDIST 100\n}\n}\n";
    }

    /// A ring of triangles around a point, with a texture on two meshes of three.
    void Mesh(int index)
    {
        const int rim = 3 + Below(12);
        const bool hasTexture = Chance(66);
        text << "*GEOMOBJECT {\n*NODE_NAME \"Mesh" << index << "\"\n";
        if (Chance(20))
            text << "*NODE_PARENT \"Mesh" << index + 1 << "\"\n";
        Place(8);
        text << "*NODE_VISIBLE 1\n*MESH {\n*MESH_NUMVERTEX " << rim + 1 << "\n*MESH_NUMFACES "
             << rim << "\n*MESH_VERTEX_LIST {\n";
        for (int i = 0; i <= rim; ++i)
            text << "*MESH_VERTEX " << i << ' ' << Three(-9, 9) << "\n";
        text << "}\n*MESH_FACE_LIST {\n";
        for (int i = 0; i < rim; ++i)
            text << "*MESH_FACE " << i << ": A: 0 B: " << 1 + i << " C: " << 1 + (i + 1) % rim
                 << " *MESH_SMOOTHING " << 1 + Below(3) << " *MESH_MTLID " << Below(3) << "\n";
        text << "}\n";
        if (hasTexture)
            TextureFaces(rim);
        text << "}\n";
        if (Chance(30))
            Keys();
        text << "*MATERIAL_REF " << Below(static_cast<size_t>(materials) + 1) << "\n}\n";
    }

    void TextureFaces(int rim)
    {
        text << "*MESH_NUMTVERTEX 4\n*MESH_TVERTLIST {\n";
        for (int i = 0; i < 4; ++i)
            text << "*MESH_TVERT " << i << ' ' << Three(0, 2) << "\n";
        text << "}\n*MESH_NUMTVFACES " << rim << "\n*MESH_TFACELIST {\n";
        for (int i = 0; i < rim; ++i)
            text << "*MESH_TFACE " << i << " 0 " << i % 4 << " 3\n";
        text << "}\n";
    }

    void Keys()
    {
        text << "*TM_ANIMATION {\n*CONTROL_POS_TRACK {\n";
        for (int i = 0; i < 4; ++i)
            text << "*CONTROL_POS_SAMPLE " << i * 1600 << ' ' << Three(-9, 9) << "\n";
        text << "}\n*CONTROL_ROT_TRACK {\n";
        for (int i = 0; i < 4; ++i)
            text << "*CONTROL_ROT_SAMPLE " << i * 1600 << ' ' << Three(-1, 1) << ' ' << Real(0, 7)
                 << "\n";
        text << "}\n}\n";
    }

    std::minstd_rand random;
    std::ostringstream text;
    const SceneEnding ending;
    int materials = 1;
};

} // namespace

std::string WriteScene(unsigned seed, SceneEnding ending)
{
    return SceneWriter(seed, ending).Scene();
}
