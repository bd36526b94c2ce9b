#include <d3d9.h>

#include <cstddef>

// Compiled against the system's headers on Windows and this project's stand-ins elsewhere: a
// mismatch in either breaks the build. The numbers are the published ones.

// --- constants and result codes

static_assert(DIRECT3D_VERSION == 0x900);
static_assert(D3D_SDK_VERSION == 32);
static_assert(D3DADAPTER_DEFAULT == 0);
static_assert(D3DENUM_WHQL_LEVEL == 2);
static_assert(D3DPRESENT_DONOTWAIT == 1);
static_assert(D3DPRESENT_LINEAR_CONTENT == 2);
static_assert(D3DPRESENT_BACK_BUFFERS_MAX == 3);
static_assert(D3DSGR_NO_CALIBRATION == 0);
static_assert(D3DSGR_CALIBRATE == 1);
static_assert(D3DCURSOR_IMMEDIATE_UPDATE == 1);
static_assert(D3DSPD_IUNKNOWN == 1);

static_assert(D3DCREATE_FPU_PRESERVE == 2);
static_assert(D3DCREATE_MULTITHREADED == 4);
static_assert(D3DCREATE_PUREDEVICE == 0x10);
static_assert(D3DCREATE_SOFTWARE_VERTEXPROCESSING == 0x20);
static_assert(D3DCREATE_HARDWARE_VERTEXPROCESSING == 0x40);
static_assert(D3DCREATE_MIXED_VERTEXPROCESSING == 0x80);
static_assert(D3DCREATE_DISABLE_DRIVER_MANAGEMENT == 0x100);
static_assert(D3DCREATE_ADAPTERGROUP_DEVICE == 0x200);
static_assert(D3DCREATE_NOWINDOWCHANGES == 0x800);

static_assert(static_cast<DWORD>(D3D_OK) == 0x00000000);
static_assert(static_cast<DWORD>(D3DERR_WRONGTEXTUREFORMAT) == 0x88760818);
static_assert(static_cast<DWORD>(D3DERR_UNSUPPORTEDCOLOROPERATION) == 0x88760819);
static_assert(static_cast<DWORD>(D3DERR_UNSUPPORTEDCOLORARG) == 0x8876081A);
static_assert(static_cast<DWORD>(D3DERR_UNSUPPORTEDALPHAOPERATION) == 0x8876081B);
static_assert(static_cast<DWORD>(D3DERR_UNSUPPORTEDALPHAARG) == 0x8876081C);
static_assert(static_cast<DWORD>(D3DERR_TOOMANYOPERATIONS) == 0x8876081D);
static_assert(static_cast<DWORD>(D3DERR_CONFLICTINGTEXTUREFILTER) == 0x8876081E);
static_assert(static_cast<DWORD>(D3DERR_UNSUPPORTEDFACTORVALUE) == 0x8876081F);
static_assert(static_cast<DWORD>(D3DERR_CONFLICTINGRENDERSTATE) == 0x88760821);
static_assert(static_cast<DWORD>(D3DERR_UNSUPPORTEDTEXTUREFILTER) == 0x88760822);
static_assert(static_cast<DWORD>(D3DERR_CONFLICTINGTEXTUREPALETTE) == 0x88760826);
static_assert(static_cast<DWORD>(D3DERR_DRIVERINTERNALERROR) == 0x88760827);
static_assert(static_cast<DWORD>(D3DERR_NOTFOUND) == 0x88760866);
static_assert(static_cast<DWORD>(D3DERR_MOREDATA) == 0x88760867);
static_assert(static_cast<DWORD>(D3DERR_DEVICELOST) == 0x88760868);
static_assert(static_cast<DWORD>(D3DERR_DEVICENOTRESET) == 0x88760869);
static_assert(static_cast<DWORD>(D3DERR_NOTAVAILABLE) == 0x8876086A);
static_assert(static_cast<DWORD>(D3DERR_OUTOFVIDEOMEMORY) == 0x8876017C);
static_assert(static_cast<DWORD>(D3DERR_INVALIDDEVICE) == 0x8876086B);
static_assert(static_cast<DWORD>(D3DERR_INVALIDCALL) == 0x8876086C);
static_assert(static_cast<DWORD>(D3DERR_DRIVERINVALIDCALL) == 0x8876086D);
static_assert(static_cast<DWORD>(D3DERR_WASSTILLDRAWING) == 0x8876021C);
static_assert(static_cast<DWORD>(D3DOK_NOAUTOGEN) == 0x0876086F);

