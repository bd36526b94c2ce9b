// D3DX meshes on a real device.

#include "tests/support/RecordingDevice.h"
#include "tests/support/TestDevice.h"

#include <algorithm>
#include <array>
#include <d3dx9.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

constexpr DWORD kMeshFormat = D3DFVF_XYZ | D3DFVF_NORMAL; // 24 bytes
constexpr DWORD kEmptyId = 99;

/// Six faces over eight vertices; those of attribute 1 use vertices 0 to 3, those of 3 and 7 use
/// vertices from 4 on.
constexpr std::array<WORD, 18> kIndices = {4, 5, 6, 0, 1, 2, 5, 6, 7, 2, 3, 1, 7, 6, 4, 1, 2, 3};
constexpr std::array<DWORD, 6> kAttributes = {3, 1, 3, 1, 7, 1};

/// Sorted by hand: the faces 1, 3, 5 of attribute 1, then 0 and 2 of 3, then 4 of 7.
constexpr std::array<DWORD, 6> kOrder = {1, 3, 5, 0, 2, 4};
constexpr std::array<WORD, 18> kSortedIndices = {0, 1, 2, 2, 3, 1, 1, 2, 3,
                                                 4, 5, 6, 5, 6, 7, 7, 6, 4};
constexpr std::array<DWORD, 6> kSortedAttributes = {1, 1, 1, 3, 3, 7};

using MeshHandle = ComHandle<ID3DXMesh>;

class Mesh : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(device); }

    HRESULT Create(DWORD faces, DWORD vertices, DWORD options, DWORD fvf = kMeshFormat)
    {
        ID3DXMesh* made = nullptr;
        const HRESULT result =
            D3DXCreateMeshFVF(faces, vertices, options, fvf, device.Device(), &made);
        mesh.reset(made);
        return result;
    }

    /// The mesh of the tables above.
    void CreateFilled(DWORD options = D3DXMESH_SYSTEMMEM)
    {
        ASSERT_EQ(Create(6, 8, options), D3D_OK);
        Fill(*mesh);
    }

    static void Fill(ID3DXMesh& filled)
    {
        void* indices = nullptr;
        ASSERT_EQ(filled.LockIndexBuffer(0, &indices), D3D_OK);
        std::copy(kIndices.begin(), kIndices.end(), static_cast<WORD*>(indices));
        ASSERT_EQ(filled.UnlockIndexBuffer(), D3D_OK);
        DWORD* attributes = nullptr;
        ASSERT_EQ(filled.LockAttributeBuffer(0, &attributes), D3D_OK);
        std::copy(kAttributes.begin(), kAttributes.end(), attributes);
        ASSERT_EQ(filled.UnlockAttributeBuffer(), D3D_OK);
    }

    template <typename Index>
    std::vector<Index> Indices()
    {
        void* indices = nullptr;
        EXPECT_EQ(mesh->LockIndexBuffer(D3DLOCK_READONLY, &indices), D3D_OK);
        const auto* first = static_cast<const Index*>(indices);
        std::vector<Index> copy(first, first + mesh->GetNumFaces() * 3);
        EXPECT_EQ(mesh->UnlockIndexBuffer(), D3D_OK);
        return copy;
    }

    std::vector<DWORD> Attributes()
    {
        DWORD* attributes = nullptr;
        EXPECT_EQ(mesh->LockAttributeBuffer(D3DLOCK_READONLY, &attributes), D3D_OK);
        std::vector<DWORD> copy(attributes, attributes + mesh->GetNumFaces());
        EXPECT_EQ(mesh->UnlockAttributeBuffer(), D3D_OK);
        return copy;
    }

    /// Each entry as "id: first face + count, first vertex + count".
    std::vector<std::string> Table()
    {
        DWORD count = 0;
        EXPECT_EQ(mesh->GetAttributeTable(nullptr, &count), D3D_OK);
        std::vector<D3DXATTRIBUTERANGE> table(count);
        EXPECT_EQ(mesh->GetAttributeTable(table.data(), &count), D3D_OK);
        std::vector<std::string> lines;
        for (const D3DXATTRIBUTERANGE& range : table)
            lines.push_back(
                std::to_string(range.AttribId) + ": " + std::to_string(range.FaceStart) + "+" +
                std::to_string(range.FaceCount) + ", " + std::to_string(range.VertexStart) + "+" +
                std::to_string(range.VertexCount));
        return lines;
    }

    HRESULT Sort(DWORD* remapOut = nullptr)
    {
        return mesh->OptimizeInplace(D3DXMESHOPT_ATTRSORT, nullptr, nullptr, remapOut, nullptr);
    }

    TestDevice device;
    MeshHandle mesh;
};

