#include <d3dx9.h>

#include <gtest/gtest.h>

TEST(EffectPool, CountsItsReferences)
{
    ID3DXEffectPool* pool = nullptr;
    ASSERT_EQ(D3DXCreateEffectPool(&pool), S_OK);
    ASSERT_NE(pool, nullptr);
    EXPECT_EQ(pool->AddRef(), 2u);
    EXPECT_EQ(pool->Release(), 1u);
    EXPECT_EQ(pool->Release(), 0u);
}

TEST(EffectPool, NeedsAnOutputPointer)
{
    EXPECT_EQ(D3DXCreateEffectPool(nullptr), D3DERR_INVALIDCALL);
}
