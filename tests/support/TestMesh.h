#pragma once

#include "scene/KRE_3dScene.h"

/// A mesh created by the engine, `gGfx`: a strip of triangles in the plane of x and y. Vertex `i`
/// is at (i, i % 2, 0) with the normal (0, 0, 1); face `i` has the vertices `i`, `i` + 1 and `i` +
/// 2 and the attribute `i` % `materials` (0 without materials). Box and sphere fit, `clipMode` is
/// 3, faces are sorted. In a blended format each vertex follows bone 0 alone.
void MakeStrip(KRE_Mesh& mesh, int32_t faces, int32_t materials,
               DWORD fvf = D3DFVF_XYZ | D3DFVF_NORMAL);

/// Adds a strip with that name to a scene, which owns it.
KRE_Mesh& AddStrip(KRE_3dScene& scene, const char* name, int32_t faces = 4, int32_t materials = 1,
                   DWORD fvf = D3DFVF_XYZ | D3DFVF_NORMAL);

/// Adds a mesh to a scene that will become a clone of another, with its own materials.
KRE_Mesh& AddClone(KRE_3dScene& scene, const char* name, const char* source, int32_t materials = 1);

/// Adds bones: the first for the mesh itself, then one for each name.
void AddBones(KRE_Mesh& mesh, std::initializer_list<const char*> names);
