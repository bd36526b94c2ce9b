#include "tests/gfx/EngineTest.h"

using testing::ElementsAre;

namespace {

class KRE_GfxVertexInputTest : public EngineTest {
protected:
    KRE_GfxVertexInputTest() { Start(); }
};

} // namespace

TEST_F(KRE_GfxVertexInputTest, FormatIsKept)
{
    gfx.SetFVF(KRE_TLVertex::kFvf);
    EXPECT_EQ(gfx.currentFvf, 0x1C4u);
    FailNext("SetFVF");
    EXPECT_EQ(RaisedBy([&] { gfx.SetFVF(0x12); }),
              "Failed to set flexible vertex format: D3DERR_INVALIDCALL");
    EXPECT_EQ(gfx.currentFvf, 0x1C4u);
}

TEST_F(KRE_GfxVertexInputTest, QuirkStreamNumberIsKeptButStreamZeroIsSet)
{
    gfx.SetStreamSource(3, gfx.tlList.buffer.Get(), 32);
    EXPECT_THAT(Calls(), ElementsAre("SetStreamSource 0 vertexbuffer#4 0 32"));
    EXPECT_EQ(gfx.streamNumber, 3u);
    FailNext("SetStreamSource");
    EXPECT_EQ(RaisedBy([&] { gfx.SetStreamSource(0, nullptr, 0); }),
              "SetStreamSource failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxVertexInputTest, IndicesAreSet)
{
    gfx.SetIndices(nullptr);
    EXPECT_THAT(Calls(), ElementsAre("SetIndices null"));
    FailNext("SetIndices");
    EXPECT_EQ(RaisedBy([&] { gfx.SetIndices(nullptr); }), "SetIndices failed: D3DERR_INVALIDCALL");
}

TEST_F(KRE_GfxVertexInputTest, RefusedSoftwareProcessingIsTriedAgain)
{
    FailNext("SetSoftwareVertexProcessing");
    gfx.SetSoftwareVertexProcessing(1);
    EXPECT_EQ(gfx.lastResult, D3DERR_INVALIDCALL);
    Calls();
    gfx.SetSoftwareVertexProcessing(1);
    EXPECT_THAT(Calls(), ElementsAre("SetSoftwareVertexProcessing 1"));
}
