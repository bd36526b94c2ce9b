#include "tests/platform/d3d9/DeviceTestFixture.h"

#include <cstring>

namespace {

class BufferTest : public DeviceTest {
protected:
    Com<IDirect3DVertexBuffer9> Vertices(UINT length, D3DPOOL pool = D3DPOOL_MANAGED,
                                         DWORD usage = 0)
    {
        Com<IDirect3DVertexBuffer9> buffer;
        EXPECT_EQ(device->CreateVertexBuffer(length, usage, 0, pool, buffer.Out(), nullptr),
                  D3D_OK);
        return buffer;
    }
};

} // namespace

TEST_F(BufferTest, AVertexBufferDescribesItself)
{
    Com<IDirect3DVertexBuffer9> buffer;
    ASSERT_EQ(device->CreateVertexBuffer(128, D3DUSAGE_WRITEONLY, 0x1C4, D3DPOOL_SYSTEMMEM,
                                         buffer.Out(), nullptr),
              D3D_OK);
    D3DVERTEXBUFFER_DESC desc = {};
    ASSERT_EQ(buffer->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Format, D3DFMT_VERTEXDATA);
    EXPECT_EQ(desc.Type, D3DRTYPE_VERTEXBUFFER);
    EXPECT_EQ(desc.Usage, static_cast<DWORD>(D3DUSAGE_WRITEONLY));
    EXPECT_EQ(desc.Pool, D3DPOOL_SYSTEMMEM);
    EXPECT_EQ(desc.Size, 128u);
    EXPECT_EQ(desc.FVF, 0x1C4u);
    EXPECT_EQ(buffer->GetType(), D3DRTYPE_VERTEXBUFFER);
}

TEST_F(BufferTest, AnIndexBufferDescribesItself)
{
    Com<IDirect3DIndexBuffer9> buffer;
    ASSERT_EQ(
        device->CreateIndexBuffer(12, 0, D3DFMT_INDEX32, D3DPOOL_MANAGED, buffer.Out(), nullptr),
        D3D_OK);
    D3DINDEXBUFFER_DESC desc = {};
    ASSERT_EQ(buffer->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Format, D3DFMT_INDEX32);
    EXPECT_EQ(desc.Type, D3DRTYPE_INDEXBUFFER);
    EXPECT_EQ(desc.Size, 12u);
}

TEST_F(BufferTest, ALockBeginsAtItsOffset)
{
    const Com<IDirect3DVertexBuffer9> buffer = Vertices(16);
    void* data = nullptr;
    ASSERT_EQ(buffer->Lock(0, 0, &data, 0), D3D_OK);
    std::memcpy(data, "0123456789ABCDEF", 16);
    ASSERT_EQ(buffer->Unlock(), D3D_OK);
    ASSERT_EQ(buffer->Lock(10, 6, &data, D3DLOCK_READONLY), D3D_OK);
    EXPECT_EQ(std::memcmp(data, "ABCDEF", 6), 0);
    EXPECT_EQ(buffer->Unlock(), D3D_OK);
}

TEST_F(BufferTest, IndicesAreKept)
{
    Com<IDirect3DIndexBuffer9> buffer;
    ASSERT_EQ(
        device->CreateIndexBuffer(6, 0, D3DFMT_INDEX16, D3DPOOL_MANAGED, buffer.Out(), nullptr),
        D3D_OK);
    void* data = nullptr;
    const uint16_t indices[3] = {7, 8, 9};
    ASSERT_EQ(buffer->Lock(0, 6, &data, 0), D3D_OK);
    std::memcpy(data, indices, sizeof indices);
    ASSERT_EQ(buffer->Unlock(), D3D_OK);
    ASSERT_EQ(buffer->Lock(0, 0, &data, D3DLOCK_READONLY), D3D_OK);
    EXPECT_EQ(std::memcmp(data, indices, sizeof indices), 0);
    EXPECT_EQ(buffer->Unlock(), D3D_OK);
}

TEST_F(BufferTest, LocksMayNest)
{
    const Com<IDirect3DVertexBuffer9> buffer = Vertices(16);
    void* first = nullptr;
    void* second = nullptr;
    EXPECT_EQ(buffer->Lock(0, 0, &first, 0), D3D_OK);
    EXPECT_EQ(buffer->Lock(0, 0, &second, 0), D3D_OK);
    EXPECT_EQ(first, second);
    EXPECT_EQ(buffer->Unlock(), D3D_OK);
    EXPECT_EQ(buffer->Unlock(), D3D_OK);
}

TEST_F(BufferTest, RefusesInvalidArguments)
{
    Com<IDirect3DVertexBuffer9> vertices;
    Com<IDirect3DIndexBuffer9> indices;
    EXPECT_TRUE(
        FAILED(device->CreateVertexBuffer(0, 0, 0, D3DPOOL_MANAGED, vertices.Out(), nullptr)))
        << "empty";
    EXPECT_EQ(device->CreateVertexBuffer(16, 0, 0, D3DPOOL_SCRATCH, vertices.Out(), nullptr),
              D3DERR_INVALIDCALL)
        << "scratch memory";
    EXPECT_EQ(
        device->CreateIndexBuffer(16, 0, D3DFMT_INDEX16, D3DPOOL_SCRATCH, indices.Out(), nullptr),
        D3DERR_INVALIDCALL)
        << "scratch memory";
    EXPECT_FALSE(vertices);
    EXPECT_FALSE(indices);
}

TEST_F(BufferTest, ABoundBufferOutlivesItsLastRelease)
{
    Com<IDirect3DVertexBuffer9> buffer = Vertices(24);
    ASSERT_EQ(device->SetStreamSource(0, buffer.Get(), 0, 12), D3D_OK);
    EXPECT_EQ(buffer.Release(), 0u);
    Com<IDirect3DVertexBuffer9> bound;
    UINT offset = 0, stride = 0;
    ASSERT_EQ(device->GetStreamSource(0, bound.Out(), &offset, &stride), D3D_OK);
    ASSERT_TRUE(bound);
    D3DVERTEXBUFFER_DESC desc = {};
    EXPECT_EQ(bound->GetDesc(&desc), D3D_OK);
    EXPECT_EQ(desc.Size, 24u);
}