using Lines = std::vector<std::string>;
const Lines kSortedTable = {"1: 0+3, 0+4", "3: 3+2, 4+4", "7: 5+1, 4+4"};

} // namespace

TEST_F(Mesh, ReportsItsCreationParameters)
{
    ASSERT_EQ(Create(2, 4, D3DXMESH_MANAGED, kMeshFormat | D3DFVF_TEX1), D3D_OK);
    EXPECT_EQ(mesh->GetNumFaces(), 2u);
    EXPECT_EQ(mesh->GetNumVertices(), 4u);
    EXPECT_EQ(mesh->GetOptions(), 0x220u);
    EXPECT_EQ(mesh->GetFVF(), 0x112u);
    EXPECT_EQ(mesh->GetNumBytesPerVertex(), 32u); // 12 + 12 + 8
    IDirect3DDevice9* owner = nullptr;
    ASSERT_EQ(mesh->GetDevice(&owner), D3D_OK);
    EXPECT_EQ(owner, device.Device());
    owner->Release();
}

TEST_F(Mesh, BuffersFollowTheOptions)
{
    static const struct {
        const char* what;
        DWORD options;
        D3DPOOL pool;
        DWORD usage;
        D3DFORMAT format;
        UINT indexBytes;
    } cases[] = {
        {"managed", 0x220, D3DPOOL_MANAGED, 0, D3DFMT_INDEX16, 12},
        {"system memory", 0x110, D3DPOOL_SYSTEMMEM, 0, D3DFMT_INDEX16, 12},
        {"both, system memory wins", 0x330, D3DPOOL_SYSTEMMEM, 0, D3DFMT_INDEX16, 12},
        {"software", 0x18110, D3DPOOL_SYSTEMMEM, D3DUSAGE_SOFTWAREPROCESSING, D3DFMT_INDEX16, 12},
        {"neither", 0, D3DPOOL_DEFAULT, 0, D3DFMT_INDEX16, 12},
        {"wide indices", 0x221, D3DPOOL_MANAGED, 0, D3DFMT_INDEX32, 24},
        {"write only", 0x660, D3DPOOL_MANAGED, D3DUSAGE_WRITEONLY, D3DFMT_INDEX16, 12},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(Create(2, 4, c.options), D3D_OK) << c.what;
        IDirect3DVertexBuffer9* vertices = nullptr;
        ASSERT_EQ(mesh->GetVertexBuffer(&vertices), D3D_OK);
        D3DVERTEXBUFFER_DESC vertexDesc = {};
        EXPECT_EQ(vertices->GetDesc(&vertexDesc), D3D_OK);
        vertices->Release();
        IDirect3DIndexBuffer9* indices = nullptr;
        ASSERT_EQ(mesh->GetIndexBuffer(&indices), D3D_OK);
        D3DINDEXBUFFER_DESC indexDesc = {};
        EXPECT_EQ(indices->GetDesc(&indexDesc), D3D_OK);
        indices->Release();

        EXPECT_EQ(vertexDesc.Pool, c.pool) << c.what;
        EXPECT_EQ(vertexDesc.Usage, c.usage) << c.what;
        EXPECT_EQ(vertexDesc.Size, 96u) << c.what;
        EXPECT_EQ(vertexDesc.FVF, kMeshFormat) << c.what;
        EXPECT_EQ(indexDesc.Pool, c.pool) << c.what;
        EXPECT_EQ(indexDesc.Usage, c.usage) << c.what;
        EXPECT_EQ(indexDesc.Format, c.format) << c.what;
        EXPECT_EQ(indexDesc.Size, c.indexBytes) << c.what;
    }
}

