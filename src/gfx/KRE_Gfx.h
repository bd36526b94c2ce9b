#pragma once

#include <memory>

#include <d3d9.h>
#include <d3dx9.h>

#include "base/HeapArray.h"
#include "base/KRE_Base.h"
#include "base/String.h"
#include "gfx/EffectTarget.h"
#include "gfx/KRE_BlendMode.h"
#include "gfx/KRE_FogRecord.h"
#include "gfx/KRE_GfxRuntime.h"
#include "gfx/KRE_PointRecord.h"
#include "gfx/KRE_PrintfContainer.h"
#include "gfx/KRE_ResourceManager.h"
#include "gfx/KRE_StateCache.h"
#include "gfx/KRE_Surface.h"
#include "gfx/KRE_Texture.h"
#include "gfx/KRE_TextureCatalogue.h"
#include "gfx/KRE_TextureModes.h"
#include "gfx/KRE_VertexListTemp.h"
#include "gfx/KRE_VideoSource.h"
#include "gfx/RandomGenerator.h"
#include "platform/ComPointer.h"

class KRE_3dScene;
class KRE_Camera;
class KRE_EffectFeeding;
class KRE_Font;
class KRE_MaterialBinding;
class KRE_MaterialInfo;
class KRE_Mesh;
class KRE_SceneDrawing;
class KRE_SearchPaths;
class KRE_ShaderEffect;
class KRE_StageProgram;
class KRE_TextureLoading;
class KRE_VertexList;
struct KRE_ClipObject;
class QSALoader;
class QSB_InputFile;
struct QSA_SceneHeader;

/// The graphics engine: one object, reached through `gGfx`. Each group of operations has its own
/// source file, named in the group's heading. Every operation that calls the device stores the
/// result in `lastResult`; unless stated otherwise, a failure is an `Error` with call and result.
class KRE_Gfx : public KRE_Base {
public:
    /// Raises an `Error` if Direct3D 9 or its helper library is not installed.
    explicit KRE_Gfx(const KRE_GfxRuntime& systemRuntime = KRE_GfxRuntime::System());
    ~KRE_Gfx() override;
    KRE_Gfx(const KRE_Gfx&) = delete;
    KRE_Gfx& operator=(const KRE_Gfx&) = delete;

    /// Stores the result of a device call in `lastResult`; a failure is an `Error` with the
    /// result's name in place of the one %s of `text`.
    void Check(HRESULT result, const char* text);

    const KRE_GfxRuntime runtime; ///< the system calls that the engine makes

    // ---- Shared objects. Declared first so that they outlive everything holding their ids.

    KRE_ResourceManager textureManager; ///< IDirect3DTexture9
    KRE_ResourceManager surfaceManager; ///< IDirect3DSurface9
    KRE_ResourceManager meshManager;    ///< ID3DXMesh
    KRE_ResourceManager effectManager;  ///< ShaderEffectData
    KRE_ResourceManager spareManager;   ///< unused

    // ---- Device: KRE_GfxDevice.cpp, KRE_GfxDeviceDefaults.cpp, KRE_GfxPresentParameters.cpp

    int32_t GetAdapterCount();
    /// Selects the adapter for `FindDisplayMode` and `InitDevice`. An unknown one is an `Error`.
    void SelectAdapter(int32_t index);
    /// Whether the adapter has a mode of this size and format (A8R8G8B8 counts as X8R8G8B8). A
    /// refresh rate of 0 becomes the highest one of that size; any other must match exactly.
    bool FindDisplayMode(D3DDISPLAYMODE& mode);
    /// Creates the device in place of an earlier one, sets the defaults and builds the engine's own
    /// lists. Returns 1. `mode` is used in full screen only and must not be null there. `depthBits`
    /// is 0 (no depth buffer), 16, 24 or 32; `vsyncMode` is the vsync interval, 0 (immediate) to 4,
    /// full screen only. `vertexProcessing` 0 is software, 1 mixed, 2 hardware, as far as the
    /// hardware supports it. `deviceChoice` 1 is the reference device, 2 the adapter of a
    /// performance tool, if present.
    int32_t InitDevice(HWND windowHandle, int32_t isWindowed, const D3DDISPLAYMODE* mode,
                       int32_t depthBits, int32_t vsyncMode, int32_t vertexProcessing,
                       int32_t deviceChoice);
    /// Fills `presentParams` from the members and reads the client rectangle.
    void BuildPresentParameters();
    /// Acquires the device's render target, depth surface and back buffer.
    void AcquireTargetSurfaces();
    /// Sets the states common to all fixed-function drawing.
    void FixedFunctionDefaults();
    /// Releases all device objects, the device and the interface. May be called twice.
    void FreeDevice();

