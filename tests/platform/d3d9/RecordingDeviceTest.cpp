#include "tests/support/RecordingDevice.h"

#include "tests/support/FakeDevice.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class RecordingDeviceTest : public testing::Test {
protected:
    ComHandle<IDirect3DVertexBuffer9> MakeVertexBuffer()
    {
        IDirect3DVertexBuffer9* buffer = nullptr;
        device->CreateVertexBuffer(96, D3DUSAGE_WRITEONLY, D3DFVF_XYZ, D3DPOOL_MANAGED, &buffer,
                                   nullptr);
        return ComHandle<IDirect3DVertexBuffer9>(buffer);
    }

    ComHandle<IDirect3DTexture9> MakeTexture()
    {
        IDirect3DTexture9* texture = nullptr;
        device->CreateTexture(8, 8, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &texture, nullptr);
        return ComHandle<IDirect3DTexture9>(texture);
    }

    DWORD RenderState(D3DRENDERSTATETYPE state)
    {
        DWORD value = 0;
        device->Wrapped()->GetRenderState(state, &value); // not recorded
        return value;
    }

    int before = FakeObjectsAlive();
    ComHandle<RecordingDevice> device = RecordingDevice::Standalone();
};

} // namespace

TEST_F(RecordingDeviceTest, NotesStatesByName)
{
    device->SetRenderState(D3DRS_ZENABLE, D3DZB_USEW);
    device->SetSamplerState(0, D3DSAMP_MAGFILTER, D3DTEXF_LINEAR);
    device->SetTextureStageState(1, D3DTSS_COLOROP, D3DTOP_MODULATE);
    device->SetFVF(D3DFVF_XYZ | D3DFVF_TEX1);
    device->LightEnable(8, TRUE);
    device->SetSoftwareVertexProcessing(FALSE);
    EXPECT_THAT(device->Lines(), ElementsAre("SetRenderState D3DRS_ZENABLE D3DZB_USEW",
                                             "SetSamplerState 0 D3DSAMP_MAGFILTER D3DTEXF_LINEAR",
                                             "SetTextureStageState 1 D3DTSS_COLOROP "
                                             "D3DTOP_MODULATE",
                                             "SetFVF D3DFVF_XYZ|D3DFVF_TEX1", "LightEnable 8 1",
                                             "SetSoftwareVertexProcessing 0"));
}

TEST_F(RecordingDeviceTest, NotesRecordsByTheirMembers)
{
    const D3DVIEWPORT9 viewport = {0, 10, 64, 32, 0.0f, 1.0f};
    device->SetViewport(&viewport);
    const D3DMATERIAL9 material = {
        {0.5f, 0.5f, 0.5f, 1}, {1, 1, 1, 1}, {0, 0, 0, 1}, {0, 0, 0, 1}, 20};
    device->SetMaterial(&material);
    D3DLIGHT9 light = {};
    light.Type = D3DLIGHT_DIRECTIONAL;
    light.Diffuse = {1, 1, 0.5f, 1};
    light.Direction = {0, -1, 0};
    light.Attenuation1 = 0.25f;
    device->SetLight(2, &light);
    EXPECT_THAT(device->Lines(),
                ElementsAre("SetViewport 0 10 64 32 0 1",
                            "SetMaterial diffuse[0.5 0.5 0.5 1] ambient[1 1 1 1] "
                            "specular[0 0 0 1] emissive[0 0 0 1] power=20",
                            "SetLight 2 D3DLIGHT_DIRECTIONAL diffuse[1 1 0.5 1] "
                            "specular[0 0 0 0] ambient[0 0 0 0] position[0 0 0] "
                            "direction[0 -1 0] range=0 falloff=0 attenuation[0 0.25 0] "
                            "theta=0 phi=0"));
}

