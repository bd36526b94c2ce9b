#pragma once

#include "scene/KRE_3dScene.h"

/// A mesh made by the engine, `gGfx`: a strip of triangles that lies in the plane of x and y.
/// Vertex `i` is at (i, i % 2, 0) with the normal (0, 0, 1); face `i` has the vertices `i`, `i` + 1
/// and `i` + 2 and is of attribute `i` % `materials` (0 without any). Box and sphere fit,
/// `clipMode` is 3, faces are sorted. In a blended format each vertex follows bone 0 alone.
void MakeStrip(KRE_Mesh& mesh, int32_t faces, int32_t materials,
               DWORD fvf = D3DFVF_XYZ | D3DFVF_NORMAL);

/// Adds a strip of that name to a scene, which owns it.
KRE_Mesh& AddStrip(KRE_3dScene& scene, const char* name, int32_t faces = 4, int32_t materials = 1,
                   DWORD fvf = D3DFVF_XYZ | D3DFVF_NORMAL);

/// Adds a mesh to a scene that is to become a clone of another one, with materials of its own.
KRE_Mesh& AddClone(KRE_3dScene& scene, const char* name, const char* source, int32_t materials = 1);

/// Adds bones: the first one for the mesh itself, then one for each name.
void AddBones(KRE_Mesh& mesh, std::initializer_list<const char*> names);