    ComPointer<IDirect3D9> d3d;
    ComPointer<IDirect3DDevice9> device;
    D3DPRESENT_PARAMETERS presentParams{};
    D3DCAPS9 caps{}; ///< valid once there is a device
    D3DDISPLAYMODE displayMode{};
    D3DDEVTYPE deviceType = D3DDEVTYPE_HAL;
    UINT adapter = 0;
    HWND window = nullptr;
    D3DFORMAT backBufferFormat = D3DFMT_UNKNOWN; ///< with alpha where the display has room for it
    D3DFORMAT displayFormat = D3DFMT_UNKNOWN;    ///< without alpha; used for format checks
    int32_t windowed = 1;
    int32_t deviceReady = 0;
    int32_t zBits = 0;
    int32_t vsync = 0;
    int32_t hardwareVertexProcessing = 0; ///< the device was made with it
    RECT clientRect{};                    ///< of the window when last read, in pixels
    ComPointer<IDirect3DSurface9> renderTarget;
    ComPointer<IDirect3DSurface9> depthSurface; ///< null without a depth buffer
    KRE_Surface backBuffer;
    ComPointer<ID3DXEffectPool> effectPool;

    // ---- Frame: KRE_GfxFrame.cpp

    /// Presents the frame and returns 1. Returns 0 if the frame was dropped for a reset, because
    /// the window changed its size or the device is lost.
    int32_t ShowFrame();
    /// Frames per second over the last second. Not a number with fewer than two samples.
    float GetFramesPerSecond() const;

    struct FrameSample {
        double time = 0.0; ///< seconds
        int32_t frames = 0;
    };
    static constexpr int32_t kFrameSamples = 60;
    double startTime = 0.0;     ///< seconds
    double lastFrameTime = 0.0; ///< seconds
    int32_t frameCount = 0;
    FrameSample fpsRing[kFrameSamples];
    int32_t fpsRingIndex = 0; ///< the oldest sample, written next

    // ---- Reset: KRE_GfxReset.cpp

    /// Waits until a lost device can be reset, and resets it: to `mode`, or with null to the
    /// current display mode; in a window, to the client area's size. Managed objects and vertex
    /// lists survive, objects of the default pool are released.
    void ResetDevice(const D3DDISPLAYMODE* mode);
    /// Resends the states that the engine tracks to a device that has lost them.
    /// QUIRK: z enable is not among them; it keeps the device's value after a reset.
    void RestoreRenderStates();

    // ---- Render states: KRE_GfxRenderState.cpp

    /// Marks all cached values as unknown, so that the next call for each reaches the device.
    void ResetStateCache();
    /// Always sends to the device. Floats are passed as their bits.
    void SetRenderState(D3DRENDERSTATETYPE state, DWORD value);
    /// As above, for a float.
    void SetRenderState(D3DRENDERSTATETYPE state, float value);
    void SetClipping(int32_t on);
    /// With `on` 255, an alpha equal to `reference` passes; with other values but 0, a greater one.
    void SetAlphaTest(int32_t on, int32_t reference);
    void SetPatchEdgeStyle(int32_t style);
    void SetAlphaBlendEnable(int32_t on);
    void SetNormalizeNormals(int32_t on);
    void SetTextureFactor(D3DCOLOR color);
    /// Replaces the alpha of the texture factor, 0 to 255.
    void SetTextureFactorAlpha(int32_t alpha);
    /// `mode` is a D3DFILLMODE. `record` is stored for point drawing; null keeps the last one.
    void SetFillMode(int32_t mode, const KRE_PointRecord* record);
    /// Culls counter-clockwise faces with -1, none with 0, clockwise ones with 1.
    void SetCullMode(int32_t mode);
    /// Null means the linear ramp. Returns 0 if the device has no ramp, else 1.
    int32_t SetGammaRamp(const D3DGAMMARAMP* ramp, int32_t calibrate);
    static D3DGAMMARAMP LinearGammaRamp();

    KRE_StateCache cache;
    int32_t clipping = 1;
    int32_t alphaTest = 0;
    int32_t alphaReference = 0;
    int32_t patchEdgeStyle = D3DPATCHEDGE_DISCRETE;
    D3DCOLOR textureFactor = 0xFFFFFFFF;
    int32_t fillMode = D3DFILL_SOLID;
    int32_t cullMode = -1;
    D3DGAMMARAMP gammaRamp;
    int32_t gammaCalibrate = 0;

