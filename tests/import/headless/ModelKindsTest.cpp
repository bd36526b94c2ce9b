// One small model of each kind that docs/import.md names, through the importer, the converter and the exporter.

#include <algorithm>
#include <cstring>

#include <gmock/gmock.h>

#include "tests/gltf/GltfDocument.h"
#include "tests/support/RunProgram.h"
#include "tests/support/ScratchDirectory.h"
#include "tests/support/TreePaths.h"

using nlohmann::json;
using testing::DoubleNear;
using testing::Pointwise;

namespace {

using Points = std::vector<GltfPoint>;

class ModelKindsTest : public testing::Test {
protected:
    /// What comes out of a model with Y up. Other axes are turned on the way.
    GltfDocument Exported(const std::string& name, const std::string& bytes)
    {
        directory.Write(name, bytes);
        const ProgramRun run = RunProgramFile(BuildPath("qsaimport"), {name});
        EXPECT_EQ(run.status, 0) << run.err;
        const std::string stem = name.substr(0, name.find('.'));
        EXPECT_EQ(RunProgram({"/stop", stem + ".qsa"}).status, 1);
        EXPECT_EQ(RunProgramFile(BuildPath("qsbexport"), {stem + ".qsb", "-o", "back.glb"}).status,
                  0);
        return GltfDocument("back.glb");
    }

    ScratchDirectory directory;
};

/// The places of all drawn vertices at a time, in ascending order.
Points PlacesIn(const GltfDocument& document, double seconds)
{
    Points all;
    for (size_t node = 0; node < document.json["nodes"].size(); ++node) {
        if (!document.json["nodes"][node].contains("mesh"))
            continue;
        for (GltfPoint point : document.WorldPoints(static_cast<int>(node), 0, seconds)) {
            for (double& part : point)
                part = std::round(part * 1e4) / 1e4 + 0.0; // without negative zeros
            all.push_back(point);
        }
    }
    std::sort(all.begin(), all.end());
    return all;
}

json ColorOf(const GltfDocument& document)
{
    return document.json["materials"][0]["pbrMetallicRoughness"]["baseColorFactor"];
}

const json kRed = {1.0, 0.0, 0.0, 1.0};

// A triangle (0, 0, 0), (4, 0, 0), (0, 5, 0) in each of them, red where the kind has colours.

const char kCollada[] =
    R"(<?xml version="1.0"?><COLLADA xmlns="http://www.collada.org/2005/11/COLLADASchema" version="1.4.1">
<asset><up_axis>Y_UP</up_axis></asset>
<library_cameras><camera id="lens"><optics><technique_common><perspective/></technique_common></optics></camera>
</library_cameras>
<library_lights><light id="lamp"><technique_common><point><color>1 0.5 0.25</color></point></technique_common>
</light></library_lights>
<library_effects><effect id="fx"><profile_COMMON><technique sid="t"><phong><diffuse><color>1 0 0 1</color>
</diffuse></phong></technique></profile_COMMON></effect></library_effects>
<library_materials><material id="red" name="red"><instance_effect url="#fx"/></material></library_materials>
<library_geometries><geometry id="sail"><mesh>
<source id="p"><float_array id="pa" count="9">0 0 0 4 0 0 0 5 0</float_array><technique_common>
<accessor source="#pa" count="3" stride="3"><param name="X" type="float"/><param name="Y" type="float"/>
<param name="Z" type="float"/></accessor></technique_common></source>
<vertices id="v"><input semantic="POSITION" source="#p"/></vertices>
<triangles count="1" material="m"><input semantic="VERTEX" source="#v" offset="0"/><p>0 1 2</p></triangles>
</mesh></geometry></library_geometries>
<library_animations><animation>
<source id="t"><float_array id="ta" count="2">0 2</float_array><technique_common><accessor source="#ta" count="2">
<param name="TIME" type="float"/></accessor></technique_common></source>
<source id="o"><float_array id="oa" count="6">1 2 3 5 2 3</float_array><technique_common>
<accessor source="#oa" count="2" stride="3"><param name="X" type="float"/><param name="Y" type="float"/>
<param name="Z" type="float"/></accessor></technique_common></source>
<source id="i"><Name_array id="ia" count="2">LINEAR LINEAR</Name_array><technique_common>
<accessor source="#ia" count="2"><param name="INTERPOLATION" type="name"/></accessor></technique_common></source>
<sampler id="s"><input semantic="INPUT" source="#t"/><input semantic="OUTPUT" source="#o"/>
<input semantic="INTERPOLATION" source="#i"/></sampler><channel source="#s" target="mast/move"/>
</animation></library_animations>
<library_visual_scenes><visual_scene id="scene">
<node id="mast" name="mast"><translate sid="move">1 2 3</translate>
<node id="flag" name="flag"><instance_geometry url="#sail"><bind_material><technique_common>
<instance_material symbol="m" target="#red"/></technique_common></bind_material></instance_geometry></node></node>
<node id="eye" name="eye"><translate>0 0 10</translate><instance_camera url="#lens"/></node>
<node id="lantern" name="lantern"><translate>0 9 0</translate><instance_light url="#lamp"/></node>
</visual_scene></library_visual_scenes><scene><instance_visual_scene url="#scene"/></scene></COLLADA>
)";