TEST_F(RecordingDeviceTest, NotesMatricesByTransform)
{
    D3DMATRIX matrix = {};
    for (int i = 0; i < 4; ++i)
        matrix.m[i][i] = 1.0f;
    device->SetTransform(D3DTS_VIEW, &matrix);
    matrix.m[0][1] = -1.0f;
    device->SetTransform(D3DTS_WORLDMATRIX(3), &matrix);
    EXPECT_THAT(
        device->Lines(),
        ElementsAre("SetTransform D3DTS_VIEW identity",
                    "SetTransform D3DTS_WORLDMATRIX(3) [1 -1 0 0 0 1 0 0 0 0 1 0 0 0 0 1]"));
}

TEST_F(RecordingDeviceTest, NotesAFrame)
{
    const D3DRECT rect = {0, 0, 10, 20};
    device->BeginScene();
    device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0xFF000000, 1.0f, 0);
    device->Clear(1, &rect, D3DCLEAR_TARGET, 0x00FFFFFF, 0.5f, 3);
    device->DrawPrimitive(D3DPT_TRIANGLELIST, 0, 12);
    device->EndScene();
    device->Present(nullptr, nullptr, nullptr, nullptr);
    const RECT source = {0, 0, 5, 6};
    device->Present(&source, nullptr, nullptr, nullptr);
    EXPECT_EQ(device->Joined(), "BeginScene\n"
                                "Clear 0 rects D3DCLEAR_TARGET|D3DCLEAR_ZBUFFER 0xFF000000 1 0\n"
                                "Clear 1 rects [0 0 10 20] D3DCLEAR_TARGET 0x00FFFFFF 0.5 3\n"
                                "DrawPrimitive D3DPT_TRIANGLELIST 0 12\n"
                                "EndScene\n"
                                "Present\n"
                                "Present [0 0 5 6] null null null\n");
    device->ClearLines();
    EXPECT_EQ(device->Joined(), "");
}

TEST_F(RecordingDeviceTest, NotesTheWholeOfPresentParameters)
{
    D3DPRESENT_PARAMETERS parameters = {};
    parameters.BackBufferWidth = 320;
    parameters.BackBufferHeight = 200;
    parameters.BackBufferFormat = D3DFMT_R5G6B5;
    parameters.BackBufferCount = 1;
    parameters.SwapEffect = D3DSWAPEFFECT_FLIP;
    parameters.EnableAutoDepthStencil = TRUE;
    parameters.AutoDepthStencilFormat = D3DFMT_D16;
    parameters.FullScreen_RefreshRateInHz = 60;
    parameters.PresentationInterval = D3DPRESENT_INTERVAL_ONE;
    EXPECT_EQ(device->Reset(&parameters), D3D_OK);
    EXPECT_THAT(device->Lines(),
                ElementsAre("Reset BackBufferWidth=320 BackBufferHeight=200 "
                            "BackBufferFormat=D3DFMT_R5G6B5 BackBufferCount=1 "
                            "MultiSampleType=D3DMULTISAMPLE_NONE MultiSampleQuality=0 "
                            "SwapEffect=D3DSWAPEFFECT_FLIP hDeviceWindow=null Windowed=0 "
                            "EnableAutoDepthStencil=1 AutoDepthStencilFormat=D3DFMT_D16 Flags=0 "
                            "FullScreen_RefreshRateInHz=60 "
                            "PresentationInterval=D3DPRESENT_INTERVAL_ONE"));
}

TEST_F(RecordingDeviceTest, NotesFourEntriesOfAGammaRamp)
{
    D3DGAMMARAMP ramp = {};
    for (WORD i = 0; i < 256; ++i)
        ramp.red[i] = ramp.green[i] = static_cast<WORD>(i * 257); // 128 * 257 = 32896
    device->SetGammaRamp(0, D3DSGR_CALIBRATE, &ramp);
    EXPECT_THAT(device->Lines(),
                ElementsAre("SetGammaRamp 0 D3DSGR_CALIBRATE red[0 257 32896 65535] "
                            "green[0 257 32896 65535] blue[0 0 0 0]"));
}