    // ---- Depth, clearing and the scene bracket: KRE_GfxDepth.cpp

    /// `mode` is a D3DZBUFFERTYPE. W buffering becomes Z buffering if the hardware lacks it.
    void SetZEnable(int32_t mode);
    void SetZWrite(int32_t on);
    /// Calls of these two are counted: only the outermost pair switches.
    void DisableZ();
    void EnableZ();
    /// Clears the target, and a depth buffer to 1.0. A null `rect` means the whole target.
    void Clear(D3DCOLOR color, const D3DRECT* rect = nullptr);
    /// Clears only the depth buffer. An `Error` if there is none.
    void ClearZ(D3DCOLOR color, const D3DRECT* rect = nullptr);
    void BeginScene();
    void EndScene();
    void SetRenderTarget(IDirect3DSurface9* surface, DWORD index);

    int32_t zEnable = D3DZB_TRUE;
    int32_t zDisableCount = 0;
    int32_t zWrite = 1;
    int32_t inScene = 0;

    // ---- Fog and points: KRE_GfxFog.cpp, KRE_GfxPoints.cpp

    /// QUIRK: without the table flag the mode sets table fog, with it range-based vertex fog.
    void SetFog(const KRE_FogRecord& record);
    void SetFogEnable(int32_t on);
    /// Sends those values of a record that changed. A maximum size above what can be drawn is
    /// lowered in the record, with a warning. A nonzero `sprites` means that the hardware draws,
    /// whose limit may be lower.
    void SetPointParameters(KRE_PointRecord& record, int32_t sprites);

    KRE_FogRecord fog;
    int32_t fogEnable = 0;
    KRE_PointRecord pointRecord; ///< for point drawing

    // ---- Light and material: KRE_GfxLight.cpp

    /// With lighting off, surfaces show `color`, whose alpha is taken as 255; null is white.
    void SetLighting(int32_t on, const D3DCOLOR* color);
    void SetSpecular(int32_t on);
    void SetAmbient(D3DCOLOR color);
    /// Both take an index from 0 to 8; any other is an `Error`. `SetLight` takes the record, not
    /// the light object, because scene drawing skips lights that are off and has the record at
    /// hand.
    void SetLight(int32_t index, const D3DLIGHT9& light);
    void LightEnable(int32_t index, int32_t on);
    /// Stores the material. While an effect draws, it is not sent to the device.
    void SetMaterial(const D3DMATERIAL9& newMaterial);

    int32_t lighting = 0;
    D3DCOLOR unlitColor = 0xFFFFFFFF; ///< shown while lighting is off
    int32_t specular = 0;
    D3DCOLOR ambientColor = 0xFFFFFFFF;
    D3DLIGHT9 lights[KRE_StateCache::kLights]{}; ///< as last sent
    D3DMATERIAL9 material;                       ///< as last set
    D3DMATERIAL9 defaultMaterial;                ///< for meshes without materials

    // ---- Texture stages and samplers: KRE_GfxTextureStage.cpp. Stages are 0 to 7.

    /// A stage that does not exist is an `Error`.
    void CheckStage(int32_t stage);
    /// From now on, until a call with null, stage states are collected in `program` instead of
    /// being sent. Not owned; textures, factors and samplers are still sent.
    void CollectStageStates(KRE_StageProgram* program) { collectedStates = program; }
    /// Sends a state if its value is new to the device, or collects it; called by those below.
    void SetTextureStageStateOnce(int32_t stage, D3DTEXTURESTAGESTATETYPE type, DWORD value);
    /// These two always send.
    void SetTextureStageState(DWORD stage, D3DTEXTURESTAGESTATETYPE type, DWORD value);
    void SetSamplerState(DWORD stage, D3DSAMPLERSTATETYPE type, DWORD value);
    void SetColorOp(int32_t stage, DWORD value);
    void SetColorArg1(int32_t stage, DWORD value);
    void SetColorArg2(int32_t stage, DWORD value);
    void SetColorArg0(int32_t stage, DWORD value);
    void SetAlphaOp(int32_t stage, DWORD value);
    void SetAlphaArg1(int32_t stage, DWORD value);
    void SetAlphaArg2(int32_t stage, DWORD value);
    void SetTexCoordIndex(int32_t stage, DWORD value);
    void SetTextureTransformFlags(int32_t stage, DWORD value);
    void SetConstant(int32_t stage, D3DCOLOR color);
    /// `mode` is a D3DTEXTUREADDRESS. A failure is a warning.
    void SetTextureAddressU(DWORD mode, int32_t stage);
    void SetTextureAddressV(DWORD mode, int32_t stage);
    void SetTextureAddress(DWORD mode, int32_t stage);
    /// Filter between mip levels, a D3DTEXTUREFILTERTYPE from 0 to 2; ignored without mip maps.
    void SetMipmapMode(int32_t mode, float bias, int32_t stage);
    /// Makes the setting that `mode`, a KRE_FilterSetting, names. Returns 1, else 0.
    int32_t SetTextureFilter(int32_t mode, int32_t stage);
    /// Sets what a stage shows. `source` is a KRE_RenderSource, `color` that of `kSourceConstant`.
    /// A post effect also draws its texture back through this operation.
    void SetRenderSource(int32_t source, int32_t stage, D3DCOLOR color);