TEST_F(Mesh, TakesTheFormatsOfSkinnedVertices)
{
    static const struct {
        DWORD fvf;
        DWORD bytes; // position, weights with indices, normal
    } cases[] = {
        {0x1018, 12 + 8 + 12},           {0x101A, 12 + 12 + 12}, {0x101C, 12 + 16 + 12},
        {0x11DC, 12 + 16 + 12 + 8 + 8},  // and two colours and a texture set
        {0x40252, 12 + 12 + 4 + 8 + 12}, // a colour; set 0 of two numbers, set 1 of three
    };
    for (const auto& c : cases) {
        ASSERT_EQ(Create(1, 3, D3DXMESH_SYSTEMMEM, c.fvf), D3D_OK) << std::hex << c.fvf;
        EXPECT_EQ(mesh->GetFVF(), c.fvf);
        EXPECT_EQ(mesh->GetNumBytesPerVertex(), c.bytes) << std::hex << c.fvf;
    }
}

TEST_F(Mesh, RefusesInvalidMeshes)
{
    static const struct {
        const char* what;
        DWORD faces, vertices, options, fvf;
    } cases[] = {
        {"no faces", 0, 4, 0x110, kMeshFormat},
        {"no vertices", 2, 0, 0x110, kMeshFormat},
        {"shared vertices", 2, 4, 0x1110, kMeshFormat},
        {"hardware alone", 2, 4, 0x2110, kMeshFormat},
        {"unknown option", 2, 4, 0x20110, kMeshFormat},
        {"reserved bit of the format", 2, 4, 0x110, kMeshFormat | D3DFVF_RESERVED0},
        {"reserved bits of the format", 2, 4, 0x110, kMeshFormat | 0x2000},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Create(c.faces, c.vertices, c.options, c.fvf), D3DERR_INVALIDCALL) << c.what;
    EXPECT_TRUE(FAILED(Create(2, 4, 0x110, 0))) << "a format of no bytes";
    EXPECT_EQ(D3DXCreateMeshFVF(2, 4, 0x110, kMeshFormat, device.Device(), nullptr),
              D3DERR_INVALIDCALL);
    ID3DXMesh* made = nullptr;
    EXPECT_EQ(D3DXCreateMeshFVF(2, 4, 0x110, kMeshFormat, nullptr, &made), D3DERR_INVALIDCALL);
}

TEST_F(Mesh, TakesAsManyVerticesAsIndicesCanAddress)
{
    ASSERT_EQ(Create(1, 65536, D3DXMESH_SYSTEMMEM), D3D_OK);
    EXPECT_EQ(mesh->GetNumVertices(), 65536u);
}

TEST_F(Mesh, IsKnownByItsInterfaces)
{
    ASSERT_EQ(Create(1, 3, D3DXMESH_SYSTEMMEM), D3D_OK);
    constexpr GUID kBaseMesh = {
        0x7ED943DD, 0x52E8, 0x40B5, {0xA8, 0xD8, 0x76, 0x68, 0x5C, 0x40, 0x63, 0x30}};
    constexpr GUID kMesh = {
        0x4020E5C2, 0x1403, 0x4929, {0x88, 0x3F, 0xE2, 0xE8, 0x49, 0xFA, 0xC1, 0x95}};
    constexpr GUID kProgressiveMesh = {
        0x8875769A, 0xD579, 0x4088, {0xAA, 0xEB, 0x53, 0x4D, 0x1A, 0xD8, 0x4E, 0x96}};
    for (const GUID& id : {kBaseMesh, kMesh}) {
        void* same = nullptr;
        ASSERT_EQ(mesh->QueryInterface(id, &same), S_OK);
        EXPECT_EQ(same, mesh.get());
        EXPECT_EQ(mesh->Release(), 1u);
    }
    void* other = nullptr;
    EXPECT_EQ(mesh->QueryInterface(kProgressiveMesh, &other), E_NOINTERFACE);
}

