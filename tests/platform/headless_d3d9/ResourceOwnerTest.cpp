// Resources need no device, only an owner that counts them.

#include "platform/headless/d3d9/Buffer.h"
#include "platform/headless/d3d9/Texture.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

using namespace headless;

namespace {

/// Records the calls it gets.
class ListingOwner : public ResourceOwner {
public:
    void ChildReferenced(ObjectKind kind, D3DPOOL pool) override { Note('+', kind, pool); }
    void ChildUnreferenced(ObjectKind kind, D3DPOOL pool) override { Note('-', kind, pool); }
    IDirect3DDevice9& DeviceInterface() override { throw std::logic_error("there is no device"); }

    std::string told;

private:
    void Note(char what, ObjectKind kind, D3DPOOL pool)
    {
        told += what + std::to_string(static_cast<int>(kind)) + ':' + std::to_string(pool) + ' ';
    }
};

constexpr D3DSURFACE_DESC kSmall = {
    D3DFMT_A8R8G8B8, D3DRTYPE_SURFACE, 0, D3DPOOL_MANAGED, D3DMULTISAMPLE_NONE, 0, 4, 4};

std::string Told(char what, ObjectKind kind, D3DPOOL pool)
{
    return what + std::to_string(static_cast<int>(kind)) + ':' + std::to_string(pool) + ' ';
}

} // namespace

TEST(ResourceOwner, IsToldOfTheFirstAndTheLastReference)
{
    ListingOwner owner;
    HeadlessTexture* texture = HeadlessTexture::Create(owner, kSmall, 3);
    EXPECT_EQ(owner.told, "");
    texture->AddRef();
    texture->AddRef();
    texture->Release();
    EXPECT_EQ(owner.told, Told('+', ObjectKind::Texture, D3DPOOL_MANAGED));
    owner.told.clear();
    texture->Release();
    EXPECT_EQ(owner.told, Told('-', ObjectKind::Texture, D3DPOOL_MANAGED));
}

TEST(ResourceOwner, ALevelCountsAsItsTexture)
{
    ListingOwner owner;
    HeadlessTexture* texture = HeadlessTexture::Create(owner, kSmall, 3);
    texture->Level(2).AddRef();
    EXPECT_EQ(owner.told, Told('+', ObjectKind::Texture, D3DPOOL_MANAGED));
    texture->Level(2).Release();
}

TEST(ResourceOwner, ABoundBufferOutlivesItsLastReferenceAndDoesNotCount)
{
    ListingOwner owner;
    HeadlessVertexBuffer* buffer = HeadlessVertexBuffer::Create(
        owner, {D3DFMT_VERTEXDATA, D3DRTYPE_VERTEXBUFFER, 0, D3DPOOL_DEFAULT, 16, 0});
    buffer->AddRef();
    Binding<HeadlessVertexBuffer> slot;
    slot.Set(buffer);
    buffer->Release();
    EXPECT_EQ(owner.told, Told('+', ObjectKind::VertexBuffer, D3DPOOL_DEFAULT) +
                              Told('-', ObjectKind::VertexBuffer, D3DPOOL_DEFAULT));
    EXPECT_EQ(slot.Get()->Data().size, 16u);
}