    static constexpr int32_t kStages = KRE_StateCache::kStages;
    DWORD addressU[kStages];
    DWORD addressV[kStages];
    int32_t mipmapMode[kStages]{};
    float lodBias[kStages]{};
    int32_t stageSource[kStages]; ///< of KRE_RenderSource
    /// The texture bound to each stage; not owned. `UnknownTexture` differs from any texture.
    IDirect3DBaseTexture9* boundTexture[kStages];
    static IDirect3DBaseTexture9* UnknownTexture();

    // ---- Blending: KRE_GfxBlendMode.cpp

    /// `mode` is a KRE_BlendMode, whose states are in a table in the source file; any other number
    /// is an `Error`. `value` is an alpha from 0 to 255.
    void SetBlendMode(int32_t mode, int32_t value, int32_t stage);

    int32_t materialStages = 2; ///< stages that a material may take; never changed
    int32_t blendMode = kBlendNone;
    int32_t blendValue = 255; ///< alpha of the material, 0 to 255
    D3DCOLOR tintColor = 0;   ///< added to every textured surface; 0 is none

    // ---- Materials: described in KRE_MaterialBinding.h

    void SetTexture(KRE_Texture* texture, int32_t stage = -1);
    void SetStageDiffuseArg(int32_t stage);
    void SetStageDiffuseArg0(int32_t stage);
    void ApplyMaterialBlend(const KRE_MaterialInfo& info, bool hasImage, int32_t mode, float alpha);
    void SetMaterialReflect(const KRE_MaterialInfo& info, bool white);

    float reflectionAmount = 1.0f;     ///< of the current material; 0.995 and above count as full
    int32_t reflectionWithDiffuse = 0; ///< never set here
    D3DCOLORVALUE keptDiffuse{};       ///< of `SetMaterialReflect`
    int32_t diffuseStage = 0;          ///< the stage of the diffuse map after a binding
    /// The last one bound, null for none. Not owned: whoever frees a texture must bind another one.
    KRE_Texture* currentTexture = nullptr;

    // ---- Transforms and viewport: KRE_GfxTransform.cpp, KRE_GfxCamera.cpp

    void SetTransform(D3DTRANSFORMSTATETYPE type, const D3DMATRIX& matrix);
    /// Scales the matrix so that w is the depth, as W buffering and fog require, unless m34 is 0.
    void SetProjectionMatrix(const D3DMATRIX& matrix);
    void SetViewMatrix(const D3DMATRIX& matrix);
    /// An index outside the palette of 256 is ignored.
    void SetWorldMatrix(const D3DMATRIX& matrix, int32_t index = 0);
    void UpdateWorldViewProj();
    /// Distances above 0, `fieldOfView` vertical in radians. An `aspect` of -1 is the viewport's.
    void SetProjection(float nearZ, float farZ, float fieldOfView, float aspect);
    /// Sets the view of a camera, transformed by `extraTM`, which may be null. Near and far stay.
    void SetCamera(const KRE_Camera& camera, const D3DXMATRIX* extraTM);
    void SetLookAt(const D3DXVECTOR3& eye, const D3DXVECTOR3& at, const D3DXVECTOR3& up);
    /// Mirrors the picture left to right, face culling included; a second call undoes it.
    void MirrorScene();
    /// The eye's position in the world.
    void GetViewPosition(D3DXVECTOR3& positionOut);
    /// For texture coordinates passed as (u, v, 1); null switches the transform off.
    void SetTextureTransform(const D3DMATRIX* matrix, int32_t stage);
    /// Corners in pixels, the second one exclusive. In a window a failure is a warning.
    void SetViewport(DWORD x1, DWORD y1, DWORD x2, DWORD y2, float minZ, float maxZ);