static_assert(D3DCLEAR_TARGET == 1);
static_assert(D3DCLEAR_ZBUFFER == 2);
static_assert(D3DCLEAR_STENCIL == 4);

static_assert(D3DCLIPPLANE0 == 1);
static_assert(D3DCLIPPLANE1 == 2);
static_assert(D3DCLIPPLANE2 == 4);
static_assert(D3DCLIPPLANE3 == 8);
static_assert(D3DCLIPPLANE4 == 16);
static_assert(D3DCLIPPLANE5 == 32);

static_assert(D3DCS_LEFT == 1);
static_assert(D3DCS_RIGHT == 2);
static_assert(D3DCS_TOP == 4);
static_assert(D3DCS_BOTTOM == 8);
static_assert(D3DCS_FRONT == 0x10);
static_assert(D3DCS_BACK == 0x20);
static_assert(D3DCS_PLANE0 == 0x40);
static_assert(D3DCS_PLANE1 == 0x80);
static_assert(D3DCS_PLANE2 == 0x100);
static_assert(D3DCS_PLANE3 == 0x200);
static_assert(D3DCS_PLANE4 == 0x400);
static_assert(D3DCS_PLANE5 == 0x800);
static_assert(D3DCS_ALL == 0xFFF);

static_assert(D3DFVF_TEXTUREFORMAT1 == 3);
static_assert(D3DFVF_TEXTUREFORMAT2 == 0);
static_assert(D3DFVF_TEXTUREFORMAT3 == 1);
static_assert(D3DFVF_TEXTUREFORMAT4 == 2);
static_assert(D3DFVF_RESERVED0 == 1);
static_assert(D3DFVF_POSITION_MASK == 0x400E);
static_assert(D3DFVF_XYZ == 2);
static_assert(D3DFVF_XYZRHW == 4);
static_assert(D3DFVF_XYZB1 == 6);
static_assert(D3DFVF_XYZB2 == 8);
static_assert(D3DFVF_XYZB3 == 0xA);
static_assert(D3DFVF_XYZB4 == 0xC);
static_assert(D3DFVF_XYZB5 == 0xE);
static_assert(D3DFVF_XYZW == 0x4002);
static_assert(D3DFVF_NORMAL == 0x10);
static_assert(D3DFVF_PSIZE == 0x20);
static_assert(D3DFVF_DIFFUSE == 0x40);
static_assert(D3DFVF_SPECULAR == 0x80);
static_assert(D3DFVF_TEXCOUNT_MASK == 0xF00);
static_assert(D3DFVF_TEXCOUNT_SHIFT == 8);
static_assert(D3DFVF_TEX0 == 0);
static_assert(D3DFVF_TEX1 == 0x100);
static_assert(D3DFVF_TEX2 == 0x200);
static_assert(D3DFVF_TEX3 == 0x300);
static_assert(D3DFVF_TEX4 == 0x400);
static_assert(D3DFVF_TEX5 == 0x500);
static_assert(D3DFVF_TEX6 == 0x600);
static_assert(D3DFVF_TEX7 == 0x700);
static_assert(D3DFVF_TEX8 == 0x800);
static_assert(D3DFVF_LASTBETA_UBYTE4 == 0x1000);
static_assert(D3DFVF_LASTBETA_D3DCOLOR == 0x8000);
static_assert(D3DFVF_RESERVED2 == 0x6000);

static_assert(D3DLOCK_READONLY == 0x10);
static_assert(D3DLOCK_NOSYSLOCK == 0x800);
static_assert(D3DLOCK_NOOVERWRITE == 0x1000);
static_assert(D3DLOCK_DISCARD == 0x2000);
static_assert(D3DLOCK_DONOTWAIT == 0x4000);
static_assert(D3DLOCK_NO_DIRTY_UPDATE == 0x8000);

static_assert(D3DTSS_TCI_PASSTHRU == 0);
static_assert(D3DTSS_TCI_CAMERASPACENORMAL == 0x10000);
static_assert(D3DTSS_TCI_CAMERASPACEPOSITION == 0x20000);
static_assert(D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR == 0x30000);
static_assert(D3DTSS_TCI_SPHEREMAP == 0x40000);

