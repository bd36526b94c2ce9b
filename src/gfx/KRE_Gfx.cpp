#include "gfx/KRE_Gfx.h"

#include <algorithm>
#include <iterator>

#include "gfx/DirectXErrorName.h"
#include "gfx/KRE_EffectFeeding.h"
#include "gfx/KRE_MaterialBinding.h"
#include "gfx/KRE_SearchPaths.h"
#include "gfx/KRE_TextureLoading.h"

KRE_Gfx* gGfx = nullptr;
int32_t gGraphicsStarted = 0;

namespace {

bool HasLibrary(const char* fileName)
{
    const HMODULE module = LoadLibraryA(fileName);
    if (module)
        FreeLibrary(module);
    return module != nullptr;
}

IDirect3D9* CreateDirect3D(UINT sdkVersion)
{
    return Direct3DCreate9(sdkVersion);
}

D3DMATERIAL9 MakeDefaultMaterial()
{
    D3DMATERIAL9 material{};
    material.Diffuse = {0.9f, 0.9f, 0.9f, 1.0f};
    material.Ambient = {0.9f, 0.9f, 0.9f, 1.0f};
    material.Specular = {0.0f, 0.0f, 0.0f, 1.0f};
    material.Emissive = {0.0f, 0.0f, 0.0f, 1.0f};
    return material;
}

} // namespace

const KRE_GfxRuntime& KRE_GfxRuntime::System()
{
    static const KRE_GfxRuntime kSystem = {HasLibrary, CreateDirect3D, D3DXCreateEffectPool};
    return kSystem;
}

KRE_Gfx::KRE_Gfx(const KRE_GfxRuntime& systemRuntime)
    : runtime(systemRuntime),
      gammaRamp(LinearGammaRamp()),
      material(MakeDefaultMaterial()),
      defaultMaterial(material),
      materialBinding(std::make_unique<KRE_MaterialBinding>(*this)),
      effectFeeding(std::make_unique<KRE_EffectFeeding>(*this)),
      textureLoading(std::make_unique<KRE_TextureLoading>(*this)),
      searchPaths(std::make_unique<KRE_SearchPaths>(*this))
{
    SetClassName("KRE_Gfx");
    std::fill(std::begin(addressU), std::end(addressU), D3DTADDRESS_WRAP);
    std::fill(std::begin(addressV), std::end(addressV), D3DTADDRESS_WRAP);
    std::fill(std::begin(stageSource), std::end(stageSource), kSourceUnset);
    for (D3DXMATRIX* matrix : {&view, &projection, &worldViewProj, &environmentTM})
        D3DXMatrixIdentity(matrix);
    for (D3DXMATRIX& matrix : world)
        D3DXMatrixIdentity(&matrix);
    ResetStateCache();

    if (!runtime.hasLibrary("d3d9.dll"))
        Error("At least DirectX 9.0 required!");
    if (!runtime.hasLibrary("d3dx9_30.dll"))
        Error(
            "Your DirectX 9.0 runtime is too old (d3dx9_30.dll not found).\nPlease download and install latest DirectX");
    d3d = ComPointer<IDirect3D9>::Adopt(runtime.createDirect3D(D3D_SDK_VERSION));
    if (!d3d)
        Error("Direct3DCreate9 failed!");
    printf.SetGfx(this);
}

KRE_Gfx::~KRE_Gfx()
{
    FreeDevice();
}

void KRE_Gfx::Check(HRESULT result, const char* text)
{
    lastResult = result;
    if (FAILED(result))
        Error(text, DirectXErrorName(result));
}