TEST_F(Mesh, HoldsAndReleasesItsDevice)
{
    device->AddRef();
    const ULONG before = device->Release();
    ASSERT_EQ(Create(1, 3, D3DXMESH_SYSTEMMEM), D3D_OK);
    device->AddRef();
    EXPECT_GT(device->Release(), before);
    mesh.reset();
    device->AddRef();
    EXPECT_EQ(device->Release(), before);
}

TEST_F(Mesh, VerticesComeBack)
{
    ASSERT_EQ(Create(1, 3, D3DXMESH_MANAGED), D3D_OK);
    void* data = nullptr;
    ASSERT_EQ(mesh->LockVertexBuffer(0, &data), D3D_OK);
    for (int i = 0; i < 18; ++i)
        static_cast<float*>(data)[i] = static_cast<float>(i);
    ASSERT_EQ(mesh->UnlockVertexBuffer(), D3D_OK);
    ASSERT_EQ(mesh->LockVertexBuffer(D3DLOCK_READONLY, &data), D3D_OK);
    for (int i = 0; i < 18; ++i)
        EXPECT_EQ(static_cast<const float*>(data)[i], static_cast<float>(i));
    ASSERT_EQ(mesh->UnlockVertexBuffer(), D3D_OK);
}

TEST_F(Mesh, AttributesAreZeroAtFirstAndTheTableEmpty)
{
    ASSERT_EQ(Create(3, 3, D3DXMESH_SYSTEMMEM), D3D_OK);
    EXPECT_EQ(Attributes(), std::vector<DWORD>(3, 0));
    EXPECT_EQ(Table(), Lines());
    EXPECT_EQ(mesh->GetAttributeTable(nullptr, nullptr), D3D_OK);
}

TEST_F(Mesh, AttributeLocksAreCounted)
{
    ASSERT_EQ(Create(1, 3, D3DXMESH_SYSTEMMEM), D3D_OK);
    EXPECT_EQ(mesh->UnlockAttributeBuffer(), D3DERR_INVALIDCALL);
    DWORD* attributes = nullptr;
    EXPECT_EQ(mesh->LockAttributeBuffer(0, &attributes), D3D_OK);
    EXPECT_EQ(mesh->LockAttributeBuffer(0, &attributes), D3D_OK);
    EXPECT_EQ(mesh->UnlockAttributeBuffer(), D3D_OK);
    EXPECT_EQ(mesh->UnlockAttributeBuffer(), D3D_OK);
    EXPECT_EQ(mesh->UnlockAttributeBuffer(), D3DERR_INVALIDCALL);
}

TEST_F(Mesh, SortKeepsTheOrderWithinAnAttribute)
{
    CreateFilled();
    std::array<DWORD, 6> order = {};
    ASSERT_EQ(Sort(order.data()), D3D_OK);
    EXPECT_EQ(order, kOrder);
    EXPECT_EQ(Indices<WORD>(), std::vector<WORD>(kSortedIndices.begin(), kSortedIndices.end()));
    EXPECT_EQ(Attributes(), std::vector<DWORD>(kSortedAttributes.begin(), kSortedAttributes.end()));
}

TEST_F(Mesh, SortMakesATableWithTightRanges)
{
    CreateFilled();
    ASSERT_EQ(Sort(), D3D_OK);
    EXPECT_EQ(Table(), kSortedTable);
}