static_assert(D3DUSAGE_RENDERTARGET == 1);
static_assert(D3DUSAGE_DEPTHSTENCIL == 2);
static_assert(D3DUSAGE_WRITEONLY == 8);
static_assert(D3DUSAGE_SOFTWAREPROCESSING == 0x10);
static_assert(D3DUSAGE_DONOTCLIP == 0x20);
static_assert(D3DUSAGE_POINTS == 0x40);
static_assert(D3DUSAGE_RTPATCHES == 0x80);
static_assert(D3DUSAGE_NPATCHES == 0x100);
static_assert(D3DUSAGE_DYNAMIC == 0x200);
static_assert(D3DUSAGE_AUTOGENMIPMAP == 0x400);
static_assert(D3DUSAGE_DMAP == 0x4000);
static_assert(D3DUSAGE_QUERY_LEGACYBUMPMAP == 0x8000);
static_assert(D3DUSAGE_QUERY_SRGBREAD == 0x10000);
static_assert(D3DUSAGE_QUERY_FILTER == 0x20000);
static_assert(D3DUSAGE_QUERY_SRGBWRITE == 0x40000);
static_assert(D3DUSAGE_QUERY_POSTPIXELSHADER_BLENDING == 0x80000);
static_assert(D3DUSAGE_QUERY_VERTEXTEXTURE == 0x100000);
static_assert(D3DUSAGE_QUERY_WRAPANDMIP == 0x200000);

static_assert(D3DWRAP_U == 1);
static_assert(D3DWRAP_V == 2);
static_assert(D3DWRAP_W == 4);
static_assert(D3DWRAPCOORD_0 == 1);
static_assert(D3DWRAPCOORD_1 == 2);
static_assert(D3DWRAPCOORD_2 == 4);
static_assert(D3DWRAPCOORD_3 == 8);

static_assert(D3DTA_SELECTMASK == 0xF);
static_assert(D3DTA_DIFFUSE == 0);
static_assert(D3DTA_CURRENT == 1);
static_assert(D3DTA_TEXTURE == 2);
static_assert(D3DTA_TFACTOR == 3);
static_assert(D3DTA_SPECULAR == 4);
static_assert(D3DTA_TEMP == 5);
static_assert(D3DTA_CONSTANT == 6);
static_assert(D3DTA_COMPLEMENT == 0x10);
static_assert(D3DTA_ALPHAREPLICATE == 0x20);

static_assert(D3DCOLORWRITEENABLE_RED == 1);
static_assert(D3DCOLORWRITEENABLE_GREEN == 2);
static_assert(D3DCOLORWRITEENABLE_BLUE == 4);
static_assert(D3DCOLORWRITEENABLE_ALPHA == 8);

static_assert(D3DPV_DONOTCOPYDATA == 1);
static_assert(D3DSTREAMSOURCE_INDEXEDDATA == 0x40000000);
static_assert(static_cast<DWORD>(D3DSTREAMSOURCE_INSTANCEDATA) == 0x80000000);

static_assert(D3DPRESENTFLAG_LOCKABLE_BACKBUFFER == 1);
static_assert(D3DPRESENTFLAG_DISCARD_DEPTHSTENCIL == 2);
static_assert(D3DPRESENTFLAG_DEVICECLIP == 4);
static_assert(D3DPRESENTFLAG_VIDEO == 0x10);
static_assert(D3DPRESENT_RATE_DEFAULT == 0);

static_assert(MAX_DEVICE_IDENTIFIER_STRING == 512);
static_assert(D3DMAXUSERCLIPPLANES == 32);
static_assert(D3D_MAX_SIMULTANEOUS_RENDERTARGETS == 4);
static_assert(D3DDP_MAXTEXCOORD == 8);
static_assert(D3DDMAPSAMPLER == 256);
static_assert(D3DVERTEXTEXTURESAMPLER0 == 257);
static_assert(D3DVERTEXTEXTURESAMPLER3 == 260);
static_assert(MAXD3DDECLLENGTH == 64);
static_assert(D3DMAXDECLLENGTH == 18);

static_assert(D3DTS_WORLD1 == 257);
static_assert(D3DTS_WORLD2 == 258);
static_assert(D3DTS_WORLD3 == 259);

static_assert(D3DRTYPECOUNT == 8);

// --- macros with arguments

