#pragma once

// Direct3D 9: flags and records, with the public names, values and layouts.

#include "d3d9enums.h"

using D3DCOLOR = DWORD;

#define D3DCOLOR_ARGB(a, r, g, b)                                                                  \
    (static_cast<D3DCOLOR>((((a)&0xFFu) << 24) | (((r)&0xFFu) << 16) | (((g)&0xFFu) << 8) |        \
                           ((b)&0xFFu)))
#define D3DCOLOR_RGBA(r, g, b, a) D3DCOLOR_ARGB(a, r, g, b)
#define D3DCOLOR_XRGB(r, g, b) D3DCOLOR_ARGB(0xFF, r, g, b)
#define D3DCOLOR_COLORVALUE(r, g, b, a)                                                            \
    D3DCOLOR_RGBA(static_cast<DWORD>((r)*255.0f), static_cast<DWORD>((g)*255.0f),                  \
                  static_cast<DWORD>((b)*255.0f), static_cast<DWORD>((a)*255.0f))

#define D3DCLEAR_TARGET 0x00000001
#define D3DCLEAR_ZBUFFER 0x00000002
#define D3DCLEAR_STENCIL 0x00000004

#define D3DCLIPPLANE0 (1 << 0)
#define D3DCLIPPLANE1 (1 << 1)
#define D3DCLIPPLANE2 (1 << 2)
#define D3DCLIPPLANE3 (1 << 3)
#define D3DCLIPPLANE4 (1 << 4)
#define D3DCLIPPLANE5 (1 << 5)

#define D3DCS_LEFT 0x001
#define D3DCS_RIGHT 0x002
#define D3DCS_TOP 0x004
#define D3DCS_BOTTOM 0x008
#define D3DCS_FRONT 0x010
#define D3DCS_BACK 0x020
#define D3DCS_PLANE0 0x040
#define D3DCS_PLANE1 0x080
#define D3DCS_PLANE2 0x100
#define D3DCS_PLANE3 0x200
#define D3DCS_PLANE4 0x400
#define D3DCS_PLANE5 0x800
#define D3DCS_ALL 0xFFF

#define D3DFVF_TEXTUREFORMAT1 3u
#define D3DFVF_TEXTUREFORMAT2 0u
#define D3DFVF_TEXTUREFORMAT3 1u
#define D3DFVF_TEXTUREFORMAT4 2u
#define D3DFVF_RESERVED0 0x0001
#define D3DFVF_POSITION_MASK 0x400E
#define D3DFVF_XYZ 0x0002
#define D3DFVF_XYZRHW 0x0004
#define D3DFVF_XYZB1 0x0006
#define D3DFVF_XYZB2 0x0008
#define D3DFVF_XYZB3 0x000a
#define D3DFVF_XYZB4 0x000c
#define D3DFVF_XYZB5 0x000e
#define D3DFVF_XYZW 0x4002
#define D3DFVF_NORMAL 0x0010
#define D3DFVF_PSIZE 0x0020
#define D3DFVF_DIFFUSE 0x0040
#define D3DFVF_SPECULAR 0x0080
#define D3DFVF_TEXCOUNT_MASK 0x0f00
#define D3DFVF_TEXCOUNT_SHIFT 8
#define D3DFVF_TEX0 0x0000
#define D3DFVF_TEX1 0x0100
#define D3DFVF_TEX2 0x0200
#define D3DFVF_TEX3 0x0300
#define D3DFVF_TEX4 0x0400
#define D3DFVF_TEX5 0x0500
#define D3DFVF_TEX6 0x0600
#define D3DFVF_TEX7 0x0700
#define D3DFVF_TEX8 0x0800
#define D3DFVF_LASTBETA_UBYTE4 0x1000
#define D3DFVF_LASTBETA_D3DCOLOR 0x8000
#define D3DFVF_RESERVED2 0x6000

#define D3DFVF_TEXCOORDSIZE1(set) (D3DFVF_TEXTUREFORMAT1 << ((set)*2 + 16))
#define D3DFVF_TEXCOORDSIZE2(set) (D3DFVF_TEXTUREFORMAT2)
#define D3DFVF_TEXCOORDSIZE3(set) (D3DFVF_TEXTUREFORMAT3 << ((set)*2 + 16))
#define D3DFVF_TEXCOORDSIZE4(set) (D3DFVF_TEXTUREFORMAT4 << ((set)*2 + 16))

#define D3DLOCK_READONLY 0x0010
#define D3DLOCK_NOSYSLOCK 0x0800
#define D3DLOCK_NOOVERWRITE 0x1000
#define D3DLOCK_DISCARD 0x2000
#define D3DLOCK_DONOTWAIT 0x4000
#define D3DLOCK_NO_DIRTY_UPDATE 0x8000

#define D3DTSS_TCI_PASSTHRU 0x00000
#define D3DTSS_TCI_CAMERASPACENORMAL 0x10000
#define D3DTSS_TCI_CAMERASPACEPOSITION 0x20000
#define D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR 0x30000
#define D3DTSS_TCI_SPHEREMAP 0x40000

