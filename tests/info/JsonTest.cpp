#include <cmath>

#include <gmock/gmock.h>

#include "info/JsonDocument.h"
#include "info/Report.h"
#include "tests/info/InfoTesting.h"
#include "tests/info/JsonGrammar.h"

using testing::HasSubstr;

TEST(JsonGrammar, DistinguishesValidFromInvalid)
{
    for (const char* good :
         {"{}", " [ ] ", "[1, -0.5e+10, null]", "{\"a\": [true]}", "\"\\u00e4\""})
        EXPECT_TRUE(JsonGrammar::IsValid(good)) << good;
    for (const char* bad : {"", "{", "[1,]", "nan", "01", "\"\n\"", "{a: 1}", "\"\\x\"", "\"\xE4\"",
                            "[1] 2", "1.", "{\"a\" 1}"})
        EXPECT_FALSE(JsonGrammar::IsValid(bad)) << bad;
}

TEST(JsonDocument, NestsObjectsAndLists)
{
    Output output;
    JsonValue document;
    document["a"] = -1;
    document["b"] = {"x", true};
    document["c"] = JsonValue::array();
    document["d"]["e"] = nullptr;
    PrintDocument(document, output);
    EXPECT_EQ(output.Text(), "{\n"
                             "  \"a\": -1,\n"
                             "  \"b\": [\n"
                             "    \"x\",\n"
                             "    true\n"
                             "  ],\n"
                             "  \"c\": [],\n"
                             "  \"d\": {\n"
                             "    \"e\": null\n"
                             "  }\n"
                             "}\n");
}

TEST(JsonDocument, NumbersThatJsonCannotRepresentAreNull)
{
    FieldList fields;
    fields.Real("radius", NAN);
    fields.Vector("center", {INFINITY, 0.5f, -INFINITY});
    fields.Bits("color", 0xFF000000);
    fields.Whole("tag", -1);
    Output output;
    JsonValue document;
    AddJsonFields(fields, document);
    document["seconds"] = JsonReal(double{NAN});
    PrintDocument(document, output);
    EXPECT_EQ(output.Text(), "{\n"
                             "  \"radius\": null,\n"
                             "  \"center\": [null, 0.5, null],\n"
                             "  \"color\": \"0xFF000000\",\n"
                             "  \"tag\": -1,\n"
                             "  \"seconds\": null\n"
                             "}\n");
}

TEST(JsonDocument, FloatsAreTheShortestDecimalNumbers)
{
    static const struct {
        float value;
        const char* expected;
    } cases[] = {
        {0.1f, "0.1\n"}, {1.5f, "1.5\n"},   {-3, "-3\n"},       {16777216, "16777216\n"},
        {0, "0\n"},      {-0.0f, "-0.0\n"}, {1e30f, "1e+30\n"}, {0.785f, "0.785\n"},
    };
    for (const auto& c : cases) {
        Output output;
        PrintDocument(JsonReal(c.value), output);
        EXPECT_EQ(output.Text(), c.expected);
    }
}

TEST(JsonDocument, TextsAreEscaped)
{
    static const struct {
        const char* what;
        std::string bytes;
        const char* expected;
    } cases[] = {
        {"what JSON may not hold", "C:\\maps \"new\"", "\"C:\\\\maps \\\"new\\\"\"\n"},
        {"control characters", "\x01\n\x7F", "\"\\u0001\\n\\u007f\"\n"},
        {"what is not UTF-8", "B\xE4r", "\"B\xC3\xA4r\"\n"},
        {"nothing", "", "\"\"\n"},
        // U+E0041: 0xE0041 - 0x10000 = 0xD0041 = 0x340 * 0x400 + 0x41, so D800 + 340 and DC00 + 41.
        {"two halves", "\xF3\xA0\x81\x81", "\"\\udb40\\udc41\"\n"},
        {"the direction of writing", "\xC3\xA4\xE2\x80\xAE", "\"\\u00e4\\u202e\"\n"},
    };
    for (const auto& c : cases) {
        Output output;
        PrintDocument(JsonName(c.bytes), output);
        EXPECT_EQ(output.Text(), c.expected) << c.what;
    }
}

namespace {

class JsonTest : public InfoTest {
protected:
    std::string Json(const QsbFile& file) { return Printed(file, PrintJson); }
};

} // namespace

TEST_F(JsonTest, DocumentHasTheContentsOfTheFile)
{
    QsbFile file = InfoBoat();
    file.scene.meshes[0].materials[0].power = 8;
    file.scene.meshes[0].textures[0].slots[1].file = "gone.png";
    file.scene.meshes[0].bones.resize(1);
    file.scene.meshes[0].bones[0].name = "Hull";
    const std::string json = Json(file);
    EXPECT_TRUE(JsonGrammar::IsValid(json));
    for (
        const char* part :
        {"\"qsbinfo\": 1,",
         "\"path\": \"scene.qsb\",",
         "\"format\": \"QSB\",",
         "\"version\": 106,",
         "\"seconds\": 3.3333333333333335", // 100 frames at 30
         "\"meshes\": 1,",
         "\"missingTextures\": 1,",
         "\"name\": \"Hull\",",
         "\"kind\": \"mesh\",",
         "\"hasParent\": true,",
         "\"parentName\": \"Keel\",",
         "\"vertexCount\": 3,",
         "\"power\": 8,",
         "\"fvf\": \"0x00000112\",",
         "\"targetName\": \"Arm\",",
         "\"hasTarget\": true",
         "\"background\": null",
         "\"name\": \"gone.png\",\n      \"found\": false,\n      \"path\": null,\n      \"uses\": 0,",
         "Can not open texture: gone.png",
         "\"warningsNotKept\": 0"})
        EXPECT_THAT(json, HasSubstr(part));
}

TEST_F(JsonTest, EmptySceneHasAllMembers)
{
    const std::string json = Json(QsbFile());
    EXPECT_TRUE(JsonGrammar::IsValid(json));
    for (const char* name :
         {"meshes", "cameras", "objects", "lights", "textures", "effects", "warnings"})
        EXPECT_THAT(json, HasSubstr("\"" + std::string(name) + "\": []"));
}

TEST_F(JsonTest, IsValidWhateverBytesNamesHold)
{
    std::string every;
    for (int code = 1; code < 256; ++code)
        every += static_cast<char>(code);
    QsbFile file = InfoBoat();
    file.sound = every;
    file.scene.meshes[0].object.name = every;
    file.scene.meshes[0].textures[0].slots[0].file = every;
    file.scene.objects[0].name = "\xC3\x28";
    file.scene.objects[1].name = "\xED\xA0\x80 \xF0\x9F\x9A";
    file.scene.cameras[0].target.targetName = "\"\\\x01";
    const std::string json = Json(file);
    EXPECT_TRUE(JsonGrammar::IsValid(json));
}

TEST_F(JsonTest, IsValidWhateverNumbersAre)
{
    QsbFile file = InfoBoat();
    file.frameSpeed = NAN;
    file.scene.clip.radius = INFINITY;
    file.scene.meshes[0].object.initTM.fill(-INFINITY);
    file.scene.meshes[0].materials[0].colors.fill(NAN);
    file.scene.lights[0].numbers.fill(NAN);
    const std::string json = Json(file);
    EXPECT_TRUE(JsonGrammar::IsValid(json));
    EXPECT_THAT(json, HasSubstr("\"frameSpeed\": null"));
    EXPECT_THAT(json, HasSubstr("\"seconds\": 0"));
}