static_assert(D3DCOLOR_ARGB(0x11, 0x22, 0x33, 0x44) == 0x11223344);
static_assert(D3DCOLOR_RGBA(0x11, 0x22, 0x33, 0x44) == 0x44112233);
static_assert(D3DCOLOR_XRGB(0x11, 0x22, 0x33) == 0xFF112233);
static_assert(D3DCOLOR_COLORVALUE(1.0f, 0.0f, 1.0f, 0.0f) == 0x00FF00FF);
static_assert(D3DCOLOR_ARGB(0x1FF, 0, 0, 0) == 0xFF000000); // each channel keeps its low byte
static_assert(MAKEFOURCC('D', 'X', 'T', '1') == 0x31545844);
static_assert(D3DTS_WORLD == 256 && D3DTS_WORLDMATRIX(5) == 261);
static_assert(D3DFVF_TEXCOORDSIZE1(3) == 3u << 22);
static_assert(D3DFVF_TEXCOORDSIZE2(3) == 0);
static_assert(D3DFVF_TEXCOORDSIZE3(3) == 1u << 22);
static_assert(D3DFVF_TEXCOORDSIZE4(3) == 2u << 22);
static_assert(D3DPS_VERSION(2, 1) == 0xFFFF0201 && D3DVS_VERSION(3, 0) == 0xFFFE0300);
static_assert(D3DSHADER_VERSION_MAJOR(0xFFFF0201) == 2 && D3DSHADER_VERSION_MINOR(0xFFFF0201) == 1);

// --- records

static_assert(sizeof(D3DCOLORVALUE) == 16);
static_assert(offsetof(D3DCOLORVALUE, r) == 0);
static_assert(offsetof(D3DCOLORVALUE, g) == 4);
static_assert(offsetof(D3DCOLORVALUE, b) == 8);
static_assert(offsetof(D3DCOLORVALUE, a) == 12);

static_assert(sizeof(D3DVECTOR) == 12);
static_assert(offsetof(D3DVECTOR, x) == 0);
static_assert(offsetof(D3DVECTOR, y) == 4);
static_assert(offsetof(D3DVECTOR, z) == 8);

static_assert(sizeof(D3DRECT) == 16);
static_assert(offsetof(D3DRECT, x1) == 0);
static_assert(offsetof(D3DRECT, y1) == 4);
static_assert(offsetof(D3DRECT, x2) == 8);
static_assert(offsetof(D3DRECT, y2) == 12);

static_assert(sizeof(D3DBOX) == 24);
static_assert(offsetof(D3DBOX, Left) == 0);
static_assert(offsetof(D3DBOX, Top) == 4);
static_assert(offsetof(D3DBOX, Right) == 8);
static_assert(offsetof(D3DBOX, Bottom) == 12);
static_assert(offsetof(D3DBOX, Front) == 16);
static_assert(offsetof(D3DBOX, Back) == 20);

static_assert(sizeof(D3DRANGE) == 8);
static_assert(offsetof(D3DRANGE, Offset) == 0);
static_assert(offsetof(D3DRANGE, Size) == 4);

static_assert(sizeof(D3DMATRIX) == 64);
static_assert(offsetof(D3DMATRIX, _11) == 0);
static_assert(offsetof(D3DMATRIX, _12) == 4);
static_assert(offsetof(D3DMATRIX, _13) == 8);
static_assert(offsetof(D3DMATRIX, _14) == 12);
static_assert(offsetof(D3DMATRIX, _21) == 16);
static_assert(offsetof(D3DMATRIX, _22) == 20);
static_assert(offsetof(D3DMATRIX, _23) == 24);
static_assert(offsetof(D3DMATRIX, _24) == 28);
static_assert(offsetof(D3DMATRIX, _31) == 32);
static_assert(offsetof(D3DMATRIX, _32) == 36);
static_assert(offsetof(D3DMATRIX, _33) == 40);
static_assert(offsetof(D3DMATRIX, _34) == 44);
static_assert(offsetof(D3DMATRIX, _41) == 48);
static_assert(offsetof(D3DMATRIX, _42) == 52);
static_assert(offsetof(D3DMATRIX, _43) == 56);
static_assert(offsetof(D3DMATRIX, _44) == 60);
static_assert(offsetof(D3DMATRIX, m) == 0);