    static constexpr int32_t kWorldMatrices = 256;
    D3DXMATRIX view;
    D3DXMATRIX projection;
    D3DXMATRIX world[kWorldMatrices];
    D3DXMATRIX worldViewProj;
    D3DXMATRIX environmentTM; ///< transforms reflection coordinates; initially identity
    D3DXMATRIX textureMatrix[kStages];
    D3DVIEWPORT9 viewport{};
    float nearZ = 1.0f;
    float farZ = 10000.0f;
    float aspectFactor = 1.0f; ///< pixel width divided by pixel height
    int32_t viewportChanged = 0;
    int32_t matricesChanged = 0;

    // ---- Vertices: KRE_GfxVertexInput.cpp, KRE_GfxVertexLists.cpp

    void SetFVF(DWORD fvf);
    /// QUIRK: the buffer always goes to stream 0, whatever `stream` says.
    void SetStreamSource(UINT stream, IDirect3DVertexBuffer9* buffer, UINT stride);
    void SetIndices(IDirect3DIndexBuffer9* buffer);
    /// Ignored unless the device was created with hardware vertex processing.
    void SetSoftwareVertexProcessing(int32_t on);
    void SetVertexBlend(DWORD value);
    /// Returns 0 and sets nothing if neither software nor hardware can blend by index, else 1.
    int32_t SetIndexedVertexBlend(int32_t on);
    /// What can process such vertices: 0 software, 1 hardware, 2 the skinning effect. `boneIndex`
    /// is the highest one used, below 0 for none. `forEffect` asks about the effect alone. Meshes
    /// and lists share this operation, so there is no second one for the blending of meshes.
    int32_t GetVertexProcessing(const VertexInfo& info, int32_t boneIndex, int32_t forEffect);
    /// Creates the buffer of a list whose format is set; the old buffer is released. `usage` holds
    /// D3DUSAGE_ flags, or is -1 for the default of the list's kind.
    void CreateVertexList(KRE_VertexListBase* list, int32_t count, int32_t usage,
                          int32_t systemMemory);

    static constexpr int32_t kSkinningCapsIndexed = 1;  ///< the effect blends by bone index
    static constexpr int32_t kSkinningCapsVertices = 2; ///< the effect processes plain vertices
    DWORD currentFvf = 0;
    UINT streamNumber = 0;
    int32_t hardwareSkinning = 1;
    int32_t hardwareSkinningLimit = 18; ///< bones of a palette; below 0: the device's limit
    int32_t skinningEffectLimit = 26;   ///< matrices that the skinning effect takes
    int32_t skinningEffectCaps = 0;     ///< kSkinningCaps flags
    int32_t quadBatchVertices = 32;
    KRE_VertexListTemp<KRE_TLVertex> tlList;
    KRE_VertexListTemp<KRE_LVertex> lList;
    KRE_VertexListTemp<KRE_LVertex> lQuadList;
    KRE_VertexListTemp<KRE_VertexPosTex> posTexList; ///< covers the screen in clip space
    KRE_VertexListTemp<KRE_PointVertex> pointList;
    KRE_VertexListTemp<KRE_PointVertex> lineList; ///< two end points

    // ---- Meshes: scene/KRE_GfxMeshes.cpp

    /// `CreateMesh`'s option for buffers in system memory. As a flag, 1 would be D3DXMESH_32BIT,
    /// which meshes with 16-bit indices never need.
    static constexpr DWORD kMeshSystemMemory = 1;

    /// Creates the device mesh of `mesh` with this layout, and its materials if it has none yet.
    /// `options` is 0 for managed buffers, `kMeshSystemMemory`, or D3DXMESH_ flags; a mesh that the
    /// hardware cannot blend gets software buffers regardless. `boneCount` is the highest bone
    /// index of a blended layout. A reflection map needs no argument of its own: its texture set is
    /// part of `fvf`. Too many vertices, and a material count that differs from the mesh's own, are
    /// `Error`s.
    void CreateMesh(KRE_Mesh* mesh, int32_t faces, int32_t vertices, int32_t materialCount,
                    DWORD fvf, DWORD options, int32_t boneCount);

    // ---- Drawing: KRE_GfxDrawing.cpp and KRE_GfxMeshDrawing.cpp

    /// Draws the first `count` primitives of a list; -1 means all of them, and 0 is allowed. More
    /// than there are is an `Error`. `listTM` transforms the vertices to world space; null if they
    /// are already there.
    void DrawTriangleList(KRE_VertexListBase& list, const D3DMATRIX* listTM = nullptr,
                          int32_t count = -1);
    /// As above, with the list's own matrix: render/KRE_VertexList.cpp
    void DrawTriangleList(KRE_VertexList& list, int32_t count = -1);
    /// Draws `faces` faces from `firstFace` on; 0 draws nothing. `info` is the format of the mesh.
    /// Faces that the mesh lacks are an `Error`.
    void DrawMesh(ID3DXMesh& mesh, const VertexInfo& info, DWORD firstFace, DWORD faces);
    /// Selects how the next vertices are processed: in software if `processing` is 0.
    void SetVertexProcessingFor(int32_t processing);

