// Which calls a mesh makes on its device, what it does when one fails, and what it refuses.

#include "platform/headless/d3d9/TestControl.h"
#include "tests/support/RecordingDevice.h"

#include <algorithm>
#include <array>
#include <d3dx9.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace headless;

namespace {

using Lines = std::vector<std::string>;

/// Six faces, of which 1, 2 and 5 have attribute 4, on a device that only records calls.
class MeshDraw : public testing::Test {
protected:
    void SetUp() override
    {
        ID3DXMesh* made = nullptr;
        ASSERT_EQ(D3DXCreateMeshFVF(6, 8, D3DXMESH_MANAGED, D3DFVF_XYZ, device.get(), &made),
                  D3D_OK);
        mesh.reset(made);
        void* indices = nullptr;
        ASSERT_EQ(mesh->LockIndexBuffer(0, &indices), D3D_OK);
        for (int i = 0; i < 18; ++i)
            static_cast<WORD*>(indices)[i] = static_cast<WORD>(1 + i % 7);
        ASSERT_EQ(mesh->UnlockIndexBuffer(), D3D_OK);
        constexpr std::array<DWORD, 6> kAttributes = {9, 4, 4, 0, 9, 4};
        DWORD* attributes = nullptr;
        ASSERT_EQ(mesh->LockAttributeBuffer(0, &attributes), D3D_OK);
        std::copy(kAttributes.begin(), kAttributes.end(), attributes);
        ASSERT_EQ(mesh->UnlockAttributeBuffer(), D3D_OK);
        device->ClearLines();
    }

    HRESULT Sort()
    {
        return mesh->OptimizeInplace(D3DXMESHOPT_ATTRSORT, nullptr, nullptr, nullptr, nullptr);
    }

    ComHandle<RecordingDevice> device = RecordingDevice::Standalone();
    ComHandle<ID3DXMesh> mesh;
};

} // namespace

TEST_F(MeshDraw, UnsortedMeshDrawsEachRunOverAllVertices)
{
    EXPECT_EQ(mesh->DrawSubset(4), D3D_OK);
    EXPECT_EQ(device->Lines(), (Lines{"SetStreamSource 0 vertexbuffer#1 0 12", "SetFVF D3DFVF_XYZ",
                                      "SetIndices indexbuffer#1",
                                      "DrawIndexedPrimitive D3DPT_TRIANGLELIST 0 0 8 3 2",
                                      "DrawIndexedPrimitive D3DPT_TRIANGLELIST 0 0 8 15 1"}));
}

TEST_F(MeshDraw, SortedMeshDrawsOneRange)
{
    // Sorted: face 3 (0), faces 1, 2, 5 (4), faces 0, 4 (9). The indices count from 1 to 7 and
    // start over: face 1 has 4 5 6, face 2 has 7 1 2, face 5 has 2 3 4, so vertices 1 to 7.
    ASSERT_EQ(Sort(), D3D_OK);
    EXPECT_EQ(mesh->DrawSubset(4), D3D_OK);
    EXPECT_EQ(device->Lines(), (Lines{"SetStreamSource 0 vertexbuffer#1 0 12", "SetFVF D3DFVF_XYZ",
                                      "SetIndices indexbuffer#1",
                                      "DrawIndexedPrimitive D3DPT_TRIANGLELIST 0 1 7 3 3"}));
}

TEST_F(MeshDraw, FailureOfTheDeviceEndsTheDrawing)
{
    for (const char* name : {"SetStreamSource", "SetFVF", "SetIndices", "DrawIndexedPrimitive"}) {
        device->ClearLines();
        device->FailNext(name, D3DERR_DEVICELOST);
        EXPECT_EQ(mesh->DrawSubset(4), D3DERR_DEVICELOST) << name;
        ASSERT_FALSE(device->Lines().empty());
        EXPECT_EQ(device->Lines().back().rfind(name, 0), 0u) << name << " was not the last call";
    }
}

