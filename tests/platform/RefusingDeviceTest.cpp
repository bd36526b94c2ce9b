// What no device of this tree has: programs, declarations, volume and cube textures.

#include "tests/support/FakeDevice.h"

#include <gtest/gtest.h>

namespace {

class RefusingDeviceTest : public testing::Test {
protected:
    RefusingDeviceTest()
    {
        D3DDEVICE_CREATION_PARAMETERS creation = {};
        D3DPRESENT_PARAMETERS parameters = {};
        parameters.BackBufferWidth = parameters.BackBufferHeight = 4;
        parameters.BackBufferFormat = D3DFMT_X8R8G8B8;
        parameters.BackBufferCount = 1;
        parameters.Windowed = TRUE;
        device = FakeDevice::Create(creation, parameters, nullptr);
    }
    ComHandle<FakeDevice> device;
    float numbers[4] = {};
    int wholes[4] = {};
    BOOL flags[4] = {};
};

} // namespace

TEST_F(RefusingDeviceTest, ObjectsThatItCannotMakeAreNull)
{
    IDirect3DVertexShader9* const other = reinterpret_cast<IDirect3DVertexShader9*>(this);
    IDirect3DVertexShader9* vertexShader = other;
    EXPECT_EQ(device->CreateVertexShader(nullptr, &vertexShader), D3DERR_INVALIDCALL);
    EXPECT_EQ(vertexShader, nullptr);
    auto* pixelShader = reinterpret_cast<IDirect3DPixelShader9*>(other);
    EXPECT_EQ(device->CreatePixelShader(nullptr, &pixelShader), D3DERR_INVALIDCALL);
    EXPECT_EQ(pixelShader, nullptr);
    auto* volume = reinterpret_cast<IDirect3DVolumeTexture9*>(other);
    EXPECT_EQ(device->CreateVolumeTexture(1, 1, 1, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &volume,
                                          nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(volume, nullptr);
    auto* cube = reinterpret_cast<IDirect3DCubeTexture9*>(other);
    EXPECT_EQ(device->CreateCubeTexture(1, 1, 0, D3DFMT_A8R8G8B8, D3DPOOL_MANAGED, &cube, nullptr),
              D3DERR_INVALIDCALL);
    EXPECT_EQ(cube, nullptr);
    EXPECT_EQ(device->CreateVertexShader(nullptr, nullptr), D3DERR_INVALIDCALL);
}

TEST_F(RefusingDeviceTest, ProgramsMayBeTakenAwayAndThereAreNone)
{
    IDirect3DVertexShader9* vertexShader = reinterpret_cast<IDirect3DVertexShader9*>(this);
    EXPECT_EQ(device->SetVertexShader(vertexShader), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetVertexShader(nullptr), D3D_OK);
    EXPECT_EQ(device->GetVertexShader(&vertexShader), D3D_OK);
    EXPECT_EQ(vertexShader, nullptr);
    EXPECT_EQ(device->GetVertexShader(nullptr), D3DERR_INVALIDCALL);
    IDirect3DPixelShader9* pixelShader = reinterpret_cast<IDirect3DPixelShader9*>(this);
    EXPECT_EQ(device->SetPixelShader(pixelShader), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetPixelShader(nullptr), D3D_OK);
    EXPECT_EQ(device->GetPixelShader(&pixelShader), D3D_OK);
    EXPECT_EQ(pixelShader, nullptr);
}

TEST_F(RefusingDeviceTest, ConstantsOfProgramsAreRefused)
{
    EXPECT_EQ(device->SetVertexShaderConstantF(0, numbers, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetVertexShaderConstantF(0, numbers, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetVertexShaderConstantI(0, wholes, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetVertexShaderConstantI(0, wholes, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetVertexShaderConstantB(0, flags, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetVertexShaderConstantB(0, flags, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetPixelShaderConstantF(0, numbers, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetPixelShaderConstantF(0, numbers, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetPixelShaderConstantI(0, wholes, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetPixelShaderConstantI(0, wholes, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->SetPixelShaderConstantB(0, flags, 1), D3DERR_INVALIDCALL);
    EXPECT_EQ(device->GetPixelShaderConstantB(0, flags, 1), D3DERR_INVALIDCALL);
}