const char kFilmbox[] = R"(; FBX 7.4.0 project file
FBXHeaderExtension:  {
	FBXHeaderVersion: 1003
	FBXVersion: 7400
}
GlobalSettings:  {
	Version: 1000
	Properties70:  {
		P: "UpAxis", "int", "Integer", "",1
		P: "UpAxisSign", "int", "Integer", "",1
		P: "FrontAxis", "int", "Integer", "",2
		P: "FrontAxisSign", "int", "Integer", "",1
		P: "CoordAxis", "int", "Integer", "",0
		P: "CoordAxisSign", "int", "Integer", "",1
		P: "UnitScaleFactor", "double", "Number", "",1
	}
}
Objects:  {
	Geometry: 10, "Geometry::sail", "Mesh" {
		Vertices: *9 {
			a: 0,0,0,4,0,0,0,5,0
		}
		PolygonVertexIndex: *3 {
			a: 0,1,-3
		}
		GeometryVersion: 124
		LayerElementMaterial: 0 {
			Version: 101
			Name: ""
			MappingInformationType: "AllSame"
			ReferenceInformationType: "IndexToDirect"
			Materials: *1 {
				a: 0
			}
		}
		Layer: 0 {
			Version: 100
			LayerElement:  {
				Type: "LayerElementMaterial"
				TypedIndex: 0
			}
		}
	}
	Model: 20, "Model::Sail", "Mesh" {
		Version: 232
		Properties70:  {
			P: "Lcl Translation", "Lcl Translation", "", "A",1,2,3
		}
	}
	Model: 40, "Model::Eye", "Camera" {
		Version: 232
		Properties70:  {
			P: "Lcl Translation", "Lcl Translation", "", "A",0,0,9
		}
	}
	NodeAttribute: 50, "NodeAttribute::", "Camera" {
		Properties70:  {
			P: "FieldOfView", "FieldOfView", "", "A",60
			P: "AspectWidth", "double", "Number", "",300
			P: "AspectHeight", "double", "Number", "",200
			P: "Position", "Vector", "", "A",0,0,0
			P: "InterestPosition", "Vector", "", "A",0,0,-1
		}
		TypeFlags: "Camera"
	}
	Material: 30, "Material::red", "" {
		Version: 102
		ShadingModel: "lambert"
		Properties70:  {
			P: "DiffuseColor", "Color", "", "A",1,0,0
		}
	}
}
Connections:  {
	C: "OO",20,0
	C: "OO",40,0
	C: "OO",50,40
	C: "OO",10,20
	C: "OO",30,20
}
)";