static_assert(sizeof(D3DADAPTER_IDENTIFIER9) == 1104);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, Driver) == 0);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, Description) == 512);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, DeviceName) == 1024);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, DriverVersion) == 1056);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, VendorId) == 1064);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, DeviceId) == 1068);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, SubSysId) == 1072);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, Revision) == 1076);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, DeviceIdentifier) == 1080);
static_assert(offsetof(D3DADAPTER_IDENTIFIER9, WHQLLevel) == 1096);

static_assert(sizeof(D3DCLIPSTATUS9) == 8);
static_assert(offsetof(D3DCLIPSTATUS9, ClipUnion) == 0);
static_assert(offsetof(D3DCLIPSTATUS9, ClipIntersection) == 4);

static_assert(sizeof(D3DDEVICE_CREATION_PARAMETERS) == 24);
static_assert(offsetof(D3DDEVICE_CREATION_PARAMETERS, AdapterOrdinal) == 0);
static_assert(offsetof(D3DDEVICE_CREATION_PARAMETERS, DeviceType) == 4);
static_assert(offsetof(D3DDEVICE_CREATION_PARAMETERS, hFocusWindow) == 8);
static_assert(offsetof(D3DDEVICE_CREATION_PARAMETERS, BehaviorFlags) == 16);

static_assert(sizeof(D3DDISPLAYMODE) == 16);
static_assert(offsetof(D3DDISPLAYMODE, Width) == 0);
static_assert(offsetof(D3DDISPLAYMODE, Height) == 4);
static_assert(offsetof(D3DDISPLAYMODE, RefreshRate) == 8);
static_assert(offsetof(D3DDISPLAYMODE, Format) == 12);

static_assert(sizeof(D3DGAMMARAMP) == 1536);
static_assert(offsetof(D3DGAMMARAMP, red) == 0);
static_assert(offsetof(D3DGAMMARAMP, green) == 512);
static_assert(offsetof(D3DGAMMARAMP, blue) == 1024);

static_assert(sizeof(D3DLIGHT9) == 104);
static_assert(offsetof(D3DLIGHT9, Type) == 0);
static_assert(offsetof(D3DLIGHT9, Diffuse) == 4);
static_assert(offsetof(D3DLIGHT9, Specular) == 20);
static_assert(offsetof(D3DLIGHT9, Ambient) == 36);
static_assert(offsetof(D3DLIGHT9, Position) == 52);
static_assert(offsetof(D3DLIGHT9, Direction) == 64);
static_assert(offsetof(D3DLIGHT9, Range) == 76);
static_assert(offsetof(D3DLIGHT9, Falloff) == 80);
static_assert(offsetof(D3DLIGHT9, Attenuation0) == 84);
static_assert(offsetof(D3DLIGHT9, Attenuation1) == 88);
static_assert(offsetof(D3DLIGHT9, Attenuation2) == 92);
static_assert(offsetof(D3DLIGHT9, Theta) == 96);
static_assert(offsetof(D3DLIGHT9, Phi) == 100);

static_assert(sizeof(D3DLOCKED_BOX) == 16);
static_assert(offsetof(D3DLOCKED_BOX, RowPitch) == 0);
static_assert(offsetof(D3DLOCKED_BOX, SlicePitch) == 4);
static_assert(offsetof(D3DLOCKED_BOX, pBits) == 8);

static_assert(sizeof(D3DLOCKED_RECT) == 16);
static_assert(offsetof(D3DLOCKED_RECT, Pitch) == 0);
static_assert(offsetof(D3DLOCKED_RECT, pBits) == 8);

static_assert(sizeof(D3DMATERIAL9) == 68);
static_assert(offsetof(D3DMATERIAL9, Diffuse) == 0);
static_assert(offsetof(D3DMATERIAL9, Ambient) == 16);
static_assert(offsetof(D3DMATERIAL9, Specular) == 32);
static_assert(offsetof(D3DMATERIAL9, Emissive) == 48);
static_assert(offsetof(D3DMATERIAL9, Power) == 64);

