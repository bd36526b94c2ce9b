#include "info/FieldList.h"

#include <gtest/gtest.h>

TEST(FieldList, PartsAreNamedByTheKindOfTheField)
{
    FieldList fields;
    const float reals[] = {1.5f, 2};
    const uint16_t wholes[] = {7, 65535};
    fields.Whole("kind", -4);
    fields.Real("fov", 0.785f);
    fields.Bits("fogColor", 0xFF00007Bu);
    fields.Text("file", "a\nb");
    fields.Vector("position", {1, 2, 3});
    fields.Quaternion("rotation", {0, 0, 0, 1});
    fields.Color("diffuse", {0.25f, 0, 0, 1});
    D3DXMATRIX matrix;
    D3DXMatrixTranslation(&matrix, 5, 6, 7); // the fourth row
    fields.Matrix("initTM", matrix);
    fields.Reals("uv", reals, 2);
    fields.Wholes("vertices", wholes, 2);

    static const struct {
        const char* name;
        int32_t part;
        const char* expectedName;
        const char* expectedText;
    } cases[] = {
        {"kind", 0, "", "-4"},
        {"fov", 0, "", "0.785"},
        {"fogColor", 0, "", "0xFF00007B"},
        {"file", 0, "", "\"a\\x0Ab\""},
        {"position", 2, ".z", "3"},
        {"rotation", 3, ".w", "1"},
        {"diffuse", 0, ".r", "0.25"},
        {"initTM", 13, "[3][1]", "6"},
        {"uv", 0, "[0]", "1.5"},
        {"vertices", 1, "[1]", "65535"},
    };
    ASSERT_EQ(fields.All().size(), std::size(cases));
    for (const auto& c : cases) {
        const Field* field = fields.Find(c.name);
        ASSERT_NE(field, nullptr) << c.name;
        EXPECT_EQ(field->PartName(c.part), c.expectedName) << c.name;
        EXPECT_EQ(field->PartText(c.part), c.expectedText) << c.name;
    }
    EXPECT_EQ(fields.Find("scale"), nullptr);
    fields.Clear();
    EXPECT_EQ(fields.Find("kind"), nullptr);
}