const char kMd5Mesh[] = "MD5Version 10\ncommandline \"\"\n\nnumJoints 2\nnumMeshes 1\n\n"
                        "joints {\n\t\"origin\"\t-1 ( 0 0 0 ) ( 0 0 0 )\n"
                        "\t\"arm\"\t0 ( 0 0 2 ) ( 0 0 0 )\n}\n\n"
                        "mesh {\n\tshader \"red\"\n\n\tnumverts 3\n\tvert 0 ( 0 0 ) 0 1\n"
                        "\tvert 1 ( 1 0 ) 1 1\n\tvert 2 ( 0 1 ) 2 1\n\n\tnumtris 1\n"
                        "\ttri 0 0 1 2\n\n\tnumweights 3\n\tweight 0 0 1 ( 0 0 0 )\n"
                        "\tweight 1 0 1 ( 4 0 0 )\n\tweight 2 1 1 ( 0 5 -2 )\n}\n";
const char kMd5Anim[] =
    "MD5Version 10\ncommandline \"\"\n\nnumFrames 2\nnumJoints 2\nframeRate 10\n"
    "numAnimatedComponents 3\n\n"
    "hierarchy {\n\t\"origin\"\t-1 0 0\n\t\"arm\"\t0 7 0\n}\n\n"
    "bounds {\n\t( 0 0 0 ) ( 1 1 1 )\n\t( 0 0 0 ) ( 1 1 1 )\n}\n\n"
    "baseframe {\n\t( 0 0 0 ) ( 0 0 0 )\n\t( 0 0 2 ) ( 0 0 0 )\n}\n\n"
    "frame 0 {\n\t0 0 2\n}\n\nframe 1 {\n\t0 0 7\n}\n";

/// A number's bytes, the lowest first.
template <class T>
std::string Bytes(T value)
{
    return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class T>
std::string Row(std::initializer_list<T> values)
{
    std::string bytes;
    for (const T value : values)
        bytes += Bytes(value);
    return bytes;
}

/// Chunks of a number, their length with the header, and contents.
std::string StudioFile()
{
    const auto chunk = [](uint16_t number, const std::string& contents) {
        return Bytes(number) + Bytes(static_cast<uint32_t>(contents.size() + 6)) + contents;
    };
    const auto text = [](const char* characters) {
        return std::string(characters, std::strlen(characters) + 1);
    };
    const std::string points =
        chunk(0x4110, Bytes(uint16_t{3}) + Row<float>({0, 0, 0, 4, 0, 0, 0, 5, 0}));
    const std::string red = chunk(0x4130, text("red") + Row<uint16_t>({1, 0}));
    const std::string faces = chunk(0x4120, Row<uint16_t>({1, 0, 1, 2, 0}) + red);
    const std::string object = chunk(0x4000, text("Sail") + chunk(0x4100, points + faces));
    const std::string color = chunk(0xA020, chunk(0x0011, std::string("\xFF\0\0", 3)));
    const std::string material = chunk(0xAFFF, chunk(0xA000, text("red")) + color);
    return chunk(0x4D4D, chunk(0x0002, Bytes(uint32_t{3})) + chunk(0x3D3D, material + object));
}

/// One frame of one surface; lengths are in 64ths, faces are seen from where they turn clockwise.
std::string ArenaFile()
{
    const auto name = [](std::string characters, size_t size) {
        characters.resize(size);
        return characters;
    };
    const uint32_t mark = 0x33504449;
    const std::string faces = Row<uint32_t>({0, 2, 1});
    const std::string skin = name("red", 64) + Bytes(uint32_t{0});
    const std::string uvs = Row<float>({0, 0, 1, 0, 0, 1});
    const std::string points = Row<int16_t>({0, 0, 0, 0, 4 * 64, 0, 0, 0, 0, 5 * 64, 0, 0});
    const auto head = uint32_t{108};
    const auto skinAt = static_cast<uint32_t>(head + faces.size());
    const auto uvsAt = static_cast<uint32_t>(skinAt + skin.size());
    const auto pointsAt = static_cast<uint32_t>(uvsAt + uvs.size());
    const auto end = static_cast<uint32_t>(pointsAt + points.size());
    const std::string surface = Bytes(mark) + name("Sail", 64) +
                                Row<uint32_t>({0, 1, 1, 3, 1, head, skinAt, uvsAt, pointsAt, end}) +
                                faces + skin + uvs + points;
    const std::string frame = Row<float>({0, 0, 0, 4, 5, 0, 0, 0, 0, 6}) + name("frame", 16);
    const auto surfaceAt = static_cast<uint32_t>(head + frame.size());
    const auto all = static_cast<uint32_t>(surfaceAt + surface.size());
    return Row<uint32_t>({mark, 15}) + name("Sail", 64) +
           Row<uint32_t>({0, 1, 0, 1, 0, head, surfaceAt, surfaceAt, all}) + frame + surface;
}

} // namespace

