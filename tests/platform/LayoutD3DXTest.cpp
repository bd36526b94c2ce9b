#include <d3dx9.h>

#include <cstddef>

// Compiled against the system's headers on Windows and this project's stand-ins elsewhere: a
// mismatch in either breaks the build. The numbers are the published ones.

static_assert(static_cast<DWORD>(D3DX_DEFAULT) == 0xFFFFFFFF);
static_assert(static_cast<DWORD>(D3DX_DEFAULT_NONPOW2) == 0xFFFFFFFE);
static_assert(static_cast<DWORD>(D3DX_FROM_FILE) == 0xFFFFFFFD);

static_assert(static_cast<DWORD>(D3DXERR_CANNOTMODIFYINDEXBUFFER) == 0x88760B54);
static_assert(static_cast<DWORD>(D3DXERR_INVALIDMESH) == 0x88760B55);
static_assert(static_cast<DWORD>(D3DXERR_CANNOTATTRSORT) == 0x88760B56);
static_assert(static_cast<DWORD>(D3DXERR_SKINNINGNOTSUPPORTED) == 0x88760B57);
static_assert(static_cast<DWORD>(D3DXERR_TOOMANYINFLUENCES) == 0x88760B58);
static_assert(static_cast<DWORD>(D3DXERR_INVALIDDATA) == 0x88760B59);
static_assert(static_cast<DWORD>(D3DXERR_LOADEDMESHASNODATA) == 0x88760B5A);
static_assert(static_cast<DWORD>(D3DXERR_DUPLICATENAMEDFRAGMENT) == 0x88760B5B);
static_assert(static_cast<DWORD>(D3DXERR_CANNOTREMOVELASTITEM) == 0x88760B5C);

static_assert(D3DX_SDK_VERSION == 43);

static_assert(sizeof(D3DXRTS_DESC) == 20);
static_assert(offsetof(D3DXRTS_DESC, Width) == 0);
static_assert(offsetof(D3DXRTS_DESC, Height) == 4);
static_assert(offsetof(D3DXRTS_DESC, Format) == 8);
static_assert(offsetof(D3DXRTS_DESC, DepthStencil) == 12);
static_assert(offsetof(D3DXRTS_DESC, DepthStencilFormat) == 16);

static_assert(D3DXFX_DONOTSAVESTATE == 1);
static_assert(D3DXFX_DONOTSAVESHADERSTATE == 2);
static_assert(D3DXFX_DONOTSAVESAMPLERSTATE == 4);
static_assert(D3DXFX_NOT_CLONEABLE == 2048);

static_assert(D3DX_PARAMETER_SHARED == 1);
static_assert(D3DX_PARAMETER_LITERAL == 2);
static_assert(D3DX_PARAMETER_ANNOTATION == 4);

static_assert(sizeof(D3DXEFFECT_DESC) == 24);
static_assert(offsetof(D3DXEFFECT_DESC, Creator) == 0);
static_assert(offsetof(D3DXEFFECT_DESC, Parameters) == 8);
static_assert(offsetof(D3DXEFFECT_DESC, Techniques) == 12);
static_assert(offsetof(D3DXEFFECT_DESC, Functions) == 16);

static_assert(sizeof(D3DXPARAMETER_DESC) == 56);
static_assert(offsetof(D3DXPARAMETER_DESC, Name) == 0);
static_assert(offsetof(D3DXPARAMETER_DESC, Semantic) == 8);
static_assert(offsetof(D3DXPARAMETER_DESC, Class) == 16);
static_assert(offsetof(D3DXPARAMETER_DESC, Type) == 20);
static_assert(offsetof(D3DXPARAMETER_DESC, Rows) == 24);
static_assert(offsetof(D3DXPARAMETER_DESC, Columns) == 28);
static_assert(offsetof(D3DXPARAMETER_DESC, Elements) == 32);
static_assert(offsetof(D3DXPARAMETER_DESC, Annotations) == 36);
static_assert(offsetof(D3DXPARAMETER_DESC, StructMembers) == 40);
static_assert(offsetof(D3DXPARAMETER_DESC, Flags) == 44);
static_assert(offsetof(D3DXPARAMETER_DESC, Bytes) == 48);

static_assert(sizeof(D3DXTECHNIQUE_DESC) == 16);
static_assert(offsetof(D3DXTECHNIQUE_DESC, Name) == 0);
static_assert(offsetof(D3DXTECHNIQUE_DESC, Passes) == 8);
static_assert(offsetof(D3DXTECHNIQUE_DESC, Annotations) == 12);

static_assert(sizeof(D3DXPASS_DESC) == 32);
static_assert(offsetof(D3DXPASS_DESC, Name) == 0);
static_assert(offsetof(D3DXPASS_DESC, Annotations) == 8);
static_assert(offsetof(D3DXPASS_DESC, pVertexShaderFunction) == 16);
static_assert(offsetof(D3DXPASS_DESC, pPixelShaderFunction) == 24);

static_assert(sizeof(D3DXFUNCTION_DESC) == 16);
static_assert(offsetof(D3DXFUNCTION_DESC, Name) == 0);
static_assert(offsetof(D3DXFUNCTION_DESC, Annotations) == 8);

static_assert(sizeof(D3DXVECTOR2) == 8);
static_assert(offsetof(D3DXVECTOR2, x) == 0);
static_assert(offsetof(D3DXVECTOR2, y) == 4);

static_assert(sizeof(D3DXVECTOR3) == 12);
static_assert(offsetof(D3DXVECTOR3, x) == 0);
static_assert(offsetof(D3DXVECTOR3, y) == 4);
static_assert(offsetof(D3DXVECTOR3, z) == 8);