#define D3DUSAGE_RENDERTARGET 0x00000001
#define D3DUSAGE_DEPTHSTENCIL 0x00000002
#define D3DUSAGE_WRITEONLY 0x00000008
#define D3DUSAGE_SOFTWAREPROCESSING 0x00000010
#define D3DUSAGE_DONOTCLIP 0x00000020
#define D3DUSAGE_POINTS 0x00000040
#define D3DUSAGE_RTPATCHES 0x00000080
#define D3DUSAGE_NPATCHES 0x00000100
#define D3DUSAGE_DYNAMIC 0x00000200
#define D3DUSAGE_AUTOGENMIPMAP 0x00000400
#define D3DUSAGE_DMAP 0x00004000
#define D3DUSAGE_QUERY_LEGACYBUMPMAP 0x00008000
#define D3DUSAGE_QUERY_SRGBREAD 0x00010000
#define D3DUSAGE_QUERY_FILTER 0x00020000
#define D3DUSAGE_QUERY_SRGBWRITE 0x00040000
#define D3DUSAGE_QUERY_POSTPIXELSHADER_BLENDING 0x00080000
#define D3DUSAGE_QUERY_VERTEXTEXTURE 0x00100000
#define D3DUSAGE_QUERY_WRAPANDMIP 0x00200000

#define D3DWRAP_U 1
#define D3DWRAP_V 2
#define D3DWRAP_W 4
#define D3DWRAPCOORD_0 1
#define D3DWRAPCOORD_1 2
#define D3DWRAPCOORD_2 4
#define D3DWRAPCOORD_3 8

#define D3DTA_SELECTMASK 0x0000000f
#define D3DTA_DIFFUSE 0x00000000
#define D3DTA_CURRENT 0x00000001
#define D3DTA_TEXTURE 0x00000002
#define D3DTA_TFACTOR 0x00000003
#define D3DTA_SPECULAR 0x00000004
#define D3DTA_TEMP 0x00000005
#define D3DTA_CONSTANT 0x00000006
#define D3DTA_COMPLEMENT 0x00000010
#define D3DTA_ALPHAREPLICATE 0x00000020

#define D3DCOLORWRITEENABLE_RED (1 << 0)
#define D3DCOLORWRITEENABLE_GREEN (1 << 1)
#define D3DCOLORWRITEENABLE_BLUE (1 << 2)
#define D3DCOLORWRITEENABLE_ALPHA (1 << 3)

#define D3DPV_DONOTCOPYDATA (1 << 0)
#define D3DSTREAMSOURCE_INDEXEDDATA (1u << 30)
#define D3DSTREAMSOURCE_INSTANCEDATA (2u << 30)

#define D3DPRESENTFLAG_LOCKABLE_BACKBUFFER 0x00000001
#define D3DPRESENTFLAG_DISCARD_DEPTHSTENCIL 0x00000002
#define D3DPRESENTFLAG_DEVICECLIP 0x00000004
#define D3DPRESENTFLAG_VIDEO 0x00000010
#define D3DPRESENT_RATE_DEFAULT 0x00000000

#define MAX_DEVICE_IDENTIFIER_STRING 512
#define D3DMAXUSERCLIPPLANES 32
#define D3D_MAX_SIMULTANEOUS_RENDERTARGETS 4
#define D3DDP_MAXTEXCOORD 8
#define D3DDMAPSAMPLER 256
#define D3DVERTEXTEXTURESAMPLER0 (D3DDMAPSAMPLER + 1)
#define D3DVERTEXTEXTURESAMPLER3 (D3DDMAPSAMPLER + 4)
#define MAXD3DDECLLENGTH 64
#define D3DMAXDECLLENGTH 18

#define D3DTS_WORLDMATRIX(index) (static_cast<D3DTRANSFORMSTATETYPE>((index) + 256))
#define D3DTS_WORLD D3DTS_WORLDMATRIX(0)
#define D3DTS_WORLD1 D3DTS_WORLDMATRIX(1)
#define D3DTS_WORLD2 D3DTS_WORLDMATRIX(2)
#define D3DTS_WORLD3 D3DTS_WORLDMATRIX(3)
#define D3DDECL_END()                                                                              \
    {                                                                                              \
        0xFF, 0, D3DDECLTYPE_UNUSED, 0, 0, 0                                                       \
    }
#define D3DPS_VERSION(major, minor) (0xFFFF0000u | ((major) << 8) | (minor))
#define D3DVS_VERSION(major, minor) (0xFFFE0000u | ((major) << 8) | (minor))
#define D3DSHADER_VERSION_MAJOR(version) (((version) >> 8) & 0xFF)
#define D3DSHADER_VERSION_MINOR(version) (((version) >> 0) & 0xFF)

struct D3DCOLORVALUE {
    float r;
    float g;
    float b;
    float a;
};

struct D3DVECTOR {
    float x;
    float y;
    float z;
};

struct D3DRECT {
    LONG x1;
    LONG y1;
    LONG x2;
    LONG y2;
};

