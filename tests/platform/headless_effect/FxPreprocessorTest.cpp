#include "tests/platform/headless_effect/EffectTest.h"
#include "tests/support/ScratchDirectory.h"

// Macros, conditions and includes, checked by the final value of `x`.

namespace {

using FxPreprocessorTest = EffectTest;

/// Two files, the first of which includes the second; records the requests.
class TwoFiles final : public ID3DXInclude {
public:
    HRESULT STDMETHODCALLTYPE Open(D3DXINCLUDE_TYPE type, const char* name, const void* parent,
                                   const void** dataOut, UINT* bytesOut) override
    {
        static const std::string kFirst = "#include <second>\n";
        static const std::string kSecond = "float x = 7;\n";
        const std::string& text = std::string(name) == "second" ? kSecond : kFirst;
        asked +=
            std::string(type == D3DXINC_SYSTEM ? "<" : "\"") + name + (parent ? " inner " : " ");
        *dataOut = text.data();
        *bytesOut = static_cast<UINT>(text.size());
        ++open;
        return std::string(name) == "none" ? E_FAIL : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Close(const void*) override
    {
        --open;
        return S_OK;
    }

    std::string asked;
    int open = 0;
};

} // namespace

TEST_F(FxPreprocessorTest, TextsBecomeWhatTheirDirectivesSay)
{
    static const struct {
        const char* what;
        const char* text;
        float x;
    } cases[] = {
        {"a plain macro", "#define V 3\nfloat x = V;", 3},
        {"of a macro", "#define A B\n#define B 4\nfloat x = A;", 4},
        {"not itself again", "float V = 2;\n#define V V + 1\nfloat x = V;", 3},
        {"not in a ring", "float A = 5;\n#define A B\n#define B A\nfloat x = A;", 5},
        {"replaced later", "#define V 3\n#undef V\n#define V 6\nfloat x = V;", 6},
        {"with arguments", "#define ADD(a, b) ((a) + (b))\nfloat x = ADD(1, 2) * 2;", 6},
        {"brackets in an argument", "#define F(a) a\nfloat x = F(max(1, 8));", 8},
        {"a call in a call", "#define M(a, b) ((a) > (b) ? (a) : (b))\nfloat x = M(M(1, 9), 2);",
         9},
        {"over lines", "#define ADD(a, b) ((a) + (b))\nfloat x = ADD(1,\n 4);", 5},
        {"a name without a call", "float F = 2;\n#define F(a) 9\nfloat x = F;", 2},
        {"an empty argument", "#define F(a) 2 a\nfloat x = F();", 2},
        {"no parameters", "#define F() 7\nfloat x = F();", 7},
        {"a bracket behind a blank", "#define F (1 + 1)\nfloat x = F * 4;", 8},
        {"words put together", "#define C(a, b) a ## b\nfloat x = C(1, 2) + C(3, );", 15},
        {"arguments not replaced before",
         "#define V 5\n#define C(a) a ## 1\nfloat V1 = 6; float x = C(V);", 6},
        {"the line", "\n\nfloat x = __LINE__;", 3},
        {"known beforehand", "float x = DIRECT3D_VERSION + D3DX;", 0x0901},
        {"a comment in a macro", "#define V 1 /* 2\n*/ + 3 // 4\nfloat x = V;", 4},
        {"a continued macro", "#define V 1 + \\\n  2\nfloat x = V;", 3},
        {"a word over two lines", "flo\\\r\nat x = 8;", 8},
        {"if", "#if 2 > 1\nfloat x = 1;\n#else\nfloat x = 2;\n#endif", 1},
        {"elif", "#if 0\nfloat x = 1;\n#elif 1\nfloat x = 2;\n#elif 1\nfloat x = 3;\n#endif", 2},
        {"else", "#if 0\nfloat x = 1;\n#elif 0\nfloat x = 2;\n#else\nfloat x = 3;\n#endif", 3},
        {"nested, left out",
         "#if 0\n#if 1\nfloat x = 1;\n#else\n#endif\n#else\nfloat x = 2;\n#endif", 2},
        {"ifdef", "#define V\n#ifdef V\nfloat x = 1;\n#endif\n#ifdef W\nbad\n#endif", 1},
        {"ifndef", "#define V\n#ifndef V\nbad\n#endif\n#ifndef W\nfloat x = 2;\n#endif", 2},
        {"defined", "#define V 0\n#if defined(V) && !defined W && !V\nfloat x = 3;\n#endif", 3},
        {"unknown words are 0", "#if UNKNOWN == 0\nfloat x = 1;\n#endif", 1},
        {"no error where it does not count",
         "#if 0 && 1 / 0 || 1 ? 1 : 1 / 0\nfloat x = 1;\n#endif", 1},
        {"order of operators",
         "#if 1 + 2 * 3 == 7 && (1 | 6 & 3) == 3 && 7 % 4 << 1 == 6 && ~0 == -1\n"
         "float x = 1;\n#endif",
         1},
        {"what is left out need not be words",
         "#if 0\nit's \"not\n#error never\n#nothing\n#endif\nfloat x = 1;", 1},
        {"pragma and an empty directive", "#pragma warning(disable: 1)\n#\nfloat x = 1;", 1},
    };
    for (const auto& c : cases) {
        const Com<ID3DXEffect> effect = Make(c.text);
        ASSERT_TRUE(effect) << c.what;
        EXPECT_EQ(FloatOf(effect.Get(), "x"), c.x) << c.what;
    }
}

TEST_F(FxPreprocessorTest, AMacroCanBecomeAString)
{
    const Com<ID3DXEffect> effect =
        Make("#define S(a) #a\nstring x = S( one  \"two\" );\nstring y = __FILE__;");
    EXPECT_EQ(StringOf(effect.Get(), "x"), "one \"two\"");
    EXPECT_EQ(StringOf(effect.Get(), "y"), "memory");
}

TEST_F(FxPreprocessorTest, TheCallerCanDefineMacros)
{
    const D3DXMACRO macros[] = {{"V", "4"}, {"EMPTY", nullptr}, {nullptr, nullptr}};
    EXPECT_EQ(ErrorOf("#if V != 4 || !defined(EMPTY)\n#error missing\n#endif", macros), "");
    EXPECT_NE(ErrorOf("#if V != 4 || !defined(EMPTY)\n#error missing\n#endif"), "");
}

TEST_F(FxPreprocessorTest, FilesAreLookedForBesideTheOneThatNamesThem)
{
    const ScratchDirectory folder;
    folder.Write("fx/main.fx", "#include \"inc/a.fxh\"\nfloat x = A + B;");
    folder.Write("fx/inc/a.fxh", "#define A 1\n#include <b.fxh>\n");
    folder.Write("fx/inc/b.fxh", "#define B 2\n");
    EXPECT_EQ(ErrorOfFile("fx/main.fx"), "");
    EXPECT_EQ(ErrorOfFile("fx\\MAIN.fx"), "");
}

TEST_F(FxPreprocessorTest, AnIncludeHandlerAnswersForFiles)
{
    TwoFiles files;
    EXPECT_EQ(ErrorOf("#include \"first\"\nfloat y = x;", nullptr, &files), "");
    EXPECT_EQ(files.asked, "\"first <second inner ");
    EXPECT_EQ(files.open, 0) << "every file must be closed";
}

TEST_F(FxPreprocessorTest, AFileThatIncludesItselfIsAnError)
{
    const ScratchDirectory folder;
    folder.Write("a.fx", "#include \"a.fx\"\n");
    EXPECT_EQ(ErrorOfFile("a.fx"),
              "a.fx(1,10): error X4000: includes lie too deep in one another\n");
}

TEST_F(FxPreprocessorTest, AFileCanBeIncluded256Times)
{
    const ScratchDirectory folder;
    folder.Write("empty.fxh", "");
    std::string text;
    for (int i = 0; i < 256; ++i)
        text += "#include \"empty.fxh\"\n";
    folder.Write("a.fx", text);
    EXPECT_EQ(ErrorOfFile("a.fx"), "");
    folder.Write("a.fx", text + "#include \"empty.fxh\"\n");
    EXPECT_EQ(ErrorOfFile("a.fx"), "a.fx(257,10): error X4000: there are too many includes\n");
}