TEST_F(RecordingDeviceTest, NumbersResourcesByKind)
{
    const auto buffer = MakeVertexBuffer();
    const auto first = MakeTexture();
    const auto second = MakeTexture();
    device->SetTexture(0, second.get());
    device->SetTexture(1, first.get());
    device->SetTexture(1, nullptr);
    device->SetStreamSource(0, buffer.get(), 0, 12);
    const std::string made = "CreateTexture 8 8 1 0 D3DFMT_A8R8G8B8 D3DPOOL_MANAGED -> ";
    EXPECT_THAT(device->Lines(),
                ElementsAre("CreateVertexBuffer 96 D3DUSAGE_WRITEONLY D3DFVF_XYZ D3DPOOL_MANAGED "
                            "-> vertexbuffer#1",
                            made + "texture#1", made + "texture#2", "SetTexture 0 texture#2",
                            "SetTexture 1 texture#1", "SetTexture 1 null",
                            "SetStreamSource 0 vertexbuffer#1 0 12"));
}

TEST_F(RecordingDeviceTest, ANewObjectNeverReusesAName)
{
    for (int i = 0; i < 3; ++i)
        MakeVertexBuffer(); // released at once, so the address may be reused
    EXPECT_THAT(device->Lines(), ElementsAre(testing::EndsWith("-> vertexbuffer#1"),
                                             testing::EndsWith("-> vertexbuffer#2"),
                                             testing::EndsWith("-> vertexbuffer#3")));
}

TEST_F(RecordingDeviceTest, GivenSurfacesKeepTheirNames)
{
    for (int i = 0; i < 2; ++i) {
        IDirect3DSurface9* target = nullptr;
        IDirect3DSurface9* depth = nullptr;
        device->GetRenderTarget(0, &target);
        device->GetDepthStencilSurface(&depth);
        target->Release();
        depth->Release();
    }
    EXPECT_THAT(device->Lines(),
                ElementsAre("GetRenderTarget 0 -> surface#1", "GetDepthStencilSurface -> surface#2",
                            "GetRenderTarget 0 -> surface#1",
                            "GetDepthStencilSurface -> surface#2"));
}

TEST_F(RecordingDeviceTest, LinesOfTakesTheCallsOfOneName)
{
    device->SetRenderState(D3DRS_LIGHTING, 1);
    device->BeginScene();
    device->SetRenderState(D3DRS_LIGHTING, 0);
    EXPECT_THAT(device->Recorder()->LinesOf("SetRenderState"),
                ElementsAre("SetRenderState D3DRS_LIGHTING 1", "SetRenderState D3DRS_LIGHTING 0"));
    EXPECT_TRUE(device->Recorder()->LinesOf("Set").empty());
}