    uint8_t drawDisabled = 0; ///< 1: all states are set, but nothing is drawn

    // ---- Scenes: described in render/KRE_SceneDrawing.h

    int32_t DrawScene(KRE_3dScene* scene, int32_t singleStage, int32_t noMaterials);
    int32_t DrawMesh(KRE_Mesh* mesh, const D3DXMATRIX* parentTM,
                     const KRE_MaterialInfo* overrideMaterial, int32_t singleStage,
                     int32_t noMaterials);
    int32_t DrawSubset(KRE_Mesh& mesh, int32_t subset);
    bool IsVisible(const KRE_ClipObject& clip, const D3DXMATRIX& matrix);
    void DrawLine(const D3DXVECTOR3& a, const D3DXVECTOR3& b, D3DCOLOR color);
    void DrawPoint(const D3DXVECTOR3& p, D3DCOLOR color);

    int32_t frameNumber = 0;    ///< counted by `ShowFrame`
    int32_t subFrameNumber = 0; ///< counts visible scenes and pass targets
    int32_t drawnMeshes = 0;    ///< since the engine was created
    int32_t isDrawingScene = 0; ///< 1 inside `DrawScene`

    // ---- Sprites: KRE_GfxSprites.cpp. They draw `currentTexture`; without one it is an `Error`.

    /// Draws the texture in its source size, scaled. The point (`hotX`, `hotY`) of the picture is
    /// placed at (`x`, `y`); `angle` rotates about it, clockwise in radians. All but the angle in
    /// pixels; `z` is the depth from 0 to 1.
    void DrawSprite(float x, float y, float angle, float scaleX, float scaleY, float hotX = 0.0f,
                    float hotY = 0.0f, D3DCOLOR color = 0xFFFFFFFF, float z = 0.0f);
    /// Draws the texture into a rectangle of the screen. Colours are those of the corners at the
    /// bottom left, top left, bottom right and top right.
    void DrawSpriteRect(float left, float top, float right, float bottom,
                        const D3DCOLOR (&colors)[4], float z = 0.0f);
    /// Draws the texture's quad as last filled.
    void DrawLastTexture();

    int32_t spriteUsesZ = 0; ///< not 0: sprites are hidden by what is in front of them

    // ---- Text: KRE_GfxFont.cpp, KRE_GfxPrintf.cpp

    /// Builds the engine's own font, capitals of 5 x 5 pixels. Each letter fades from `first` at
    /// its top left to `second`. Lower-case letters are blank.
    void BuildFont(KRE_Font& font, D3DCOLOR first, D3DCOLOR second);
    /// Sets the font that texts start with; it must outlive its use. A `scale` other than 0 and a
    /// `color` with a nonzero alpha are stored in the font. Null, or a font that is not ready, is
    /// an `Error`.
    void SetFont(KRE_Font* font, float scale, D3DCOLOR color);
    /// Draws formatted text with its top left corner at (`x`, `y`), in screen pixels. Truncated at
    /// 65535 characters, with a warning. `|` begins a command (KRE_PrintfMarkup.h). The arguments
    /// must not point into `scratch`.
    [[gnu::format(printf, 4, 5)]] void Printf(int32_t x, int32_t y, const char* format, ...);

    KRE_Font* currentFont = nullptr; ///< not owned, lives with graphics start-up
    KRE_PrintfContainer printf;

    // ---- Effects: KRE_GfxEffects.cpp, scene/KRE_GfxSceneEffects.cpp; the parameters set
    //      before an effect draws: KRE_EffectFeeding.h