static_assert(sizeof(D3DPRESENT_PARAMETERS) == 64);
static_assert(offsetof(D3DPRESENT_PARAMETERS, BackBufferWidth) == 0);
static_assert(offsetof(D3DPRESENT_PARAMETERS, BackBufferHeight) == 4);
static_assert(offsetof(D3DPRESENT_PARAMETERS, BackBufferFormat) == 8);
static_assert(offsetof(D3DPRESENT_PARAMETERS, BackBufferCount) == 12);
static_assert(offsetof(D3DPRESENT_PARAMETERS, MultiSampleType) == 16);
static_assert(offsetof(D3DPRESENT_PARAMETERS, MultiSampleQuality) == 20);
static_assert(offsetof(D3DPRESENT_PARAMETERS, SwapEffect) == 24);
static_assert(offsetof(D3DPRESENT_PARAMETERS, hDeviceWindow) == 32);
static_assert(offsetof(D3DPRESENT_PARAMETERS, Windowed) == 40);
static_assert(offsetof(D3DPRESENT_PARAMETERS, EnableAutoDepthStencil) == 44);
static_assert(offsetof(D3DPRESENT_PARAMETERS, AutoDepthStencilFormat) == 48);
static_assert(offsetof(D3DPRESENT_PARAMETERS, Flags) == 52);
static_assert(offsetof(D3DPRESENT_PARAMETERS, FullScreen_RefreshRateInHz) == 56);
static_assert(offsetof(D3DPRESENT_PARAMETERS, PresentationInterval) == 60);

static_assert(sizeof(D3DRASTER_STATUS) == 8);
static_assert(offsetof(D3DRASTER_STATUS, InVBlank) == 0);
static_assert(offsetof(D3DRASTER_STATUS, ScanLine) == 4);

static_assert(sizeof(D3DRECTPATCH_INFO) == 28);
static_assert(offsetof(D3DRECTPATCH_INFO, StartVertexOffsetWidth) == 0);
static_assert(offsetof(D3DRECTPATCH_INFO, StartVertexOffsetHeight) == 4);
static_assert(offsetof(D3DRECTPATCH_INFO, Width) == 8);
static_assert(offsetof(D3DRECTPATCH_INFO, Height) == 12);
static_assert(offsetof(D3DRECTPATCH_INFO, Stride) == 16);
static_assert(offsetof(D3DRECTPATCH_INFO, Basis) == 20);
static_assert(offsetof(D3DRECTPATCH_INFO, Degree) == 24);

static_assert(sizeof(D3DTRIPATCH_INFO) == 16);
static_assert(offsetof(D3DTRIPATCH_INFO, StartVertexOffset) == 0);
static_assert(offsetof(D3DTRIPATCH_INFO, NumVertices) == 4);
static_assert(offsetof(D3DTRIPATCH_INFO, Basis) == 8);
static_assert(offsetof(D3DTRIPATCH_INFO, Degree) == 12);

static_assert(sizeof(D3DSURFACE_DESC) == 32);
static_assert(offsetof(D3DSURFACE_DESC, Format) == 0);
static_assert(offsetof(D3DSURFACE_DESC, Type) == 4);
static_assert(offsetof(D3DSURFACE_DESC, Usage) == 8);
static_assert(offsetof(D3DSURFACE_DESC, Pool) == 12);
static_assert(offsetof(D3DSURFACE_DESC, MultiSampleType) == 16);
static_assert(offsetof(D3DSURFACE_DESC, MultiSampleQuality) == 20);
static_assert(offsetof(D3DSURFACE_DESC, Width) == 24);
static_assert(offsetof(D3DSURFACE_DESC, Height) == 28);

static_assert(sizeof(D3DVOLUME_DESC) == 28);
static_assert(offsetof(D3DVOLUME_DESC, Format) == 0);
static_assert(offsetof(D3DVOLUME_DESC, Type) == 4);
static_assert(offsetof(D3DVOLUME_DESC, Usage) == 8);
static_assert(offsetof(D3DVOLUME_DESC, Pool) == 12);
static_assert(offsetof(D3DVOLUME_DESC, Width) == 16);
static_assert(offsetof(D3DVOLUME_DESC, Height) == 20);
static_assert(offsetof(D3DVOLUME_DESC, Depth) == 24);

static_assert(sizeof(D3DVERTEXBUFFER_DESC) == 24);
static_assert(offsetof(D3DVERTEXBUFFER_DESC, Format) == 0);
static_assert(offsetof(D3DVERTEXBUFFER_DESC, Type) == 4);
static_assert(offsetof(D3DVERTEXBUFFER_DESC, Usage) == 8);
static_assert(offsetof(D3DVERTEXBUFFER_DESC, Pool) == 12);
static_assert(offsetof(D3DVERTEXBUFFER_DESC, Size) == 16);
static_assert(offsetof(D3DVERTEXBUFFER_DESC, FVF) == 20);

