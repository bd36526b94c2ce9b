#include "tests/platform/d3d9/DeviceTestFixture.h"
#include "tests/support/Emulator.h"

#include <sys/resource.h>

namespace {

class DeviceResourcesTest : public DeviceTest {
protected:
    HRESULT MakeTexture(UINT width, UINT height, D3DFORMAT format, D3DPOOL pool, DWORD usage = 0)
    {
        Com<IDirect3DTexture9> texture;
        const HRESULT result =
            device->CreateTexture(width, height, 1, usage, format, pool, texture.Out(), nullptr);
        EXPECT_EQ(SUCCEEDED(result), static_cast<bool>(texture));
        return result;
    }
};

} // namespace

TEST_F(DeviceResourcesTest, SidesGoUpTo8192)
{
    EXPECT_EQ(MakeTexture(8192, 1, D3DFMT_L8, D3DPOOL_MANAGED), D3D_OK);
    EXPECT_EQ(MakeTexture(8193, 1, D3DFMT_L8, D3DPOOL_MANAGED), D3DERR_INVALIDCALL);
    EXPECT_EQ(MakeTexture(1, 0xFFFFFFFF, D3DFMT_L8, D3DPOOL_SCRATCH), D3DERR_INVALIDCALL);
}

TEST_F(DeviceResourcesTest, LevelsEndAtOnePixel)
{
    Com<IDirect3DTexture9> texture;
    EXPECT_EQ(
        device->CreateTexture(4, 4, 4, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.Out(), nullptr),
        D3DERR_INVALIDCALL);
    EXPECT_EQ(
        device->CreateTexture(4, 4, 3, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, texture.Out(), nullptr),
        D3D_OK);
}

TEST_F(DeviceResourcesTest, OnlyScratchTexturesTakeEveryKnownFormat)
{
    EXPECT_EQ(MakeTexture(5, 3, D3DFMT_R8G8B8, D3DPOOL_SCRATCH), D3D_OK);
    EXPECT_EQ(MakeTexture(5, 3, D3DFMT_DXT5, D3DPOOL_SCRATCH), D3D_OK);
    EXPECT_EQ(MakeTexture(5, 3, D3DFMT_R8G8B8, D3DPOOL_MANAGED), D3DERR_INVALIDCALL);
    EXPECT_EQ(MakeTexture(5, 3, D3DFMT_DXT5, D3DPOOL_SYSTEMMEM), D3DERR_INVALIDCALL);
    EXPECT_EQ(MakeTexture(4, 4, D3DFMT_DXT5, D3DPOOL_SYSTEMMEM), D3D_OK);
}