TEST_F(MeshDraw, FailureOfABufferMakesNoMesh)
{
    for (const char* name : {"CreateVertexBuffer", "CreateIndexBuffer"}) {
        ID3DXMesh* made = nullptr;
        device->FailNext(name, D3DERR_OUTOFVIDEOMEMORY);
        EXPECT_EQ(D3DXCreateMeshFVF(1, 3, 0, D3DFVF_XYZ, device.get(), &made),
                  D3DERR_OUTOFVIDEOMEMORY);
        EXPECT_EQ(made, nullptr) << name;
    }
}

TEST_F(MeshDraw, BuffersBeyond32BitsOfBytesAreRefused)
{
    // 0x40000000 vertices of 12 bytes, and 0x2AAAAAAB faces of 6 bytes, which is 2^32 + 2.
    ID3DXMesh* made = nullptr;
    EXPECT_EQ(D3DXCreateMeshFVF(1, 0x40000000, 0, D3DFVF_XYZ, device.get(), &made), E_OUTOFMEMORY);
    EXPECT_EQ(D3DXCreateMeshFVF(0x2AAAAAAB, 3, 0, D3DFVF_XYZ, device.get(), &made), E_OUTOFMEMORY);
    EXPECT_TRUE(device->Lines().empty());
}

TEST_F(MeshDraw, IndicesBeyondTheVerticesDoNotUpsetTheSort)
{
    void* indices = nullptr;
    ASSERT_EQ(mesh->LockIndexBuffer(0, &indices), D3D_OK);
    static_cast<WORD*>(indices)[9] = 65535; // face 3, alone in attribute 0, now has 65535, 4 and 5
    ASSERT_EQ(mesh->UnlockIndexBuffer(), D3D_OK);
    ASSERT_EQ(Sort(), D3D_OK);
    D3DXATTRIBUTERANGE table[3] = {};
    ASSERT_EQ(mesh->GetAttributeTable(table, nullptr), D3D_OK);
    EXPECT_EQ(table[0].VertexStart, 4u);
    EXPECT_EQ(table[0].VertexCount, 65532u);
}

TEST_F(MeshDraw, WhatIsNotModelledIsLoggedAndRefused)
{
    DWORD numbers[18] = {};
    D3DVERTEXELEMENT9 declaration[MAX_FVF_DECL_SIZE] = {};
    ID3DXMesh* other = nullptr;
    const int before = UnmodelledCallCount("ID3DXMesh::OptimizeInplace");
    for (const DWORD flags : {DWORD{0}, DWORD{D3DXMESHOPT_VERTEXCACHE}, DWORD{D3DXMESHOPT_COMPACT},
                              DWORD{D3DXMESHOPT_ATTRSORT} | DWORD{D3DXMESHOPT_COMPACT}})
        EXPECT_EQ(mesh->OptimizeInplace(flags, nullptr, nullptr, nullptr, nullptr), E_NOTIMPL);
    EXPECT_EQ(mesh->OptimizeInplace(D3DXMESHOPT_ATTRSORT, nullptr, numbers, nullptr, nullptr),
              E_NOTIMPL);
    EXPECT_EQ(UnmodelledCallCount("ID3DXMesh::OptimizeInplace"), before + 5);

    EXPECT_EQ(mesh->Optimize(D3DXMESHOPT_ATTRSORT, nullptr, nullptr, nullptr, nullptr, &other),
              E_NOTIMPL);
    EXPECT_EQ(mesh->CloneMeshFVF(D3DXMESH_MANAGED, D3DFVF_XYZ, device.get(), &other), E_NOTIMPL);
    EXPECT_EQ(mesh->CloneMesh(D3DXMESH_MANAGED, declaration, device.get(), &other), E_NOTIMPL);
    EXPECT_EQ(mesh->GetDeclaration(declaration), E_NOTIMPL);
    EXPECT_EQ(mesh->UpdateSemantics(declaration), E_NOTIMPL);
    EXPECT_EQ(mesh->GenerateAdjacency(0, numbers), E_NOTIMPL);
    EXPECT_EQ(mesh->ConvertPointRepsToAdjacency(numbers, numbers), E_NOTIMPL);
    EXPECT_EQ(mesh->ConvertAdjacencyToPointReps(numbers, numbers), E_NOTIMPL);
}