static_assert(sizeof(D3DINDEXBUFFER_DESC) == 20);
static_assert(offsetof(D3DINDEXBUFFER_DESC, Format) == 0);
static_assert(offsetof(D3DINDEXBUFFER_DESC, Type) == 4);
static_assert(offsetof(D3DINDEXBUFFER_DESC, Usage) == 8);
static_assert(offsetof(D3DINDEXBUFFER_DESC, Pool) == 12);
static_assert(offsetof(D3DINDEXBUFFER_DESC, Size) == 16);

static_assert(sizeof(D3DVIEWPORT9) == 24);
static_assert(offsetof(D3DVIEWPORT9, X) == 0);
static_assert(offsetof(D3DVIEWPORT9, Y) == 4);
static_assert(offsetof(D3DVIEWPORT9, Width) == 8);
static_assert(offsetof(D3DVIEWPORT9, Height) == 12);
static_assert(offsetof(D3DVIEWPORT9, MinZ) == 16);
static_assert(offsetof(D3DVIEWPORT9, MaxZ) == 20);

static_assert(sizeof(D3DVERTEXELEMENT9) == 8);
static_assert(offsetof(D3DVERTEXELEMENT9, Stream) == 0);
static_assert(offsetof(D3DVERTEXELEMENT9, Offset) == 2);
static_assert(offsetof(D3DVERTEXELEMENT9, Type) == 4);
static_assert(offsetof(D3DVERTEXELEMENT9, Method) == 5);
static_assert(offsetof(D3DVERTEXELEMENT9, Usage) == 6);
static_assert(offsetof(D3DVERTEXELEMENT9, UsageIndex) == 7);

static_assert(sizeof(D3DVSHADERCAPS2_0) == 16);
static_assert(offsetof(D3DVSHADERCAPS2_0, Caps) == 0);
static_assert(offsetof(D3DVSHADERCAPS2_0, DynamicFlowControlDepth) == 4);
static_assert(offsetof(D3DVSHADERCAPS2_0, NumTemps) == 8);
static_assert(offsetof(D3DVSHADERCAPS2_0, StaticFlowControlDepth) == 12);

static_assert(sizeof(D3DPSHADERCAPS2_0) == 20);
static_assert(offsetof(D3DPSHADERCAPS2_0, Caps) == 0);
static_assert(offsetof(D3DPSHADERCAPS2_0, DynamicFlowControlDepth) == 4);
static_assert(offsetof(D3DPSHADERCAPS2_0, NumTemps) == 8);
static_assert(offsetof(D3DPSHADERCAPS2_0, StaticFlowControlDepth) == 12);
static_assert(offsetof(D3DPSHADERCAPS2_0, NumInstructionSlots) == 16);