TEST_F(Mesh, SortWorksOnWideIndices)
{
    ASSERT_EQ(Create(2, 100000, D3DXMESH_SYSTEMMEM | D3DXMESH_32BIT), D3D_OK);
    void* data = nullptr;
    ASSERT_EQ(mesh->LockIndexBuffer(0, &data), D3D_OK);
    const DWORD indices[] = {99999, 70000, 80000, 5, 3, 4};
    std::copy(std::begin(indices), std::end(indices), static_cast<DWORD*>(data));
    ASSERT_EQ(mesh->UnlockIndexBuffer(), D3D_OK);
    DWORD* attributes = nullptr;
    ASSERT_EQ(mesh->LockAttributeBuffer(0, &attributes), D3D_OK);
    attributes[0] = 1;
    ASSERT_EQ(mesh->UnlockAttributeBuffer(), D3D_OK);
    ASSERT_EQ(Sort(), D3D_OK);
    EXPECT_EQ(Indices<DWORD>(), (std::vector<DWORD>{5, 3, 4, 99999, 70000, 80000}));
    EXPECT_EQ(Table(), (Lines{"0: 0+1, 3+3", "1: 1+1, 70000+30000"}));
}

TEST_F(Mesh, SortTakesFewAttributesAndAnyNumberOfThem)
{
    static const struct {
        std::vector<DWORD> attributes, order, table;
    } cases[] = {
        {{255, 0, 254, 0}, {1, 3, 2, 0}, {0, 254, 255}},
        {{256, 0, 255, 0}, {1, 3, 2, 0}, {0, 255, 256}},
        {{70000, 4, 90000, 4}, {1, 3, 0, 2}, {4, 70000, 90000}},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(Create(4, 3, D3DXMESH_SYSTEMMEM), D3D_OK);
        DWORD* attributes = nullptr;
        ASSERT_EQ(mesh->LockAttributeBuffer(0, &attributes), D3D_OK);
        std::copy(c.attributes.begin(), c.attributes.end(), attributes);
        ASSERT_EQ(mesh->UnlockAttributeBuffer(), D3D_OK);
        std::vector<DWORD> order(4);
        ASSERT_EQ(Sort(order.data()), D3D_OK);
        EXPECT_EQ(order, c.order) << c.attributes[0];
        DWORD count = 0;
        ASSERT_EQ(mesh->GetAttributeTable(nullptr, &count), D3D_OK);
        std::vector<D3DXATTRIBUTERANGE> ranges(count);
        ASSERT_EQ(mesh->GetAttributeTable(ranges.data(), &count), D3D_OK);
        std::vector<DWORD> table;
        for (const D3DXATTRIBUTERANGE& range : ranges)
            table.push_back(range.AttribId);
        EXPECT_EQ(table, c.table) << c.attributes[0];
    }
}

TEST_F(Mesh, SortLeavesVerticesWhereTheyAre)
{
    CreateFilled();
    void* data = nullptr;
    ASSERT_EQ(mesh->LockVertexBuffer(0, &data), D3D_OK);
    for (int i = 0; i < 8 * 6; ++i)
        static_cast<float*>(data)[i] = static_cast<float>(i);
    ASSERT_EQ(mesh->UnlockVertexBuffer(), D3D_OK);
    ASSERT_EQ(Sort(), D3D_OK);
    EXPECT_EQ(mesh->GetNumVertices(), 8u);
    ASSERT_EQ(mesh->LockVertexBuffer(D3DLOCK_READONLY, &data), D3D_OK);
    for (int i = 0; i < 8 * 6; ++i)
        EXPECT_EQ(static_cast<const float*>(data)[i], static_cast<float>(i));
    ASSERT_EQ(mesh->UnlockVertexBuffer(), D3D_OK);
}