TEST_F(ModelKindsTest, ColladaWithHierarchyAnimationAndViews)
{
    const GltfDocument document = Exported("kind.dae", kCollada);
    EXPECT_EQ(PlacesIn(document, 0), (Points{{1, 2, 3}, {1, 7, 3}, {5, 2, 3}}));
    EXPECT_EQ(PlacesIn(document, 1), (Points{{3, 2, 3}, {3, 7, 3}, {7, 2, 3}}));
    EXPECT_EQ(ColorOf(document), kRed);
    const GltfMatrix eye = document.WorldOf(document.NodeOf("eye"), 0);
    EXPECT_THAT(eye, Pointwise(DoubleNear(1e-5),
                               GltfMatrix{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 10, 1}));
    EXPECT_NEAR(document.WorldOf(document.NodeOf("lantern"), 0)[13], 9, 1e-5);
    const json& light = document.json["extensions"]["KHR_lights_punctual"]["lights"][0];
    EXPECT_EQ(light["type"], "point");
    EXPECT_GT(light["color"][0], light["color"][1]);
    EXPECT_GT(light["color"][1], light["color"][2]);
}

TEST_F(ModelKindsTest, FilmboxTextWithACamera)
{
    const GltfDocument document = Exported("kind.fbx", kFilmbox);
    EXPECT_EQ(PlacesIn(document, 0), (Points{{1, 2, 3}, {1, 7, 3}, {5, 2, 3}}));
    EXPECT_EQ(ColorOf(document), kRed);
    // 60 degrees across a picture three halves as wide as high.
    EXPECT_NEAR(document.json["cameras"][0]["perspective"]["yfov"].get<double>(),
                2 * std::atan(std::tan(0.523598776) / 1.5), 1e-4);
}

TEST_F(ModelKindsTest, StudioFilesHaveZUp)
{
    const GltfDocument document = Exported("kind.3ds", StudioFile());
    EXPECT_EQ(PlacesIn(document, 0), (Points{{0, 0, -5}, {0, 0, 0}, {4, 0, 0}}));
    EXPECT_EQ(ColorOf(document), kRed);
}

TEST_F(ModelKindsTest, ArenaFilesHaveZUp)
{
    const GltfDocument document = Exported("kind.md3", ArenaFile());
    EXPECT_EQ(PlacesIn(document, 0), (Points{{0, 0, -5}, {0, 0, 0}, {4, 0, 0}}));
    // The face turns clockwise seen from above; its node turns the mesh, so its own up is Z.
    const int node = document.NodeOf("<MD3Root>");
    ASSERT_GE(node, 0);
    const GltfMatrix world = document.WorldOf(node, 0);
    const std::vector<double> normals =
        document.Values(document.json["meshes"][0]["primitives"][0]["attributes"]["NORMAL"]);
    for (size_t i = 0; i + 2 < normals.size(); i += 3) {
        const GltfPoint tip = MovePoint({normals[i], normals[i + 1], normals[i + 2]}, world);
        EXPECT_NEAR(tip[1], 1, 1e-5);
    }
}

TEST_F(ModelKindsTest, Md5WithBonesThatMove)
{
    directory.Write("kind.md5anim", kMd5Anim);
    const GltfDocument document = Exported("kind.md5mesh", kMd5Mesh);
    EXPECT_EQ(PlacesIn(document, 0), (Points{{0, 0, -5}, {0, 0, 0}, {4, 0, 0}}));
    EXPECT_EQ(PlacesIn(document, 0.1), (Points{{0, 0, 0}, {0, 5, -5}, {4, 0, 0}}));
    EXPECT_EQ(PlacesIn(document, 0.05), (Points{{0, 0, 0}, {0, 2.5, -5}, {4, 0, 0}}));
}
