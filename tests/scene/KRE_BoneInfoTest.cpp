#include "scene/KRE_BoneInfo.h"

#include <cstring>

#include "tests/scene/SceneTesting.h"

TEST(KRE_BoneInfo, BindMatrixIsTheMeshsThenTheBones)
{
    // (x, y, z) doubled, then moved by (1, 2, 3): the translation row stays (1, 2, 3). In the other
    // order it would be (2, 4, 6).
    D3DXMATRIX meshInit, boneInit;
    D3DXMatrixScaling(&meshInit, 2, 2, 2);
    D3DXMatrixTranslation(&boneInit, 1, 2, 3);
    const KRE_BoneInfo bone("Arm", boneInit, meshInit);
    EXPECT_STREQ(bone.name, "Arm");
    ExpectMatrix(bone.bindTM, {{2, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 2, 0}, {1, 2, 3, 1}});
    ExpectMatrix(bone.boneInitTM, {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {1, 2, 3, 1}});
    ExpectMatrix(bone.meshInitTM, {{2, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 2, 0}, {0, 0, 0, 1}});
}

TEST(KRE_BoneInfo, WithOnlyANameMovesNothing)
{
    KRE_BoneInfo bone("Boat");
    for (D3DXMATRIX* matrix : {&bone.boneInitTM, &bone.meshInitTM, &bone.bindTM})
        EXPECT_TRUE(D3DXMatrixIsIdentity(matrix));
    EXPECT_STREQ(KRE_BoneInfo().name, "");
    EXPECT_STREQ(KRE_BoneInfo(nullptr).name, "");
}

TEST(KRE_BoneInfo, NameIsTruncatedAt255Bytes)
{
    const KRE_BoneInfo bone(std::string(300, 'x').c_str());
    EXPECT_EQ(std::strlen(bone.name), 255u);
}