    /// Loads and compiles an effect file, or shares it if it is already loaded, and returns 1. A
    /// missing file is an `Error` or, without `fatalIfMissing`, a warning and 0. An effect that
    /// does not compile is an `Error`; one that does not run on this device is a warning. `flags`
    /// are D3DX flags.
    int32_t LoadEffect(KRE_ShaderEffect* effect, const char* file, bool usePool, DWORD flags,
                       bool fatalIfMissing);
    /// Loads the effects of all materials of a scene. A file that cannot be found is a warning. An
    /// effect that reads the screen switches the scene's clearing off.
    void LoadSceneEffects(KRE_3dScene& scene, const char* directory, const char* sceneName);
    /// Draws with a material's effect from now on, and passes it the material's values. Null and an
    /// unusable effect mean none.
    void SelectEffect(KRE_ShaderEffect* effect);
    /// The effect that draws vertices of this format now, or null for fixed-function drawing.
    KRE_ShaderEffect* GetActiveEffect(const VertexInfo& info);
    void PrepareEffect(KRE_ShaderEffect& effect, KRE_Mesh* mesh, int32_t materialIndex);
    void UpdateEffectFrame(KRE_ShaderEffect& effect);
    void UpdateEffectObject(KRE_ShaderEffect& effect, KRE_Mesh& mesh, int32_t materialIndex);
    void UpdateEffectLights(KRE_ShaderEffect& effect);
    /// Makes the target of a pass the render target; the old one is kept in `savedRenderTarget`.
    void SelectPassTarget(const EffectPassTarget& target);

    KRE_ShaderEffect* materialEffect = nullptr;      ///< not owned, lives in the material
    KRE_ShaderEffect* sceneEffect = nullptr;         ///< not owned
    KRE_ShaderEffect* skinningEffect = nullptr;      ///< not owned
    ComPointer<IDirect3DSurface9> savedRenderTarget; ///< replaced by a pass target; or null
    uint8_t loadsSceneEffects = 1;    ///< 0: scenes are loaded without the effects that they name
    uint8_t effectCacheOn = 0;        ///< 1: lights and screen copies are updated once a frame
    float (*getGameTime)() = nullptr; ///< seconds, for effects; null: the time since the start
    RandomGenerator random;

    // ---- Screen buffers: KRE_GfxScreenBuffers.cpp

    static constexpr int32_t kQuarterBuffer = 1; ///< kinds of `GetScreenBufferTexture`
    static constexpr int32_t kFullBuffer = 2;
    /// A render target of the back buffer's size, or of a quarter of its width and height; created
    /// on first use and owned here, until the next reset. `index` is 0 or 1, for quarter buffers 0
    /// to 2. Null for any other kind or index.
    IDirect3DTexture9* GetScreenBufferTexture(int32_t kind, int32_t index);
    /// A copy of the render target as it is now; owned here, until the next reset.
    IDirect3DTexture9* GetScreenCopyTexture();
    /// Creates what `drawToPostTexture` needs. Returns 1.
    int32_t InitPostRenderEffects();
    void FreePostRenderEffects();

    ComPointer<IDirect3DTexture9> screenBuffers[kScreenBuffers];
    ComPointer<IDirect3DTexture9> screenQuarterBuffers[kScreenQuarterBuffers];
    ComPointer<IDirect3DTexture9> screenCopy;
    ComPointer<IDirect3DTexture9> postTexture;
    ComPointer<IDirect3DSurface9> postSurface; ///< level 0 of `postTexture`
    ComPointer<ID3DXRenderToSurface> renderToSurface;
    uint8_t postEffectsReady = 0;
    int32_t drawToPostTexture = 0; ///< not 0: `BeginScene` and `EndScene` draw into `postTexture`

    // ---- Textures: KRE_GfxTextures.cpp; loading and making them, KRE_TextureLoading.h

    /// Flags that may be added to a mode of `LoadTexture` from 0 to 3.
    static constexpr int32_t kKeepTexture = 0x2000; ///< what the object holds is not freed first
    static constexpr int32_t kNoStretch = 0x1000;   ///< the picture is not resampled

    void LoadTexture(KRE_Texture* texture, const char* file, D3DCOLOR colorKey, int32_t mode,
                     int32_t format, int32_t mipLevels);
    ComPointer<IDirect3DBaseTexture9> LoadSolidTexture(const char* file);
    void CreateTexture(KRE_Texture* texture, int32_t width, int32_t height, int32_t mode,
                       int32_t format, int32_t mipLevels);
    void MakePlaceholder(KRE_Texture* texture);
    void MakeResourceName(String* nameOut, const char* file);
    /// The format to load a picture in; unknown means the file's own.
    D3DFORMAT ChooseTextureFormat(const D3DXIMAGE_INFO& info) const;
    /// Whether textures can have a format: 1, or 0 with a warning. `mode` is a KRE_FormatUse.
    int32_t CheckFormat(D3DFORMAT format, int32_t mode);
    /// With `level` 1 or above, compresses pictures of `minimumPixels` pixels or more. Level 1
    /// requires DXT1, 2 also DXT5; a device without them is an `Error`.
    void SetTextureCompression(int32_t level, int32_t minimumPixels);
    void UpdateVideoSource(int32_t source);
    /// Frees the engine's own textures, the catalogue and the video sources' textures.
    void FreeTextures();