TEST_F(RecordingDeviceTest, FailNextFailsOneCallThatDoesNotReachTheDevice)
{
    device->SetRenderState(D3DRS_LIGHTING, 1);
    device->FailNext("SetRenderState", D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetFVF(D3DFVF_XYZ), D3D_OK);
    EXPECT_EQ(device->SetRenderState(D3DRS_LIGHTING, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(RenderState(D3DRS_LIGHTING), 1u);
    EXPECT_EQ(device->SetRenderState(D3DRS_LIGHTING, 0), D3D_OK);
    EXPECT_EQ(RenderState(D3DRS_LIGHTING), 0u);
    EXPECT_EQ(device->Recorder()->LinesOf("SetRenderState").size(), 3u); // including the failed one
}

TEST_F(RecordingDeviceTest, FailNextMatchesWholeWords)
{
    device->FailNext("SetRenderState", D3DERR_INVALIDCALL, "D3DRS_POINTSIZE");
    device->FailNext("SetSamplerState", D3DERR_INVALIDCALL, "1 D3DSAMP_MAGFILTER");
    EXPECT_EQ(device->SetRenderState(D3DRS_POINTSIZE_MIN, 0), D3D_OK);
    EXPECT_EQ(device->SetRenderState(D3DRS_POINTSIZE, 0), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetSamplerState(0, D3DSAMP_MAGFILTER, 1), D3D_OK);
    EXPECT_EQ(device->SetSamplerState(1, D3DSAMP_MINFILTER, 1), D3D_OK);
    EXPECT_EQ(device->Recorder()->FailuresLeft(), 1u);
    EXPECT_EQ(device->SetSamplerState(1, D3DSAMP_MAGFILTER, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->Recorder()->FailuresLeft(), 0u);
}

TEST_F(RecordingDeviceTest, OrdersForOneNameAreServedInTurn)
{
    device->FailNext("TestCooperativeLevel", D3DERR_DEVICELOST);
    device->FailNext("TestCooperativeLevel", D3DERR_DEVICENOTRESET);
    EXPECT_EQ(device->TestCooperativeLevel(), D3DERR_DEVICELOST);
    EXPECT_EQ(device->TestCooperativeLevel(), D3DERR_DEVICENOTRESET);
    EXPECT_EQ(device->TestCooperativeLevel(), D3D_OK);
}

TEST_F(RecordingDeviceTest, FailAlwaysLastsUntilCleared)
{
    device->FailAlways("Present", D3DERR_DEVICELOST);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3DERR_DEVICELOST);
    device->ClearFailures();
    EXPECT_EQ(device->Present(nullptr, nullptr, nullptr, nullptr), D3D_OK);
}

TEST_F(RecordingDeviceTest, AFailedCreationGivesNull)
{
    const auto other = MakeTexture();
    device->ClearLines();
    IDirect3DTexture9* texture = other.get();
    device->FailNext("CreateTexture", D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(device->CreateTexture(8, 8, 1, 0, D3DFMT_L8, D3DPOOL_MANAGED, &texture, nullptr),
              D3DERR_OUTOFVIDEOMEMORY);
    EXPECT_EQ(texture, nullptr);
    EXPECT_THAT(device->Lines(), ElementsAre("CreateTexture 8 8 1 0 D3DFMT_L8 D3DPOOL_MANAGED"));
}

TEST_F(RecordingDeviceTest, CapsAreWhatTheTestSays)
{
    D3DCAPS9 caps = {};
    EXPECT_EQ(device->GetDeviceCaps(&caps), D3D_OK);
    EXPECT_EQ(caps.RasterCaps & D3DPRASTERCAPS_WBUFFER, 0u);
    caps.RasterCaps |= D3DPRASTERCAPS_WBUFFER;
    caps.MaxPointSize = 17.0f;
    device->OverrideCaps(caps);
    D3DCAPS9 overridden = {};
    EXPECT_EQ(device->GetDeviceCaps(&overridden), D3D_OK);
    EXPECT_NE(overridden.RasterCaps & D3DPRASTERCAPS_WBUFFER, 0u);
    EXPECT_EQ(overridden.MaxPointSize, 17.0f);
}

TEST_F(RecordingDeviceTest, TheWrappedDeviceGoesWithTheLastReference)
{
    EXPECT_GT(FakeObjectsAlive(), before);
    device->AddRef();
    EXPECT_EQ(device->Release(), 1u);
    EXPECT_GT(FakeObjectsAlive(), before);
    device.reset();
    EXPECT_EQ(FakeObjectsAlive(), before);
}

TEST_F(RecordingDeviceTest, TakesOneReferenceToTheWrappedDevice)
{
    IDirect3DDevice9* fake = device->Wrapped();
    fake->AddRef();
    EXPECT_EQ(fake->Release(), 1u);
    auto second = RecordingDevice::Wrap(fake);
    fake->AddRef();
    EXPECT_EQ(fake->Release(), 2u);
    second.reset();
    fake->AddRef();
    EXPECT_EQ(fake->Release(), 1u);
}

TEST_F(RecordingDeviceTest, TheRecorderOutlivesTheDevice)
{
    const auto recorder = device->Recorder();
    device->BeginScene();
    device.reset();
    EXPECT_THAT(recorder->Lines(), ElementsAre("BeginScene"));
}

TEST_F(RecordingDeviceTest, AnswersToItsOwnInterfacesOnly)
{
    static constexpr GUID kUnknown = {
        0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
    static constexpr GUID kOther = {
        0x12345678, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
    void* object = nullptr;
    EXPECT_EQ(device->QueryInterface(kUnknown, &object), S_OK);
    EXPECT_EQ(object, device.get());
    EXPECT_EQ(device->Release(), 1u);
    EXPECT_EQ(device->QueryInterface(kOther, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}
