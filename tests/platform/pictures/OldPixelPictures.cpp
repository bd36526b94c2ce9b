// Pixel shaders 1.1 to 1.4: each instruction and modifier alone. All stages but the fourth read the second
// coordinates, 0 to 1 over the target; the fourth the first ones, -2 to 2.

#include "tests/platform/pictures/ShaderStage.h"

#include <bit>

namespace {

constexpr unsigned kTo13 = kPs11 | kPs12 | kPs13;
constexpr unsigned kEnds = kPs11 | kPs14; ///< what has not changed in between
constexpr unsigned kFrom12 = kPs12 | kPs13 | kPs14;

using W = ShaderWords;

const std::vector<InstructionRow> kOldArithmetic = {
    {"mov", kTo13 | kPs14, [](W& w) { w.Op(kMov, R(0), {V(0)}); }},
    {"specular", kEnds, [](W& w) { w.Op(kMov, R(0), {V(1)}); }},
    {"add", kEnds,
     [](W& w) {
         w.Op(kAdd, R(0), {V(0), V(1)});
     }},
    {"sub", kEnds,
     [](W& w) {
         w.Op(kSub, R(0), {V(0), V(1)});
     }},
    {"mul", kEnds,
     [](W& w) {
         w.Op(kMul, R(0), {V(0), V(1)});
     }},
    {"mad", kEnds,
     [](W& w) {
         w.Op(kMad, R(0), {V(0), V(1), C(1)});
     }},
    {"lrp", kEnds,
     [](W& w) {
         w.Op(kLrp, R(0), {V(0), V(1), C(1)});
     }},
    {"dp3", kEnds,
     [](W& w) {
         w.Op(kDp3, R(0), {V(0), V(1)});
     }},
    {"dp3_signed", kEnds,
     [](W& w) {
         w.Op(kDp3, Modified(R(0), 1, -1), {With(V(0), kSigned), With(V(0), kSigned)});
     }},
    {"dp4", kFrom12,
     [](W& w) {
         w.Op(kDp4, R(0), {V(0), C(1)});
     }},
    {"cnd", kTo13,
     [](W& w) {
         w.Op(kMov, R(0), {V(0)}).Op(kCnd, R(0), {Of(R(0), "w"), V(1), C(1)});
     }},
    {"cnd", kPs14,
     [](W& w) {
         w.Op(kCnd, R(0), {V(0), V(1), C(1)});
     }},
    {"cmp", kFrom12,
     [](W& w) {
         w.Op(kCmp, R(0), {With(V(0), kBias), V(1), C(1)});
     }},
    {"bias", kEnds, [](W& w) { w.Op(kMov, R(0), {With(V(0), kBias)}); }},
    {"bias_negated", kEnds, [](W& w) { w.Op(kMov, R(0), {With(V(0), kBiasNegate)}); }},
    {"signed", kEnds, [](W& w) { w.Op(kMov, R(0), {With(V(0), kSigned)}); }},
    {"signed_negated", kEnds, [](W& w) { w.Op(kMov, R(0), {With(V(0), kSignedNegate)}); }},
    {"inverted", kEnds, [](W& w) { w.Op(kMov, R(0), {With(V(0), kInvert)}); }},
    {"negated", kEnds,
     [](W& w) {
         w.Op(kAdd, R(0), {Minus(V(0)), V(1)});
     }},
    {"twice", kPs14, [](W& w) { w.Op(kMov, R(0), {With(V(0), kTwice)}); }},
    {"twice_negated", kPs14,
     [](W& w) {
         w.Op(kAdd, R(0), {With(V(0), kTwiceNegate), V(1)});
     }},
    {"result_x2", kEnds,
     [](W& w) {
         w.Op(kMul, Modified(R(0), 0, 1), {V(0), V(1)});
     }},
    {"result_x4", kEnds,
     [](W& w) {
         w.Op(kMul, Modified(R(0), 0, 2), {V(0), V(1)});
     }},
    {"result_x8", kPs14,
     [](W& w) {
         w.Op(kMul, Modified(R(0), 0, 3), {V(0), V(1)});
     }},
    {"result_d2", kEnds,
     [](W& w) {
         w.Op(kAdd, Modified(R(0), 0, -1), {V(0), V(1)});
     }},
    {"result_d4", kPs14,
     [](W& w) {
         w.Op(kAdd, Modified(R(0), 0, -2), {V(0), V(1)});
     }},
    {"result_d8", kPs14,
     [](W& w) {
         w.Op(kAdd, Modified(R(0), 0, -3), {V(0), V(1)});
     }},
    {"saturated", kEnds,
     [](W& w) {
         w.Op(kSub, Modified(R(0), 1), {V(0), V(1)}).Op(kAdd, R(0), {R(0), C(1)});
     }},
    {"saturated_x2", kEnds,
     [](W& w) {
         w.Op(kSub, Modified(R(0), 1, 1), {V(0), V(1)}).Op(kSub, R(0), {C(0), R(0)});
     }},
    {"all_alpha", kEnds, [](W& w) { w.Op(kMov, R(0), {Of(V(0), "w")}); }},
    {"all_red", kPs14, [](W& w) { w.Op(kMov, R(0), {Of(V(0), "x")}); }},
    {"all_green", kPs14, [](W& w) { w.Op(kMov, R(0), {Of(V(0), "y")}); }},
    {"all_blue", kPs14, [](W& w) { w.Op(kMov, R(0), {Of(V(0), "z")}); }},
    {"blue_to_alpha", kEnds,
     [](W& w) {
         w.Op(kMov, To(R(0), "w"), {Of(V(0), "z")});
         w.Op(kMov, To(R(0), "xyz"), {Of(R(0), "w")});
     }},
    {"mask_colour", kEnds,
     [](W& w) { w.Op(kMov, R(0), {V(0)}).Op(kMov, To(R(0), "xyz"), {V(1)}); }},
    {"mask_red_blue", kPs14,
     [](W& w) { w.Op(kMov, R(0), {V(0)}).Op(kMov, To(R(0), "xz"), {C(1)}); }},
    {"pair", kEnds,
     [](W& w) {
         w.Op(kMov, R(0), {V(0)});
         w.Op(kMul, To(R(0), "xyz"), {R(0), Of(R(0), "w")});
         w.Paired(kMov, To(R(0), "w"), {With(Of(R(0), "w"), kInvert)});
         w.Op(kMul, To(R(0), "xyz"), {R(0), Of(R(0), "w")});
     }},
};

void OldBumpMap(PictureStage& stage)
{
    stage->SetTexture(
        0,
        stage.Texture(
            64, [](UINT x, UINT y) { return ((y * 4 - 128) & 0xFF) << 8 | ((x * 4 - 128) & 0xFF); },
            D3DFMT_V8U8));
    stage.Filter(1, D3DTEXF_LINEAR);
    stage.Address(1, D3DTADDRESS_CLAMP, D3DTADDRESS_CLAMP);
    const float matrix[] = {0.25f, 0.125f, -0.125f, 0.5f};
    for (DWORD i = 0; i < 4; ++i)
        stage->SetTextureStageState(1,
                                    static_cast<D3DTEXTURESTAGESTATETYPE>(D3DTSS_BUMPENVMAT00 + i),
                                    std::bit_cast<DWORD>(matrix[i]));
    stage->SetTextureStageState(1, D3DTSS_BUMPENVLSCALE, std::bit_cast<DWORD>(0.5f));
    stage->SetTextureStageState(1, D3DTSS_BUMPENVLOFFSET, std::bit_cast<DWORD>(0.25f));
}

/// Smooth textures, as coordinates that are computed may fall between texels.
void Smooth(PictureStage& stage)
{
    for (DWORD i = 0; i < 3; ++i) {
        stage.Filter(i, i == 0 ? D3DTEXF_POINT : D3DTEXF_LINEAR);
        stage.Address(i, D3DTADDRESS_CLAMP, D3DTADDRESS_CLAMP);
    }
    stage->SetTexture(2, stage.Texture(64, [](UINT x, UINT y) {
        return 0xFF000000 | (x * 4) << 16 | (255 - y * 4) << 8 | (x + y) * 2;
    }));
}

const std::vector<InstructionRow> kOldTextures = {
    {"tex", kTo13, [](W& w) { w.Op(kTex, T(1)).Op(kMov, R(0), {T(1)}); }},
    {"tex_two", kTo13,
     [](W& w) {
         w.Op(kTex, T(0)).Op(kTex, T(1)).Op(kMul, R(0), {T(0), T(1)});
     }},
    {"tex_alpha", kPs11, [](W& w) { w.Op(kTex, T(0)).Op(kMov, R(0), {Of(T(0), "w")}); }},
    {"tex_signed", kPs11,
     [](W& w) {
         w.Op(kTex, T(0)).Op(kTex, T(1)).Op(kDp3, R(0), {With(T(0), kSigned), T(1)});
     }},
    {"tex_none", kPs11,
     [](W& w) {
         w.Op(kTex, T(1)).Op(kAdd, R(0), {T(1), C(1)});
     },
     1, 0, 1, 0, [](PictureStage& stage) { stage->SetTexture(1, nullptr); }},
    {"texcoord", kTo13, [](W& w) { w.Op(kTexCoord, T(3)).Op(kMov, R(0), {T(3)}); }},
    {"texcoord_second", kPs11, [](W& w) { w.Op(kTexCoord, T(1)).Op(kMov, R(0), {T(1)}); }},
    {"texkill", kTo13, [](W& w) { w.Op(kTexKill, T(3)).Op(kMov, R(0), {V(0)}); }},
    {"texreg2ar", kTo13,
     [](W& w) { w.Op(kTex, T(0)).Op(kTexReg2Ar, T(2), {T(0)}).Op(kMov, R(0), {T(2)}); }, 1, 0, 1, 0,
     Smooth},
    {"texreg2gb", kTo13,
     [](W& w) { w.Op(kTex, T(0)).Op(kTexReg2Gb, T(2), {T(0)}).Op(kMov, R(0), {T(2)}); }, 1, 0, 1, 0,
     Smooth},
    {"texreg2rgb", kPs12 | kPs13,
     [](W& w) { w.Op(kTex, T(0)).Op(kTexReg2Rgb, T(2), {T(0)}).Op(kMov, R(0), {T(2)}); }, 1, 0, 1,
     0, Smooth},
    {"texdp3", kPs12 | kPs13,
     [](W& w) { w.Op(kTex, T(0)).Op(kTexDp3, T(1), {T(0)}).Op(kMov, R(0), {T(1)}); }},
    {"texdp3tex", kPs12 | kPs13,
     [](W& w) { w.Op(kTex, T(0)).Op(kTexDp3Tex, T(2), {T(0)}).Op(kMov, R(0), {T(2)}); }, 1, 0, 1, 0,
     Smooth},
    {"texm3x2tex", kTo13,
     [](W& w) {
         w.Op(kTex, T(0)).Op(kTexM3x2Pad, T(1), {T(0)}).Op(kTexM3x2Tex, T(2), {T(0)});
         w.Op(kMov, R(0), {T(2)});
     },
     1, 0, 1, 0, Smooth},
    {"texm3x2tex_signed", kPs11,
     [](W& w) {
         w.Op(kTex, T(0)).Op(kTexM3x2Pad, T(1), {With(T(0), kSigned)});
         w.Op(kTexM3x2Tex, T(2), {With(T(0), kSigned)}).Op(kMov, R(0), {T(2)});
     },
     1, 0, 1, 0, Smooth},
    {"texm3x3", kPs12 | kPs13,
     [](W& w) {
         w.Op(kTex, T(0)).Op(kTexM3x3Pad, T(1), {T(0)}).Op(kTexM3x3Pad, T(2), {T(0)});
         w.Op(kTexM3x3, T(3), {T(0)}).Op(kMov, R(0), {T(3)});
     }},
    {"texbem", kTo13,
     [](W& w) { w.Op(kTex, T(0)).Op(kTexBem, T(1), {T(0)}).Op(kMov, R(0), {T(1)}); }, 1, 0, 1, 0,
     OldBumpMap},
    {"texbeml", kPs11,
     [](W& w) { w.Op(kTex, T(0)).Op(kTexBemL, T(1), {T(0)}).Op(kMov, R(0), {T(1)}); }, 1, 0, 1, 0,
     OldBumpMap},
    {"texld", kPs14, [](W& w) { w.Op(kTex, R(1), {T(1)}).Op(kMov, R(0), {R(1)}); }},
    {"texld_other_coordinates", kPs14,
     [](W& w) { w.Op(kTex, R(2), {T(0)}).Op(kMov, R(0), {R(2)}); }},
    {"texcrd", kPs14,
     [](W& w) {
         w.Op(kTexCoord, To(R(1), "xyz"), {T(3)}).Op(kMov, R(0), {C(3)});
         w.Op(kAdd, Modified(To(R(0), "xyz"), 0, -2), {R(1), C(2)});
     }},
    {"texcrd_divided", kPs14,
     [](W& w) {
         w.Op(kTexCoord, To(R(1), "xy"), {With(Of(T(1), "xyww"), kByW)});
         w.Op(kMov, R(0), {C(3)}).Op(kMov, Modified(To(R(0), "xy"), 0, -2), {R(1)});
     }},
    {"texld_divided", kPs14,
     [](W& w) { w.Op(kTex, R(2), {With(Of(T(1), "xyww"), kByW)}).Op(kMov, R(0), {R(2)}); }, 1, 0, 1,
     0, Smooth},
    {"dependent", kPs14,
     [](W& w) {
         w.Op(kTex, R(0), {T(0)}).Op(kMul, R(0), {R(0), C(1)});
         w.Flow(kPhase).Op(kTex, R(2), {R(0)}).Op(kMov, R(0), {R(2)});
     },
     1, 0, 1, 0, Smooth},
    {"dependent_divided_by_z", kPs14,
     [](W& w) {
         w.Op(kTexCoord, To(R(1), "xyz"), {T(1)}).Op(kAdd, To(R(1), "xyz"), {R(1), C(3)});
         w.Flow(kPhase).Op(kTex, R(2), {With(R(1), kByZ)}).Op(kMov, R(0), {R(2)});
     },
     1, 0, 1, 0, Smooth},
    {"texkill", kPs14,
     [](W& w) {
         w.Op(kTexCoord, To(R(1), "xyz"), {T(3)}).Op(kMov, R(2), {V(0)});
         w.Flow(kPhase).Op(kTexKill, R(1)).Op(kMov, R(0), {V(0)});
     }},
    {"bem", kPs14,
     [](W& w) {
         w.Op(kTexCoord, To(R(1), "xyz"), {T(1)}).Op(kTex, R(0), {T(0)});
         w.Op(kBem, To(R(1), "xy"), {R(1), R(0)});
         w.Flow(kPhase).Op(kTex, R(1), {R(1)}).Op(kMov, R(0), {R(1)});
     },
     1, 0, 1, 0, OldBumpMap},
};

std::vector<PictureProgram> AllOldPictures()
{
    std::vector<PictureProgram> all = OldPixelPictures(kOldArithmetic);
    const std::vector<PictureProgram> textures = OldPixelPictures(kOldTextures);
    all.insert(all.end(), textures.begin(), textures.end());
    return all;
}

} // namespace

const std::vector<PictureProgram> kOldPixelPictures = AllOldPictures();