struct D3DBOX {
    UINT Left;
    UINT Top;
    UINT Right;
    UINT Bottom;
    UINT Front;
    UINT Back;
};

struct D3DRANGE {
    UINT Offset;
    UINT Size;
};

struct D3DMATRIX {
    union {
        struct {
            float _11, _12, _13, _14;
            float _21, _22, _23, _24;
            float _31, _32, _33, _34;
            float _41, _42, _43, _44;
        };
        float m[4][4];
    };
};

struct D3DADAPTER_IDENTIFIER9 {
    char Driver[MAX_DEVICE_IDENTIFIER_STRING];
    char Description[MAX_DEVICE_IDENTIFIER_STRING];
    char DeviceName[32];
    LARGE_INTEGER DriverVersion;
    DWORD VendorId;
    DWORD DeviceId;
    DWORD SubSysId;
    DWORD Revision;
    GUID DeviceIdentifier;
    DWORD WHQLLevel;
};

struct D3DCLIPSTATUS9 {
    DWORD ClipUnion;
    DWORD ClipIntersection;
};

struct D3DDEVICE_CREATION_PARAMETERS {
    UINT AdapterOrdinal;
    D3DDEVTYPE DeviceType;
    HWND hFocusWindow;
    DWORD BehaviorFlags;
};

struct D3DDISPLAYMODE {
    UINT Width;
    UINT Height;
    UINT RefreshRate;
    D3DFORMAT Format;
};

struct D3DGAMMARAMP {
    WORD red[256];
    WORD green[256];
    WORD blue[256];
};

struct D3DLIGHT9 {
    D3DLIGHTTYPE Type;
    D3DCOLORVALUE Diffuse;
    D3DCOLORVALUE Specular;
    D3DCOLORVALUE Ambient;
    D3DVECTOR Position;
    D3DVECTOR Direction;
    float Range;
    float Falloff;
    float Attenuation0;
    float Attenuation1;
    float Attenuation2;
    float Theta;
    float Phi;
};

struct D3DLOCKED_BOX {
    INT RowPitch;
    INT SlicePitch;
    void* pBits;
};

struct D3DLOCKED_RECT {
    INT Pitch;
    void* pBits;
};

struct D3DMATERIAL9 {
    D3DCOLORVALUE Diffuse;
    D3DCOLORVALUE Ambient;
    D3DCOLORVALUE Specular;
    D3DCOLORVALUE Emissive;
    float Power;
};

struct D3DPRESENT_PARAMETERS {
    UINT BackBufferWidth;
    UINT BackBufferHeight;
    D3DFORMAT BackBufferFormat;
    UINT BackBufferCount;
    D3DMULTISAMPLE_TYPE MultiSampleType;
    DWORD MultiSampleQuality;
    D3DSWAPEFFECT SwapEffect;
    HWND hDeviceWindow;
    BOOL Windowed;
    BOOL EnableAutoDepthStencil;
    D3DFORMAT AutoDepthStencilFormat;
    DWORD Flags;
    UINT FullScreen_RefreshRateInHz;
    UINT PresentationInterval;
};

struct D3DRASTER_STATUS {
    BOOL InVBlank;
    UINT ScanLine;
};

struct D3DRECTPATCH_INFO {
    UINT StartVertexOffsetWidth;
    UINT StartVertexOffsetHeight;
    UINT Width;
    UINT Height;
    UINT Stride;
    D3DBASISTYPE Basis;
    D3DDEGREETYPE Degree;
};

struct D3DTRIPATCH_INFO {
    UINT StartVertexOffset;
    UINT NumVertices;
    D3DBASISTYPE Basis;
    D3DDEGREETYPE Degree;
};

struct D3DSURFACE_DESC {
    D3DFORMAT Format;
    D3DRESOURCETYPE Type;
    DWORD Usage;
    D3DPOOL Pool;
    D3DMULTISAMPLE_TYPE MultiSampleType;
    DWORD MultiSampleQuality;
    UINT Width;
    UINT Height;
};

struct D3DVOLUME_DESC {
    D3DFORMAT Format;
    D3DRESOURCETYPE Type;
    DWORD Usage;
    D3DPOOL Pool;
    UINT Width;
    UINT Height;
    UINT Depth;
};

struct D3DVERTEXBUFFER_DESC {
    D3DFORMAT Format;
    D3DRESOURCETYPE Type;
    DWORD Usage;
    D3DPOOL Pool;
    UINT Size;
    DWORD FVF;
};

struct D3DINDEXBUFFER_DESC {
    D3DFORMAT Format;
    D3DRESOURCETYPE Type;
    DWORD Usage;
    D3DPOOL Pool;
    UINT Size;
};

struct D3DVIEWPORT9 {
    DWORD X;
    DWORD Y;
    DWORD Width;
    DWORD Height;
    float MinZ;
    float MaxZ;
};

struct D3DVERTEXELEMENT9 {
    WORD Stream;
    WORD Offset;
    BYTE Type;
    BYTE Method;
    BYTE Usage;
    BYTE UsageIndex;
};