TEST_F(DeviceResourcesTest, ADepthTextureIsATargetButNotASource)
{
    const Com<IDirect3DTexture9> texture =
        Texture(64, 48, 1, D3DPOOL_DEFAULT, D3DUSAGE_DEPTHSTENCIL, D3DFMT_D24S8);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(texture->GetSurfaceLevel(0, level.Out()), D3D_OK);
    EXPECT_EQ(device->SetDepthStencilSurface(level.Get()), D3D_OK);
    EXPECT_EQ(device->SetTexture(0, texture.Get()), D3DERR_INVALIDCALL);
    EXPECT_EQ(MakeTexture(8, 8, D3DFMT_D24S8, D3DPOOL_MANAGED, D3DUSAGE_DEPTHSTENCIL),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(MakeTexture(8, 8, D3DFMT_D24S8, D3DPOOL_DEFAULT), D3DERR_INVALIDCALL);
}

TEST_F(DeviceResourcesTest, SharedAndMultiSampledResourcesAreRefused)
{
    HANDLE shared = nullptr;
    Com<IDirect3DTexture9> texture;
    EXPECT_EQ(
        device->CreateTexture(4, 4, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_DEFAULT, texture.Out(), &shared),
        D3DERR_INVALIDCALL);
    Com<IDirect3DSurface9> surface;
    EXPECT_EQ(device->CreateRenderTarget(4, 4, D3DFMT_A8R8G8B8, D3DMULTISAMPLE_4_SAMPLES, 0, FALSE,
                                         surface.Out(), nullptr),
              D3DERR_INVALIDCALL);
}

TEST_F(DeviceResourcesTest, BufferLocksAreCheckedAgainstTheLength)
{
    Com<IDirect3DVertexBuffer9> buffer;
    ASSERT_EQ(device->CreateVertexBuffer(16, 0, 0, D3DPOOL_MANAGED, buffer.Out(), nullptr), D3D_OK);
    static const struct {
        UINT offset, size;
        HRESULT result;
    } cases[] = {
        {0, 16, D3D_OK},
        {15, 1, D3D_OK},
        {4, 0, D3D_OK},
        {0, 17, D3DERR_INVALIDCALL},
        {16, 0, D3DERR_INVALIDCALL},
        {1, 16, D3DERR_INVALIDCALL},
        {8, 0xFFFFFFF8, D3DERR_INVALIDCALL}, // the sum wraps to 0
    };
    for (const auto& c : cases) {
        void* data = nullptr;
        EXPECT_EQ(buffer->Lock(c.offset, c.size, &data, 0), c.result) << c.offset << ", " << c.size;
        EXPECT_EQ(data != nullptr, c.result == D3D_OK);
        EXPECT_EQ(buffer->Unlock(), c.result);
    }
}

TEST_F(DeviceResourcesTest, AVertexBufferHoldsAtLeastOneVertex)
{
    Com<IDirect3DVertexBuffer9> buffer;
    EXPECT_EQ(device->CreateVertexBuffer(31, 0, 0x1C4, D3DPOOL_MANAGED, buffer.Out(), nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device->CreateVertexBuffer(32, 0, 0x1C4, D3DPOOL_MANAGED, buffer.Out(), nullptr),
              D3D_OK);
}

TEST_F(DeviceResourcesTest, ManagedBuffersAreNeverDynamic)
{
    Com<IDirect3DVertexBuffer9> buffer;
    EXPECT_EQ(
        device->CreateVertexBuffer(16, D3DUSAGE_DYNAMIC, 0, D3DPOOL_MANAGED, buffer.Out(), nullptr),
        D3DERR_INVALIDCALL);
    EXPECT_EQ(
        device->CreateVertexBuffer(16, D3DUSAGE_DYNAMIC, 0, D3DPOOL_DEFAULT, buffer.Out(), nullptr),
        D3D_OK);
}

TEST_F(DeviceResourcesTest, LockedRectanglesMustLieInsideAndOnBlocks)
{
    const Com<IDirect3DTexture9> plain = Texture(8, 8, 1, D3DPOOL_MANAGED);
    const Com<IDirect3DTexture9> blocks = Texture(8, 8, 1, D3DPOOL_MANAGED, 0, D3DFMT_DXT1);
    static const struct {
        RECT area;
        HRESULT plain, blocks;
    } cases[] = {
        {{0, 0, 8, 8}, D3D_OK, D3D_OK},
        {{4, 4, 8, 8}, D3D_OK, D3D_OK},
        {{1, 0, 8, 8}, D3D_OK, D3DERR_INVALIDCALL},
        {{0, 0, 4, 6}, D3D_OK, D3DERR_INVALIDCALL},
        {{0, 0, 9, 8}, D3DERR_INVALIDCALL, D3DERR_INVALIDCALL},
        {{-4, 0, 4, 4}, D3DERR_INVALIDCALL, D3DERR_INVALIDCALL},
        {{4, 4, 4, 8}, D3DERR_INVALIDCALL, D3DERR_INVALIDCALL},
        {{8, 8, 4, 4}, D3DERR_INVALIDCALL, D3DERR_INVALIDCALL},
    };
    for (const auto& c : cases) {
        D3DLOCKED_RECT locked = {};
        EXPECT_EQ(plain->LockRect(0, &locked, &c.area, 0), c.plain) << c.area.left;
        EXPECT_EQ(plain->UnlockRect(0), c.plain);
        EXPECT_EQ(blocks->LockRect(0, &locked, &c.area, 0), c.blocks) << c.area.left;
        EXPECT_EQ(blocks->UnlockRect(0), c.blocks);
    }
}

TEST_F(DeviceResourcesTest, ALockedSurfaceTakesPartInNoCopy)
{
    const Com<IDirect3DSurface9> system = SystemSurface(4, 4);
    const Com<IDirect3DSurface9> target = Target(4, 4);
    D3DLOCKED_RECT locked = {};
    ASSERT_EQ(system->LockRect(&locked, nullptr, 0), D3D_OK);
    EXPECT_EQ(device->UpdateSurface(system.Get(), nullptr, target.Get(), nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetRenderTargetData(target.Get(), system.Get()), D3DERR_INVALIDCALL);
    ASSERT_EQ(system->UnlockRect(), D3D_OK);
}

TEST_F(DeviceResourcesTest, ObjectsAnswerForTheirInterfaces)
{
    const Com<IDirect3DTexture9> texture = Texture(4, 4, 1, D3DPOOL_MANAGED);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(texture->GetSurfaceLevel(0, level.Out()), D3D_OK);
    Com<IDirect3DBaseTexture9> base;
    EXPECT_EQ(
        texture->QueryInterface(IID_IDirect3DBaseTexture9, reinterpret_cast<void**>(base.Out())),
        S_OK);
    EXPECT_EQ(base.Get(), texture.Get());
    Com<IDirect3DTexture9> container;
    EXPECT_EQ(level->GetContainer(IID_IDirect3DTexture9, reinterpret_cast<void**>(container.Out())),
              D3D_OK);
    EXPECT_EQ(container.Get(), texture.Get());
    void* other = &other;
    EXPECT_EQ(texture->QueryInterface(IID_IDirect3DSurface9, &other), E_NOINTERFACE);
    EXPECT_EQ(other, nullptr);
}

#ifndef __SANITIZE_ADDRESS__ // which ends a process that runs out of memory

namespace {

/// Forbids the process to extend its address space during its lifetime.
class FullMemory {
public:
    FullMemory()
    {
        getrlimit(RLIMIT_AS, &before);
        rlimit limit = before;
        limit.rlim_cur = 1; // existing memory is kept
        setrlimit(RLIMIT_AS, &limit);
    }
    ~FullMemory() { setrlimit(RLIMIT_AS, &before); }

private:
    rlimit before = {};
};

} // namespace

TEST_F(DeviceResourcesTest, RunningOutOfMemoryIsAResult)
{
    if (RunsUnderAnEmulator())
        GTEST_SKIP() << "needs a memory limit";
    HRESULT texture, vertices;
    {
        const FullMemory full;
        texture = MakeTexture(8192, 8192, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED);
        Com<IDirect3DVertexBuffer9> buffer;
        vertices =
            device->CreateVertexBuffer(0xFFFFFFFF, 0, 0, D3DPOOL_MANAGED, buffer.Out(), nullptr);
    }
    EXPECT_EQ(texture, E_OUTOFMEMORY);
    EXPECT_EQ(vertices, E_OUTOFMEMORY);
    EXPECT_EQ(MakeTexture(64, 64, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED), D3D_OK) << "afterwards";
}

#endif