    static constexpr int32_t kVideoSources = 16;
    KRE_VideoSource videoSources[kVideoSources]; ///< set by the embedding program; unused here
    int32_t textureCompression = 0;              ///< of `SetTextureCompression`
    int32_t pixelsForCompression = 65536;        ///< smaller pictures stay uncompressed
    int32_t noTextures = 0;    ///< 1: loads give the screen texture; never set here
    KRE_Texture screenTexture; ///< made when first used
    KRE_TextureCatalogue catalogue{*this};

    // ---- Paths: KRE_GfxPaths.cpp; the search for names: KRE_SearchPaths.h

    /// Warns about a path that will not work on another machine and returns false; callers use it
    /// anyway. QUIRK: an apostrophe counts as absolute, one leading backslash does not.
    bool CheckPath(const char* path);
    void SetDefaultTexturePath(const char* path);
    void SetDefaultBasePath(const char* path);
    const String& GetDefaultTexturePath() const;
    const String& GetDefaultBasePath() const;
    String ResolveTexturePath(const char* name, const char* referrerDirectory);
    String ResolveEffectPath(const char* name, const char* referrerDirectory);
    String LocateTexture(const char* name, const char* referrerDirectory,
                         bool* byLeafOut = nullptr);
    bool FindTextureFile(String* pathOut, const char* name, const char* directory);
    bool FindEffectFile(String* pathOut, const char* name, const char* directory);

    // ---- Scene files: qsb/LoadScene.cpp, qsb/SaveScene.cpp

    /// Clears `scene`, fills it from a QSB or QSA file, as the first bytes tell, and sets it to its
    /// start time. `flags` are `QSA_LoadFlag` bits; all bits set count as none. A missing or
    /// damaged file is an `Error`, after which the scene can be reset or loaded again.
    void LoadScene(KRE_3dScene& scene, const char* path, uint32_t flags);
    /// Writes a QSB file, with the header of the scene that was loaded last. The target is replaced
    /// when the file is complete; a save that fails is an `Error` and leaves it as it was.
    void SaveScene(KRE_3dScene& scene, const char* path);
    /// The time and sound settings in the file of the scene loaded last.
    QSA_SceneHeader& SceneHeader();

    static constexpr int32_t kScratchBytes = 65536;
    HeapArray<char> scratch{kScratchBytes}; ///< for one call at a time

private:
    void SetRenderStateOnce(D3DRENDERSTATETYPE state, DWORD value);
    void SetRenderStateOnce(D3DRENDERSTATETYPE state, float value);

    void SetDeviceDefaults();
    void BuildVertexLists();
    void FreeDeviceObjects();
    void ReleaseDefaultPoolObjects();
    void ReleaseTargetSurfaces();
    void FreeScreenBuffers();
    void CopyScreen();
    int32_t LoadEffectFile(KRE_ShaderEffect* effect, const char* file, bool usePool, DWORD flags,
                           bool fatalIfMissing);
    int32_t copiedFrame = -1; ///< number of the frame that `screenCopy` shows
    int32_t copiedSubFrame = -1;

    const std::unique_ptr<KRE_MaterialBinding> materialBinding;
    const std::unique_ptr<KRE_EffectFeeding> effectFeeding;
    const std::unique_ptr<KRE_TextureLoading> textureLoading;
    const std::unique_ptr<KRE_SearchPaths> searchPaths;
    KRE_StageProgram* collectedStates = nullptr; ///< set by `CollectStageStates`
    KRE_SceneDrawing& SceneDrawing();
    /// Created on first use, which also sets the deleter: the engine does not know scene drawing.
    std::unique_ptr<KRE_SceneDrawing, void (*)(KRE_SceneDrawing*)> sceneDrawing{nullptr, nullptr};

    QSALoader& SceneLoader();
    void LoadSceneFile(KRE_3dScene& scene, const char* path, uint32_t flags);
    void LoadQsbScene(KRE_3dScene& scene, QSB_InputFile& file, int32_t version, uint32_t flags);
    /// Created by the first load, which also sets the deleter: the engine does not depend on it.
    std::unique_ptr<QSALoader, void (*)(QSALoader*)> sceneLoader{nullptr, nullptr};
};

/// Created by graphics start-up and destroyed by shutdown; null outside that time.
extern KRE_Gfx* gGfx;

/// 1 from the end of graphics start-up to shutdown.
extern int32_t gGraphicsStarted;
