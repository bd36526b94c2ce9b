// make_scene KIND MEGABYTES FILE [ASE_FILE [OBJ_FILE]]   writes a QSA scene of about that size for the
// benchmarks, and on request the same geometry as an ASE text, which differs only in its first line, and
// as an OBJ text.
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

/// How numbers are written.
enum class NumberStyle { fixed4, fixed6, exponent, shortest };

struct SceneKind {
    const char* name;
    int gridSide;      ///< squares along a side of each mesh; two triangles each
    int keysPerObject; ///< 0: meshes, else helper objects with that many keys
    NumberStyle style;
    const char* what;
};

constexpr SceneKind kKinds[] = {
    {"meshes", 100, 0, NumberStyle::fixed4, "meshes of 20,000 faces"},
    {"small", 4, 0, NumberStyle::fixed4, "meshes of 32 faces"},
    {"keys", 0, 400, NumberStyle::fixed4, "objects with animation keys"},
    {"six", 100, 0, NumberStyle::fixed6, "meshes, six decimals"},
    {"exponent", 100, 0, NumberStyle::exponent, "meshes, numbers with exponents"},
    {"shortest", 100, 0, NumberStyle::shortest, "meshes, nine significant digits"},
};

class SceneWriter {
public:
    SceneWriter(std::FILE* target, NumberStyle numberStyle) : file(target), style(numberStyle) {}

    [[gnu::format(printf, 2, 3)]] void Text(const char* format, ...)
    {
        va_list arguments;
        va_start(arguments, format);
        bytes += std::vfprintf(file, format, arguments);
        va_end(arguments);
    }
    void Number(double value)
    {
        switch (style) {
        case NumberStyle::fixed4:
            Text("\t%.4f", value);
            break;
        case NumberStyle::fixed6:
            Text("\t%.6f", value);
            break;
        case NumberStyle::exponent:
            Text("\t%.6e", value);
            break;
        case NumberStyle::shortest:
            Text("\t%.9g", value);
            break;
        }
    }
    void Vector(double x, double y, double z)
    {
        Number(x);
        Number(y);
        Number(z);
        Text("\n");
    }

    std::FILE* file;
    NumberStyle style;
    long long bytes = 0;
};

constexpr const char* kQsaStart = "*3DSMAX_QSAEXPORT\t211\n";
constexpr const char* kAseStart = "*3DSMAX_ASCIIEXPORT\t200\n";

void WriteHead(SceneWriter& out, const char* start)
{
    out.Text("%s", start);
    out.Text("*SCENE {\n\t*SCENE_FIRSTFRAME 0\n\t*SCENE_LASTFRAME 100\n"
             "\t*SCENE_FRAMESPEED 30\n\t*SCENE_TICKSPERFRAME 160\n}\n");
    out.Text("*MATERIAL_LIST {\n\t*MATERIAL_COUNT 1\n\t*MATERIAL 0 {\n\t\t*MATERIAL_NAME \"all\"\n"
             "\t\t*NUMSUBMTLS 4\n");
    for (int i = 0; i < 4; ++i) {
        out.Text("\t\t*SUBMATERIAL %d {\n\t\t\t*MATERIAL_NAME \"part %d\"\n\t\t\t*MATERIAL_DIFFUSE",
                 i, i);
        out.Vector(0.2 * i, 0.5, 0.75);
        out.Text("\t\t}\n");
    }
    out.Text("\t}\n}\n");
}

void WriteMatrix(SceneWriter& out, double x, double y)
{
    out.Text("\t*NODE_TM {\n\t\t*TM_ROW0\t1.0\t0.0\t0.0\n\t\t*TM_ROW1\t0.0\t1.0\t0.0\n"
             "\t\t*TM_ROW2\t0.0\t0.0\t1.0\n\t\t*TM_ROW3");
    out.Vector(x, y, 0.0);
    out.Text("\t\t*TM_POS");
    out.Vector(x, y, 0.0);
    out.Text("\t\t*TM_ROTAXIS\t0.0\t0.0\t0.0\n\t\t*TM_ROTANGLE\t0.0\n\t\t*TM_SCALE\t1.0\t1.0\t1.0\n"
             "\t}\n");
}

