// What the four draw calls accept, and what state they leave behind.

#include "platform/headless/d3d9/TestControl.h"

#include "tests/platform/headless_d3d9/DrawFixture.h"

#include <cstring>

using namespace headless;

namespace {

class DrawCallsTest : public DrawTest {
protected:
    void SetUp() override
    {
        DrawTest::SetUp();
        // A square over the whole target, corners in reading order.
        const ScreenVertex corners[] = {{-0.5f, -0.5f}, {7.5f, -0.5f}, {-0.5f, 7.5f}, {7.5f, 7.5f}};
        ASSERT_EQ(device->CreateVertexBuffer(sizeof corners, 0, 0, D3DPOOL_MANAGED, vertices.Out(),
                                             nullptr),
                  D3D_OK);
        void* data = nullptr;
        ASSERT_EQ(vertices->Lock(0, 0, &data, 0), D3D_OK);
        std::memcpy(data, corners, sizeof corners);
        vertices->Unlock();
        ASSERT_EQ(device->SetStreamSource(0, vertices.Get(), 0, sizeof(ScreenVertex)), D3D_OK);
        ASSERT_EQ(device->SetFVF(ScreenVertex::kFormat), D3D_OK);
    }

    void TearDown() override
    {
        device->SetStreamSource(0, nullptr, 0, 0);
        device->SetIndices(nullptr);
        vertices.Release();
        indices.Release();
        DrawTest::TearDown();
    }

    void UseIndices(const std::vector<WORD>& values)
    {
        const auto size = static_cast<UINT>(values.size() * sizeof(WORD));
        ASSERT_EQ(device->CreateIndexBuffer(size, 0, D3DFMT_INDEX16, D3DPOOL_MANAGED, indices.Out(),
                                            nullptr),
                  D3D_OK);
        void* data = nullptr;
        ASSERT_EQ(indices->Lock(0, 0, &data, 0), D3D_OK);
        std::memcpy(data, values.data(), size);
        indices->Unlock();
        ASSERT_EQ(device->SetIndices(indices.Get()), D3D_OK);
    }

    HRESULT DrawIndexed(INT base, UINT start, UINT count)
    {
        return device->DrawIndexedPrimitive(D3DPT_TRIANGLELIST, base, 0, 4, start, count);
    }

    bool IsDrawn() { return Coverage().find('#') != std::string::npos; }

    Com<IDirect3DVertexBuffer9> vertices;
    Com<IDirect3DIndexBuffer9> indices;
};

} // namespace

TEST_F(DrawCallsTest, DrawsFromABuffer)
{
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3D_OK);
    EXPECT_EQ(Coverage().find('.'), std::string::npos);
}

TEST_F(DrawCallsTest, DrawsThroughIndices)
{
    UseIndices({0, 1, 2, 2, 1, 3});
    EXPECT_EQ(DrawIndexed(0, 0, 2), D3D_OK);
    EXPECT_EQ(Coverage().find('.'), std::string::npos);
}

TEST_F(DrawCallsTest, TheBaseIsAddedToEveryIndex)
{
    UseIndices({9, 10, 11, 11, 10, 12});
    EXPECT_EQ(DrawIndexed(-9, 0, 2), D3D_OK);
    EXPECT_EQ(Coverage().find('.'), std::string::npos);
}

TEST_F(DrawCallsTest, OutsideOfASceneNothingIsDrawn)
{
    ASSERT_EQ(device->EndScene(), D3D_OK);
    UseIndices({0, 1, 2});
    const ScreenVertex corner = {};
    const WORD index[3] = {};
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3DERR_INVALIDCALL);
    EXPECT_EQ(DrawIndexed(0, 0, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->DrawPrimitiveUP(D3DPT_POINTLIST, 1, &corner, sizeof corner),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(device->DrawIndexedPrimitiveUP(D3DPT_TRIANGLELIST, 0, 1, 1, index, D3DFMT_INDEX16,
                                             &corner, sizeof corner),
              D3DERR_INVALIDCALL);
    EXPECT_FALSE(IsDrawn());
}

TEST_F(DrawCallsTest, DrawingNoPrimitivesIsNotAnError)
{
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 0), D3D_OK);
    EXPECT_FALSE(IsDrawn());
}

TEST_F(DrawCallsTest, VerticesPastTheBufferAreRefused)
{
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 1, 2), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0xFFFFFFFF, 2), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 0xFFFFFFFF), D3DERR_INVALIDCALL);
    EXPECT_FALSE(IsDrawn());
}

TEST_F(DrawCallsTest, AnIndexPastTheBufferRefusesTheWholeDraw)
{
    UseIndices({0, 1, 2, 2, 1, 4});
    EXPECT_EQ(DrawIndexed(0, 0, 2), D3DERR_INVALIDCALL);
    EXPECT_FALSE(IsDrawn());
    EXPECT_EQ(DrawIndexed(-1, 0, 1), D3DERR_INVALIDCALL) << "before the first vertex";
    EXPECT_EQ(DrawIndexed(0, 0, 1), D3D_OK) << "the first three are good";
}

