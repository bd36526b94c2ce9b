#include "qsa/QSA_VertexFormat.h"

#include <gtest/gtest.h>

#include "base/TextDataFileReader.h"
#include "qsa/QSA_Material.h"
#include "tests/support/RaisedBy.h"

namespace {

constexpr DWORD kPlain = D3DFVF_XYZ | D3DFVF_NORMAL;

} // namespace

TEST(QSA_VertexFormat, ImpossibleNumberOfWeightsIsAnError)
{
    TextDataFileReader reader;
    reader.SetFileName("*nofile*");
    EXPECT_EQ(RaisedBy([&] { ChooseVertexFormat({.weightCount = 5}, reader); }),
              "*nofile*: Invalid number of weightings: 5");
    EXPECT_EQ(RaisedBy([&] { ChooseVertexFormat({.weightCount = -1}, reader); }),
              "*nofile*: Invalid number of weightings: -1");
    EXPECT_EQ(ChooseVertexFormat({.weightCount = 4}, reader), 0x101Cu);
}

TEST(QSA_VertexFormat, EachMapOfTheMaterialNeedsASetOfCoordinates)
{
    const struct {
        const char* what;
        bool hasDiffuse, hasReflect, hasBump, hasTextureFaces;
        DWORD expected;
    } cases[] = {
        {"no map", false, false, false, false, kPlain},
        {"no map, but coordinates in the text", false, false, false, true, kPlain | D3DFVF_TEX1},
        {"colours", true, false, false, false, kPlain | D3DFVF_TEX1},
        {"a reflection", false, true, false, true, kPlain | D3DFVF_TEX1},
        {"both", true, true, false, true, kPlain | D3DFVF_TEX2},
        {"bumps", true, false, true, true, kPlain | D3DFVF_TEX2 | D3DFVF_TEXCOORDSIZE3(1)},
    };
    TextDataFileReader reader;
    for (const auto& c : cases) {
        QSA_Material material;
        material.hasDiffuse = c.hasDiffuse;
        material.hasReflect = c.hasReflect;
        material.hasBump = c.hasBump;
        EXPECT_EQ(ChooseVertexFormat({.hasTextureFaces = c.hasTextureFaces, .material = &material},
                                     reader),
                  c.expected)
            << c.what;
    }
}

TEST(QSA_VertexFormat, QuirkThreeMapsAddNoSetOfCoordinates)
{
    TextDataFileReader reader;
    QSA_Material material;
    material.hasDiffuse = material.hasReflect = material.hasBump = true;
    EXPECT_EQ(ChooseVertexFormat({.hasTextureFaces = true, .material = &material}, reader),
              kPlain | D3DFVF_TEXCOORDSIZE3(1));
}

TEST(QSA_VertexFormat, ColorsOfVerticesComeOnRequest)
{
    TextDataFileReader reader;
    EXPECT_EQ(ChooseVertexFormat({.hasColors = true}, reader),
              kPlain | D3DFVF_DIFFUSE | D3DFVF_SPECULAR);
}