static_assert(sizeof(D3DCAPS9) == 304);
static_assert(offsetof(D3DCAPS9, DeviceType) == 0);
static_assert(offsetof(D3DCAPS9, AdapterOrdinal) == 4);
static_assert(offsetof(D3DCAPS9, Caps) == 8);
static_assert(offsetof(D3DCAPS9, Caps2) == 12);
static_assert(offsetof(D3DCAPS9, Caps3) == 16);
static_assert(offsetof(D3DCAPS9, PresentationIntervals) == 20);
static_assert(offsetof(D3DCAPS9, CursorCaps) == 24);
static_assert(offsetof(D3DCAPS9, DevCaps) == 28);
static_assert(offsetof(D3DCAPS9, PrimitiveMiscCaps) == 32);
static_assert(offsetof(D3DCAPS9, RasterCaps) == 36);
static_assert(offsetof(D3DCAPS9, ZCmpCaps) == 40);
static_assert(offsetof(D3DCAPS9, SrcBlendCaps) == 44);
static_assert(offsetof(D3DCAPS9, DestBlendCaps) == 48);
static_assert(offsetof(D3DCAPS9, AlphaCmpCaps) == 52);
static_assert(offsetof(D3DCAPS9, ShadeCaps) == 56);
static_assert(offsetof(D3DCAPS9, TextureCaps) == 60);
static_assert(offsetof(D3DCAPS9, TextureFilterCaps) == 64);
static_assert(offsetof(D3DCAPS9, CubeTextureFilterCaps) == 68);
static_assert(offsetof(D3DCAPS9, VolumeTextureFilterCaps) == 72);
static_assert(offsetof(D3DCAPS9, TextureAddressCaps) == 76);
static_assert(offsetof(D3DCAPS9, VolumeTextureAddressCaps) == 80);
static_assert(offsetof(D3DCAPS9, LineCaps) == 84);
static_assert(offsetof(D3DCAPS9, MaxTextureWidth) == 88);
static_assert(offsetof(D3DCAPS9, MaxTextureHeight) == 92);
static_assert(offsetof(D3DCAPS9, MaxVolumeExtent) == 96);
static_assert(offsetof(D3DCAPS9, MaxTextureRepeat) == 100);
static_assert(offsetof(D3DCAPS9, MaxTextureAspectRatio) == 104);
static_assert(offsetof(D3DCAPS9, MaxAnisotropy) == 108);
static_assert(offsetof(D3DCAPS9, MaxVertexW) == 112);
static_assert(offsetof(D3DCAPS9, GuardBandLeft) == 116);
static_assert(offsetof(D3DCAPS9, GuardBandTop) == 120);
static_assert(offsetof(D3DCAPS9, GuardBandRight) == 124);
static_assert(offsetof(D3DCAPS9, GuardBandBottom) == 128);
static_assert(offsetof(D3DCAPS9, ExtentsAdjust) == 132);
static_assert(offsetof(D3DCAPS9, StencilCaps) == 136);
static_assert(offsetof(D3DCAPS9, FVFCaps) == 140);
static_assert(offsetof(D3DCAPS9, TextureOpCaps) == 144);
static_assert(offsetof(D3DCAPS9, MaxTextureBlendStages) == 148);
static_assert(offsetof(D3DCAPS9, MaxSimultaneousTextures) == 152);
static_assert(offsetof(D3DCAPS9, VertexProcessingCaps) == 156);
static_assert(offsetof(D3DCAPS9, MaxActiveLights) == 160);
static_assert(offsetof(D3DCAPS9, MaxUserClipPlanes) == 164);
static_assert(offsetof(D3DCAPS9, MaxVertexBlendMatrices) == 168);
static_assert(offsetof(D3DCAPS9, MaxVertexBlendMatrixIndex) == 172);
static_assert(offsetof(D3DCAPS9, MaxPointSize) == 176);
static_assert(offsetof(D3DCAPS9, MaxPrimitiveCount) == 180);
static_assert(offsetof(D3DCAPS9, MaxVertexIndex) == 184);
static_assert(offsetof(D3DCAPS9, MaxStreams) == 188);
static_assert(offsetof(D3DCAPS9, MaxStreamStride) == 192);
static_assert(offsetof(D3DCAPS9, VertexShaderVersion) == 196);
static_assert(offsetof(D3DCAPS9, MaxVertexShaderConst) == 200);
static_assert(offsetof(D3DCAPS9, PixelShaderVersion) == 204);
static_assert(offsetof(D3DCAPS9, PixelShader1xMaxValue) == 208);
static_assert(offsetof(D3DCAPS9, DevCaps2) == 212);
static_assert(offsetof(D3DCAPS9, MaxNpatchTessellationLevel) == 216);
static_assert(offsetof(D3DCAPS9, Reserved5) == 220);
static_assert(offsetof(D3DCAPS9, MasterAdapterOrdinal) == 224);
static_assert(offsetof(D3DCAPS9, AdapterOrdinalInGroup) == 228);
static_assert(offsetof(D3DCAPS9, NumberOfAdaptersInGroup) == 232);
static_assert(offsetof(D3DCAPS9, DeclTypes) == 236);
static_assert(offsetof(D3DCAPS9, NumSimultaneousRTs) == 240);
static_assert(offsetof(D3DCAPS9, StretchRectFilterCaps) == 244);
static_assert(offsetof(D3DCAPS9, VS20Caps) == 248);
static_assert(offsetof(D3DCAPS9, PS20Caps) == 264);
static_assert(offsetof(D3DCAPS9, VertexTextureFilterCaps) == 284);
static_assert(offsetof(D3DCAPS9, MaxVShaderInstructionsExecuted) == 288);
static_assert(offsetof(D3DCAPS9, MaxPShaderInstructionsExecuted) == 292);
static_assert(offsetof(D3DCAPS9, MaxVertexShader30InstructionSlots) == 296);
static_assert(offsetof(D3DCAPS9, MaxPixelShader30InstructionSlots) == 300);