TEST_F(Mesh, SortingASortedMeshChangesNothing)
{
    CreateFilled();
    ASSERT_EQ(Sort(), D3D_OK);
    std::array<DWORD, 6> order = {};
    ASSERT_EQ(Sort(order.data()), D3D_OK);
    EXPECT_EQ(order, (std::array<DWORD, 6>{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(Table(), kSortedTable);
}

TEST_F(Mesh, WritingLockEmptiesTheTableAndReadingLockDoesNot)
{
    CreateFilled();
    ASSERT_EQ(Sort(), D3D_OK);
    Attributes(); // locks for reading
    EXPECT_EQ(Table().size(), 3u);
    DWORD* attributes = nullptr;
    ASSERT_EQ(mesh->LockAttributeBuffer(0, &attributes), D3D_OK);
    EXPECT_EQ(Table(), Lines());
    EXPECT_EQ(mesh->UnlockAttributeBuffer(), D3D_OK);
    EXPECT_EQ(Table(), Lines());
}

TEST_F(Mesh, TableCanBeSet)
{
    CreateFilled();
    const D3DXATTRIBUTERANGE table[] = {{5, 1, 2, 3, 4}, {6, 7, 8, 9, 10}};
    EXPECT_EQ(mesh->SetAttributeTable(table, 2), D3D_OK);
    EXPECT_EQ(Table(), (Lines{"5: 1+2, 3+4", "6: 7+8, 9+10"}));
    EXPECT_EQ(mesh->SetAttributeTable(nullptr, 0), D3D_OK);
    EXPECT_EQ(Table(), Lines());
}

TEST_F(Mesh, DrawsASubsetOfASortedMeshByItsRange)
{
    const ComHandle<RecordingDevice> recorder = RecordingDevice::Wrap(device.Device());
    ID3DXMesh* made = nullptr;
    ASSERT_EQ(D3DXCreateMeshFVF(6, 8, D3DXMESH_MANAGED, kMeshFormat, recorder.get(), &made),
              D3D_OK);
    mesh.reset(made);
    Fill(*mesh);
    ASSERT_EQ(Sort(), D3D_OK);
    recorder->ClearLines();
    mesh->DrawSubset(3);
    // Faces 3 and 4, so from index 9 on. The vertex range is a hint that not all libraries pass.
    const Lines draws = recorder->Recorder()->LinesOf("DrawIndexedPrimitive");
    ASSERT_EQ(draws.size(), 1u);
    EXPECT_THAT(draws[0], testing::StartsWith("DrawIndexedPrimitive D3DPT_TRIANGLELIST 0 "));
    EXPECT_THAT(draws[0], testing::EndsWith(" 9 2"));
    mesh.reset();
}

TEST_F(Mesh, IdWithoutFacesDrawsNothingWithoutError)
{
    CreateFilled();
    EXPECT_EQ(mesh->DrawSubset(kEmptyId), D3D_OK) << "before the sort";
    ASSERT_EQ(Sort(), D3D_OK);
    EXPECT_EQ(mesh->DrawSubset(kEmptyId), D3D_OK) << "after the sort";
}

TEST_F(Mesh, DrawingBindsItsBuffers)
{
    CreateFilled(D3DXMESH_MANAGED);
    ASSERT_EQ(mesh->DrawSubset(kEmptyId), D3D_OK);
    IDirect3DVertexBuffer9 *bound = nullptr, *own = nullptr;
    UINT offset = 1, stride = 0;
    ASSERT_EQ(device->GetStreamSource(0, &bound, &offset, &stride), D3D_OK);
    ASSERT_EQ(mesh->GetVertexBuffer(&own), D3D_OK);
    EXPECT_EQ(bound, own);
    EXPECT_EQ(offset, 0u);
    EXPECT_EQ(stride, 24u);
    IDirect3DIndexBuffer9 *boundIndices = nullptr, *ownIndices = nullptr;
    ASSERT_EQ(device->GetIndices(&boundIndices), D3D_OK);
    ASSERT_EQ(mesh->GetIndexBuffer(&ownIndices), D3D_OK);
    EXPECT_EQ(boundIndices, ownIndices);
    for (IUnknown* object :
         {static_cast<IUnknown*>(bound), static_cast<IUnknown*>(own),
          static_cast<IUnknown*>(boundIndices), static_cast<IUnknown*>(ownIndices)})
        if (object != nullptr)
            object->Release();
}