/// A hilly field of `side` by `side` squares with texture coordinates.
void WriteMesh(SceneWriter& out, int number, int side)
{
    const int across = side + 1;
    out.Text("*GEOMOBJECT {\n\t*NODE_NAME \"Field%06d\"\n", number);
    WriteMatrix(out, number * 10.0, number * -3.5);
    out.Text("\t*MESH {\n\t\t*MESH_NUMVERTEX %d\n\t\t*MESH_NUMFACES %d\n\t\t*MESH_VERTEX_LIST {\n",
             across * across, side * side * 2);
    for (int i = 0; i < across * across; ++i) {
        const double x = i % across - side * 0.5;
        const double y = i / across - side * 0.5;
        out.Text("\t\t\t*MESH_VERTEX\t%d", i);
        out.Vector(x * 1.37, y * 0.91, std::sin(x * 0.31 + number) * std::cos(y * 0.17) * 40.0);
    }
    out.Text("\t\t}\n\t\t*MESH_FACE_LIST {\n");
    for (int i = 0; i < side * side * 2; ++i) {
        const int corner = i / 2 / side * across + i / 2 % side;
        const int a = corner + (i % 2);
        const int b = i % 2 ? corner + across + 1 : corner + 1;
        const int c = corner + across;
        out.Text("\t\t\t*MESH_FACE\t%d:\tA:\t%d\tB:\t%d\tC:\t%d\tAB:\t1\tBC:\t1\tCA:\t0"
                 "\t*MESH_SMOOTHING %d\t*MESH_MTLID %d\n",
                 i, a, b, c, 1 + i * 4 / (side * side * 2), i * 4 / (side * side * 2));
    }
    out.Text("\t\t}\n\t\t*MESH_NUMTVERTEX %d\n\t\t*MESH_TVERTLIST {\n", across * across);
    for (int i = 0; i < across * across; ++i) {
        out.Text("\t\t\t*MESH_TVERT\t%d", i);
        out.Vector(static_cast<double>(i % across) / side, static_cast<double>(i / across) / side,
                   0.0);
    }
    out.Text("\t\t}\n\t\t*MESH_NUMTVFACES %d\n\t\t*MESH_TFACELIST {\n", side * side * 2);
    for (int i = 0; i < side * side * 2; ++i) {
        const int corner = i / 2 / side * across + i / 2 % side;
        out.Text("\t\t\t*MESH_TFACE\t%d\t%d\t%d\t%d\n", i, corner + (i % 2),
                 i % 2 ? corner + across + 1 : corner + 1, corner + across);
    }
    out.Text("\t\t}\n\t}\n\t*MATERIAL_REF 0\n}\n");
}

/// An object with position, rotation and scale keys, a third of `keys` each.
void WriteKeys(SceneWriter& out, int number, int keys)
{
    out.Text("*HELPEROBJECT {\n\t*NODE_NAME \"Bob%06d\"\n", number);
    WriteMatrix(out, number * 2.0, 1.0);
    out.Text("\t*TM_ANIMATION {\n\t\t*CONTROL_POS_BEZIER {\n");
    for (int i = 0; i < keys / 3; ++i) {
        out.Text("\t\t\t*CONTROL_BEZIER_POS_KEY %d", i * 160);
        out.Number(std::sin(i * 0.1) * 10.0);
        out.Number(std::cos(i * 0.1) * 10.0);
        out.Number(i * 0.25);
        out.Number(0.5);
        out.Number(0.25);
        out.Number(-0.5);
        out.Vector(0.125, -0.5, 0.75);
    }
    out.Text("\t\t}\n\t\t*CONTROL_ROT_TCB {\n");
    for (int i = 0; i < keys / 3; ++i) {
        out.Text("\t\t\t*CONTROL_TCB_ROT_KEY %d", i * 160);
        out.Number(0.0);
        out.Number(0.6);
        out.Number(0.8);
        out.Number(std::sin(i * 0.05));
        out.Text("\t0.0\t0.0\t0.0\t0.0\t0.0\n");
    }
    out.Text("\t\t}\n\t\t*CONTROL_SCALE_TRACK {\n");
    for (int i = 0; i < keys / 3; ++i) {
        out.Text("\t\t\t*CONTROL_SCALE_SAMPLE %d", i * 160);
        out.Vector(1.0, 1.0 + i * 0.001, 1.0);
    }
    out.Text("\t\t}\n\t}\n}\n");
}