static_assert(sizeof(D3DXVECTOR4) == 16);
static_assert(offsetof(D3DXVECTOR4, x) == 0);
static_assert(offsetof(D3DXVECTOR4, y) == 4);
static_assert(offsetof(D3DXVECTOR4, z) == 8);
static_assert(offsetof(D3DXVECTOR4, w) == 12);

static_assert(sizeof(D3DXMATRIX) == 64);
static_assert(offsetof(D3DXMATRIX, _11) == 0);
static_assert(offsetof(D3DXMATRIX, _21) == 16);
static_assert(offsetof(D3DXMATRIX, _44) == 60);

static_assert(sizeof(D3DXQUATERNION) == 16);
static_assert(offsetof(D3DXQUATERNION, x) == 0);
static_assert(offsetof(D3DXQUATERNION, y) == 4);
static_assert(offsetof(D3DXQUATERNION, z) == 8);
static_assert(offsetof(D3DXQUATERNION, w) == 12);

static_assert(sizeof(D3DXMACRO) == 16);
static_assert(offsetof(D3DXMACRO, Name) == 0);
static_assert(offsetof(D3DXMACRO, Definition) == 8);

static_assert(sizeof(D3DXINCLUDE_TYPE) == 4);
static_assert(D3DXINC_LOCAL == 0);
static_assert(D3DXINC_SYSTEM == 1);
static_assert(D3DXINC_FORCE_DWORD == 0x7FFFFFFF);

static_assert(sizeof(D3DXPARAMETER_CLASS) == 4);
static_assert(D3DXPC_SCALAR == 0);
static_assert(D3DXPC_VECTOR == 1);
static_assert(D3DXPC_MATRIX_ROWS == 2);
static_assert(D3DXPC_MATRIX_COLUMNS == 3);
static_assert(D3DXPC_OBJECT == 4);
static_assert(D3DXPC_STRUCT == 5);
static_assert(D3DXPC_FORCE_DWORD == 0x7FFFFFFF);

static_assert(sizeof(D3DXPARAMETER_TYPE) == 4);
static_assert(D3DXPT_VOID == 0);
static_assert(D3DXPT_BOOL == 1);
static_assert(D3DXPT_INT == 2);
static_assert(D3DXPT_FLOAT == 3);
static_assert(D3DXPT_STRING == 4);
static_assert(D3DXPT_TEXTURE == 5);
static_assert(D3DXPT_TEXTURE1D == 6);
static_assert(D3DXPT_TEXTURE2D == 7);
static_assert(D3DXPT_TEXTURE3D == 8);
static_assert(D3DXPT_TEXTURECUBE == 9);
static_assert(D3DXPT_SAMPLER == 10);
static_assert(D3DXPT_SAMPLER1D == 11);
static_assert(D3DXPT_SAMPLER2D == 12);
static_assert(D3DXPT_SAMPLER3D == 13);
static_assert(D3DXPT_SAMPLERCUBE == 14);
static_assert(D3DXPT_PIXELSHADER == 15);
static_assert(D3DXPT_VERTEXSHADER == 16);
static_assert(D3DXPT_PIXELFRAGMENT == 17);
static_assert(D3DXPT_VERTEXFRAGMENT == 18);
static_assert(D3DXPT_UNSUPPORTED == 19);
static_assert(D3DXPT_FORCE_DWORD == 0x7FFFFFFF);

static_assert(D3DX_FILTER_NONE == 1);
static_assert(D3DX_FILTER_POINT == 2);
static_assert(D3DX_FILTER_LINEAR == 3);
static_assert(D3DX_FILTER_TRIANGLE == 4);
static_assert(D3DX_FILTER_BOX == 5);
static_assert(D3DX_FILTER_MIRROR_U == 0x10000);
static_assert(D3DX_FILTER_MIRROR_V == 0x20000);
static_assert(D3DX_FILTER_MIRROR_W == 0x40000);
static_assert(D3DX_FILTER_MIRROR == 0x70000);
static_assert(D3DX_FILTER_DITHER == 0x80000);
static_assert(D3DX_FILTER_DITHER_DIFFUSION == 0x100000);
static_assert(D3DX_FILTER_SRGB_IN == 0x200000);
static_assert(D3DX_FILTER_SRGB_OUT == 0x400000);
static_assert(D3DX_FILTER_SRGB == 0x600000);

static_assert(sizeof(D3DXIMAGE_FILEFORMAT) == 4);
static_assert(D3DXIFF_BMP == 0);
static_assert(D3DXIFF_JPG == 1);
static_assert(D3DXIFF_TGA == 2);
static_assert(D3DXIFF_PNG == 3);
static_assert(D3DXIFF_DDS == 4);
static_assert(D3DXIFF_PPM == 5);
static_assert(D3DXIFF_DIB == 6);
static_assert(D3DXIFF_HDR == 7);
static_assert(D3DXIFF_PFM == 8);
static_assert(D3DXIFF_FORCE_DWORD == 0x7FFFFFFF);

static_assert(sizeof(D3DXIMAGE_INFO) == 28);
static_assert(offsetof(D3DXIMAGE_INFO, Width) == 0);
static_assert(offsetof(D3DXIMAGE_INFO, Height) == 4);
static_assert(offsetof(D3DXIMAGE_INFO, Depth) == 8);
static_assert(offsetof(D3DXIMAGE_INFO, MipLevels) == 12);
static_assert(offsetof(D3DXIMAGE_INFO, Format) == 16);
static_assert(offsetof(D3DXIMAGE_INFO, ResourceType) == 20);
static_assert(offsetof(D3DXIMAGE_INFO, ImageFileFormat) == 24);