TEST_F(DrawCallsTest, PositionsPastTheIndicesAreRefused)
{
    UseIndices({0, 1, 2});
    EXPECT_EQ(DrawIndexed(0, 1, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(DrawIndexed(0, 0xFFFFFFFF, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(DrawIndexed(0, 0, 0x55555556), D3DERR_INVALIDCALL);
    EXPECT_FALSE(IsDrawn());
}

TEST_F(DrawCallsTest, ADrawNeedsAFormatAStreamAndIndices)
{
    EXPECT_EQ(DrawIndexed(0, 0, 1), D3DERR_INVALIDCALL);
    ASSERT_EQ(device->SetFVF(0), D3D_OK);
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3DERR_INVALIDCALL);
    ASSERT_EQ(device->SetFVF(ScreenVertex::kFormat), D3D_OK);
    ASSERT_EQ(device->SetStreamSource(0, nullptr, 0, 0), D3D_OK);
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3DERR_INVALIDCALL);
}

TEST_F(DrawCallsTest, UnknownPrimitivesAreRefused)
{
    for (const int type : {0, 7, int{D3DPT_FORCE_DWORD}}) // the largest value of the type
        EXPECT_EQ(device->DrawPrimitive(static_cast<D3DPRIMITIVETYPE>(type), 0, 1),
                  D3DERR_INVALIDCALL);
}

TEST_F(DrawCallsTest, DrawingFromMemoryEmptiesTheStream)
{
    UseIndices({0, 1, 2});
    const ScreenVertex corner = {};
    ASSERT_EQ(device->DrawPrimitiveUP(D3DPT_POINTLIST, 1, &corner, sizeof corner), D3D_OK);
    Com<IDirect3DVertexBuffer9> bound;
    UINT offset = 1, stride = 1;
    ASSERT_EQ(device->GetStreamSource(0, bound.Out(), &offset, &stride), D3D_OK);
    EXPECT_FALSE(bound);
    EXPECT_EQ(stride, 0u);
    const WORD index[3] = {};
    ASSERT_EQ(device->DrawIndexedPrimitiveUP(D3DPT_TRIANGLELIST, 0, 1, 1, index, D3DFMT_INDEX16,
                                             &corner, sizeof corner),
              D3D_OK);
    Com<IDirect3DIndexBuffer9> boundIndices;
    ASSERT_EQ(device->GetIndices(boundIndices.Out()), D3D_OK);
    EXPECT_FALSE(boundIndices);
}

TEST_F(DrawCallsTest, StatesThatAreNotModelledRefuseTheDrawByName)
{
    static const struct {
        D3DRENDERSTATETYPE state;
        const char* name;
        DWORD value;
    } cases[] = {
        {D3DRS_VERTEXBLEND, "D3DRS_VERTEXBLEND", D3DVBF_TWEENING},
        {D3DRS_ZFUNC, "D3DRS_ZFUNC", 0},
        {D3DRS_FILLMODE, "D3DRS_FILLMODE", 9},
    };
    for (const auto& c : cases) {
        DWORD before = 0;
        ASSERT_EQ(device->GetRenderState(c.state, &before), D3D_OK);
        const int calls = UnmodelledCallCount(c.name);
        State(c.state, c.value);
        EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3DERR_INVALIDCALL) << c.name;
        EXPECT_EQ(UnmodelledCallCount(c.name), calls + 1) << c.name;
        State(c.state, before);
    }
    EXPECT_FALSE(IsDrawn());
}

TEST_F(DrawCallsTest, ATextureThatIsTheTargetIsReadAsItWas)
{
    const Com<IDirect3DTexture9> texture = Texture(8, 8, 1, D3DPOOL_DEFAULT, D3DUSAGE_RENDERTARGET);
    Com<IDirect3DSurface9> level;
    ASSERT_EQ(texture->GetSurfaceLevel(0, level.Out()), D3D_OK);
    ASSERT_EQ(device->SetRenderTarget(0, level.Get()), D3D_OK);
    ASSERT_EQ(device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF102030, 1.0f, 0), D3D_OK);
    ASSERT_EQ(device->SetTexture(0, texture.Get()), D3D_OK);
    Stage(0, D3DTSS_COLOROP, D3DTOP_ADD);
    Stage(0, D3DTSS_COLORARG2, D3DTA_TEXTURE);
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3D_OK);
    EXPECT_EQ(Read(level.Get())[0], 0xFF204060u); // twice what was there
    Stage(0, D3DTSS_COLOROP, D3DTOP_SELECTARG2);
    Stage(0, D3DTSS_COLORARG2, D3DTA_CURRENT);
    Stage(0, D3DTSS_ALPHAARG1, D3DTA_DIFFUSE);
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3D_OK);
    ASSERT_EQ(device->SetTexture(0, nullptr), D3D_OK);
    ASSERT_EQ(device->SetRenderTarget(0, target.Get()), D3D_OK);
}

TEST_F(DrawCallsTest, ADepthBufferSmallerThanTheTargetIsRefused)
{
    Com<IDirect3DSurface9> depth;
    ASSERT_EQ(device->CreateDepthStencilSurface(4, 4, D3DFMT_D16, D3DMULTISAMPLE_NONE, 0, FALSE,
                                                depth.Out(), nullptr),
              D3D_OK);
    ASSERT_EQ(device->SetDepthStencilSurface(depth.Get()), D3D_OK);
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3D_OK) << "depth is off";
    State(D3DRS_ZENABLE, static_cast<DWORD>(D3DZB_TRUE));
    EXPECT_EQ(device->DrawPrimitive(D3DPT_TRIANGLESTRIP, 0, 2), D3DERR_INVALIDCALL);
    ASSERT_EQ(device->SetDepthStencilSurface(nullptr), D3D_OK);
}
