#include "qsa/QSA_NameAttributes.h"

#include <string>

#include <gtest/gtest.h>

TEST(QSA_NameAttributes, ValueIsInSingleQuotesAfterAnEqualsSign)
{
    const struct {
        const char* what;
        const char* text;
        const char* expected;
    } cases[] = {
        {"plain", "sea shader='water.fx'", "water.fx"},
        {"blanks and tabs", "shader \t= \t'water.fx' more", "water.fx"},
        {"not closed", "shader='water.fx and more", "water.fx and more"},
        {"empty", "shader=''", ""},
        {"no value", "shader", ""},
        {"no equals sign", "shader 'x'", ""},
        {"no quote", "shader=x", ""},
        {"other quote", "shader=\"x\"", ""},
        {"not there", "sea", ""},
        {"only the first place counts", "shader x shader='y'", ""},
        {"key inside another word", "myshader='y'", "y"},
        {"case counts", "Shader='y'", ""},
        {"line end is no blank", "shader=\n'y'", ""},
        {"empty text", "", ""},
    };
    for (const auto& c : cases)
        EXPECT_STREQ(GetNameAttribute(c.text, "shader").c_str(), c.expected) << c.what;
}

TEST(QSA_NameAttributes, ShaderWithoutClosingQuoteEndsAtTheEndOfTheName)
{
    KRE_EffectParams params;
    ParseEffectAttributes("sea shader = 'water.fx", &params);
    EXPECT_STREQ(params.name.c_str(), "water.fx");
}

TEST(QSA_NameAttributes, ParametersOneToEightAreRead)
{
    std::string name = "shader='a.fx'";
    for (int i = 1; i <= 8; ++i)
        name += " fParam" + std::to_string(i) + "='" + std::to_string(i) + ".5' vParam" +
                std::to_string(i) + "='" + std::to_string(i) + ",0.25,-1'";
    KRE_EffectParams params;
    ParseEffectAttributes(name.c_str(), &params);
    for (int i = 0; i < KRE_EffectParams::kParams; ++i) {
        const KRE_EffectParam& param = params.params[i];
        EXPECT_TRUE(param.hasFloat) << i;
        EXPECT_EQ(param.floatValue, static_cast<float>(i) + 1.5f) << i;
        EXPECT_TRUE(param.hasVector) << i;
        EXPECT_EQ(param.vectorValue[0], static_cast<float>(i + 1)) << i;
        EXPECT_EQ(param.vectorValue[1], 0.25f) << i;
        EXPECT_EQ(param.vectorValue[2], -1.0f) << i;
    }
}

TEST(QSA_NameAttributes, NinthParameterIsIgnored)
{
    static_assert(KRE_EffectParams::kParams == 8);
    KRE_EffectParams params;
    ParseEffectAttributes("fParam9='1' vParam9='1,2,3'", &params);
    for (const KRE_EffectParam& param : params.params) {
        EXPECT_FALSE(param.hasFloat);
        EXPECT_FALSE(param.hasVector);
    }
}

TEST(QSA_NameAttributes, VectorWithTwoNumbersLeavesItsFlagOff)
{
    KRE_EffectParams params;
    ParseEffectAttributes("vParam1='1,2' vParam2='1,2,3' vParam3='' fParam4='x'", &params);
    EXPECT_FALSE(params.params[0].hasVector);
    EXPECT_TRUE(params.params[1].hasVector);
    EXPECT_FALSE(params.params[2].hasVector);
    EXPECT_TRUE(params.params[3].hasFloat); // not empty, so the flag is set; no number reads as 0
    EXPECT_EQ(params.params[3].floatValue, 0.0f);
}