/// The mesh of `WriteMesh` as an OBJ text, whose indices count from 1 over the whole file.
void WriteObjMesh(std::FILE* file, int number, int side)
{
    const int across = side + 1;
    std::fprintf(file, "o Field%06d\n", number);
    for (int i = 0; i < across * across; ++i) {
        const double x = i % across - side * 0.5;
        const double y = i / across - side * 0.5;
        std::fprintf(file, "v %.4f %.4f %.4f\nvt %.4f %.4f\n", x * 1.37, y * 0.91,
                     std::sin(x * 0.31 + number) * std::cos(y * 0.17) * 40.0,
                     static_cast<double>(i % across) / side,
                     static_cast<double>(i / across) / side);
    }
    const int first = number * across * across + 1;
    for (int i = 0; i < side * side * 2; ++i) {
        const int corner = first + i / 2 / side * across + i / 2 % side;
        const int a = corner + (i % 2);
        const int b = i % 2 ? corner + across + 1 : corner + 1;
        const int c = corner + across;
        std::fprintf(file, "f %d/%d %d/%d %d/%d\n", a, a, b, b, c, c);
    }
}

bool WriteObj(const char* path, int meshes, int side)
{
    std::FILE* file = std::fopen(path, "wb");
    for (int number = 0; file && number < meshes; ++number)
        WriteObjMesh(file, number, side);
    return file && std::fclose(file) == 0;
}

/// Writes objects until the text has `wantedBytes`, or `count` of them if that is not 0. Returns their
/// number, 0 if the file cannot be written.
int WriteScene(const SceneKind& kind, const char* path, const char* start, long long wantedBytes,
               int count)
{
    std::FILE* file = std::fopen(path, "wb");
    if (!file)
        return 0;
    SceneWriter out(file, kind.style);
    WriteHead(out, start);
    int number = 0;
    for (; count > 0 ? number < count : out.bytes < wantedBytes; ++number) {
        if (kind.keysPerObject > 0)
            WriteKeys(out, number, kind.keysPerObject);
        else
            WriteMesh(out, number, kind.gridSide);
    }
    return std::fclose(file) == 0 ? number : 0;
}

} // namespace

int main(int count, char** arguments)
{
    const SceneKind* kind = nullptr;
    for (const SceneKind& candidate : kKinds) {
        if (count >= 4 && std::strcmp(arguments[1], candidate.name) == 0)
            kind = &candidate;
    }
    if (!kind || count > 6) {
        std::fprintf(stderr, "make_scene KIND MEGABYTES FILE [ASE_FILE [OBJ_FILE]], KIND one of\n");
        for (const SceneKind& candidate : kKinds)
            std::fprintf(stderr, "  %-10s%s\n", candidate.name, candidate.what);
        return 2;
    }
    const long long wanted = static_cast<long long>(std::atof(arguments[2]) * 1e6);
    const int objects = WriteScene(*kind, arguments[3], kQsaStart, wanted, 0);
    if (objects == 0 || count < 5)
        return objects > 0 ? 0 : 1;
    if (WriteScene(*kind, arguments[4], kAseStart, wanted, objects) != objects)
        return 1;
    return count < 6 || WriteObj(arguments[5], objects, kind->gridSide) ? 0 : 1;
}
