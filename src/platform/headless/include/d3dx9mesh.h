#pragma once

// Meshes: a vertex buffer, a list of triangles and an attribute number for each triangle. Faces
// with the same number form a subset and share a material.

#include "d3d9.h"

struct ID3DXBuffer;
struct ID3DXMesh;

#define UNUSED16 0xFFFF
#define UNUSED32 0xFFFFFFFF

enum { MAX_FVF_DECL_SIZE = MAXD3DDECLLENGTH + 1 };

/// Options of a new mesh; the bits choose pool and usage of both buffers.
enum {
    D3DXMESH_32BIT = 0x001,
    D3DXMESH_DONOTCLIP = 0x002,
    D3DXMESH_POINTS = 0x004,
    D3DXMESH_RTPATCHES = 0x008,
    D3DXMESH_NPATCHES = 0x4000,
    D3DXMESH_VB_SYSTEMMEM = 0x010,
    D3DXMESH_VB_MANAGED = 0x020,
    D3DXMESH_VB_WRITEONLY = 0x040,
    D3DXMESH_VB_DYNAMIC = 0x080,
    D3DXMESH_VB_SOFTWAREPROCESSING = 0x8000,
    D3DXMESH_IB_SYSTEMMEM = 0x100,
    D3DXMESH_IB_MANAGED = 0x200,
    D3DXMESH_IB_WRITEONLY = 0x400,
    D3DXMESH_IB_DYNAMIC = 0x800,
    D3DXMESH_IB_SOFTWAREPROCESSING = 0x10000,
    D3DXMESH_VB_SHARE = 0x1000,
    D3DXMESH_USEHWONLY = 0x2000,
    D3DXMESH_SYSTEMMEM = 0x110,
    D3DXMESH_MANAGED = 0x220,
    D3DXMESH_WRITEONLY = 0x440,
    D3DXMESH_DYNAMIC = 0x880,
    D3DXMESH_SOFTWAREPROCESSING = 0x18000
};

enum {
    D3DXMESHOPT_DEVICEINDEPENDENT = 0x00400000,
    D3DXMESHOPT_COMPACT = 0x01000000,
    D3DXMESHOPT_ATTRSORT = 0x02000000,
    D3DXMESHOPT_VERTEXCACHE = 0x04000000,
    D3DXMESHOPT_STRIPREORDER = 0x08000000,
    D3DXMESHOPT_IGNOREVERTS = 0x10000000,
    D3DXMESHOPT_DONOTSPLIT = 0x20000000
};

/// One subset of a sorted mesh: its faces, and the vertices from the lowest to the highest index in
/// use.
struct D3DXATTRIBUTERANGE {
    DWORD AttribId;
    DWORD FaceStart;
    DWORD FaceCount;
    DWORD VertexStart;
    DWORD VertexCount;
};
using LPD3DXATTRIBUTERANGE = D3DXATTRIBUTERANGE*;

inline constexpr IID IID_ID3DXBaseMesh = {
    0x7ED943DD, 0x52E8, 0x40B5, {0xA8, 0xD8, 0x76, 0x68, 0x5C, 0x40, 0x63, 0x30}};
inline constexpr IID IID_ID3DXMesh = {
    0x4020E5C2, 0x1403, 0x4929, {0x88, 0x3F, 0xE2, 0xE8, 0x49, 0xFA, 0xC1, 0x95}};

struct ID3DXBaseMesh : IUnknown {
    /// Draws the faces whose attribute number is `attributeId`, if there are any.
    virtual HRESULT STDMETHODCALLTYPE DrawSubset(DWORD attributeId) = 0;
    virtual DWORD STDMETHODCALLTYPE GetNumFaces() = 0;
    virtual DWORD STDMETHODCALLTYPE GetNumVertices() = 0;
    virtual DWORD STDMETHODCALLTYPE GetFVF() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDeclaration(D3DVERTEXELEMENT9* declarationOut) = 0;
    virtual DWORD STDMETHODCALLTYPE GetNumBytesPerVertex() = 0;
    virtual DWORD STDMETHODCALLTYPE GetOptions() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDevice(IDirect3DDevice9** deviceOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE CloneMeshFVF(DWORD options, DWORD fvf,
                                                   IDirect3DDevice9* device,
                                                   ID3DXMesh** cloneOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE CloneMesh(DWORD options, const D3DVERTEXELEMENT9* declaration,
                                                IDirect3DDevice9* device, ID3DXMesh** cloneOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVertexBuffer(IDirect3DVertexBuffer9** bufferOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIndexBuffer(IDirect3DIndexBuffer9** bufferOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockVertexBuffer(DWORD flags, void** dataOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnlockVertexBuffer() = 0;
    virtual HRESULT STDMETHODCALLTYPE LockIndexBuffer(DWORD flags, void** dataOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnlockIndexBuffer() = 0;
    /// Either pointer may be null. The table is empty until the mesh is sorted.
    virtual HRESULT STDMETHODCALLTYPE GetAttributeTable(D3DXATTRIBUTERANGE* tableOut,
                                                        DWORD* countOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertPointRepsToAdjacency(const DWORD* pointReps,
                                                                  DWORD* adjacencyOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE ConvertAdjacencyToPointReps(const DWORD* adjacency,
                                                                  DWORD* pointRepsOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE GenerateAdjacency(FLOAT epsilon, DWORD* adjacencyOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE UpdateSemantics(D3DVERTEXELEMENT9* declaration) = 0;
};
using LPD3DXBASEMESH = ID3DXBaseMesh*;

struct ID3DXMesh : ID3DXBaseMesh {
    /// One number per face, initially all 0. A lock without `D3DLOCK_READONLY` empties the
    /// attribute table.
    virtual HRESULT STDMETHODCALLTYPE LockAttributeBuffer(DWORD flags, DWORD** dataOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE UnlockAttributeBuffer() = 0;
    virtual HRESULT STDMETHODCALLTYPE Optimize(DWORD flags, const DWORD* adjacency,
                                               DWORD* adjacencyOut, DWORD* faceRemapOut,
                                               ID3DXBuffer** vertexRemapOut,
                                               ID3DXMesh** meshOut) = 0;
    /// With `D3DXMESHOPT_ATTRSORT`: sorts faces by attribute, keeping the order within each
    /// attribute; does not move vertices; makes the attribute table. The remap, if requested, holds
    /// each face's old index.
    virtual HRESULT STDMETHODCALLTYPE OptimizeInplace(DWORD flags, const DWORD* adjacency,
                                                      DWORD* adjacencyOut, DWORD* faceRemapOut,
                                                      ID3DXBuffer** vertexRemapOut) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetAttributeTable(const D3DXATTRIBUTERANGE* table,
                                                        DWORD count) = 0;
};
using LPD3DXMESH = ID3DXMesh*;

extern "C" {

/// Neither count may be 0. Indices have 16 bits unless `options` contains `D3DXMESH_32BIT`.
HRESULT WINAPI D3DXCreateMeshFVF(DWORD faceCount, DWORD vertexCount, DWORD options, DWORD fvf,
                                 IDirect3DDevice9* device, ID3DXMesh** meshOut);

} // extern "C"
