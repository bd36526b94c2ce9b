// Instructions that vertex and pixel shaders share, each alone. r1, r2, r3 are the inputs.

#include "tests/platform/pictures/ShaderStage.h"

namespace {

constexpr unsigned kVertex = kVs11 | kVs30;
constexpr unsigned kPixel = kPs20 | kPs30;
constexpr unsigned kBoth = kVertex | kPixel;
constexpr unsigned kFrom2 = kVs20 | kPixel;

using W = ShaderWords;

/// The components that an instruction leaves alone must have a value.
W& Preset(W& w)
{
    return w.Op(kMov, R(0), {C(3)});
}

const std::vector<InstructionRow> kArithmetic = {
    {"mov", kBoth | kVs20 | kVs2x | kVs2sw | kPs2x, [](W& w) { w.Op(kMov, R(0), {R(1)}); }, 0.25f,
     0.5f},
    {"add", kBoth,
     [](W& w) {
         w.Op(kAdd, R(0), {R(1), R(2)});
     },
     0.2f, 0.4f},
    {"sub", kBoth,
     [](W& w) {
         w.Op(kSub, R(0), {R(1), R(2)});
     },
     0.2f, 0.6f},
    {"mul", kBoth,
     [](W& w) {
         w.Op(kMul, R(0), {R(1), R(2)});
     },
     0.25f, 0.5f},
    {"mad", kBoth,
     [](W& w) {
         w.Op(kMad, R(0), {R(1), R(2), C(0)});
     },
     0.25f, 0.4f},
    {"dp3", kBoth,
     [](W& w) {
         w.Op(kDp3, R(0), {R(1), R(2)});
     },
     0.2f, 0.3f},
    {"dp4", kBoth,
     [](W& w) {
         w.Op(kDp4, R(0), {R(1), R(2)});
     },
     0.2f, 0.2f},
    {"min", kBoth,
     [](W& w) {
         w.Op(kMin, R(0), {R(1), C(0)});
     },
     0.25f, 0.5f},
    {"max", kBoth,
     [](W& w) {
         w.Op(kMax, R(0), {R(1), C(0)});
     },
     0.25f, 0.5f},
    {"slt", kVertex,
     [](W& w) {
         w.Op(kSlt, R(0), {R(1), R(2)});
     },
     0.75f, 0.25f},
    {"sge", kVertex,
     [](W& w) {
         w.Op(kSge, R(0), {R(1), R(2)});
     },
     0.75f, 0.25f},
    {"rcp", kBoth, [](W& w) { w.Op(kRcp, R(0), {Of(R(2), "w")}); }, 0.25f, 0.0f},
    {"rcp_signed", kBoth, [](W& w) { w.Op(kRcp, R(0), {Of(R(1), "x")}); }, 0.125f, 0.5f},
    {"rsq", kBoth, [](W& w) { w.Op(kRsq, R(0), {Of(R(2), "w")}); }, 0.5f, 0.0f},
    {"rsq_negative", kBoth, [](W& w) { w.Op(kRsq, R(0), {Minus(Of(R(2), "w"))}); }, 0.5f, 0.0f},
    {"exp", kBoth, [](W& w) { w.Op(kExp, R(0), {Of(R(1), "x")}); }, 0.25f, 0.0f},
    {"log", kBoth, [](W& w) { w.Op(kLog, R(0), {Of(R(2), "w")}); }, 0.5f, 1.0f},
    {"log_negative", kBoth, [](W& w) { w.Op(kLog, R(0), {Minus(Of(R(2), "w"))}); }, 0.5f, 1.0f},
    {"expp", kVs11 | kVs20, [](W& w) { w.Op(kExpP, R(0), {Of(R(1), "x")}); }, 0.25f, 0.0f},
    {"logp", kVs20, [](W& w) { w.Op(kLogP, R(0), {Of(R(2), "w")}); }, 0.25f, 0.5f},
    {"frc", kFrom2, [](W& w) { w.Op(kFrc, R(0), {R(1)}); }},
    {"frc", kVs11, [](W& w) { Preset(w).Op(kFrc, To(R(0), "xy"), {R(1)}); }},
    {"lit", kVertex,
     [](W& w) {
         w.Op(kAdd, R(0), {R(1), C(1)}).Op(kLit, R(0), {R(0)});
     },
     0.125f, 0.25f},
    {"dst", kVertex,
     [](W& w) {
         w.Op(kDst, R(0), {R(1), R(2)});
     },
     0.25f, 0.5f},
    {"lrp", kFrom2,
     [](W& w) {
         w.Op(kLrp, R(0), {R(2), R(1), C(0)});
     },
     0.25f, 0.5f},
    {"pow", kFrom2,
     [](W& w) {
         w.Op(kPow, R(0), {Of(R(2), "w"), Of(R(1), "y")});
     },
     0.125f, 0.0f},
    {"pow_negative", kFrom2,
     [](W& w) {
         w.Op(kPow, R(0), {Minus(Of(R(2), "w")), Of(R(2), "y")});
     }},
    {"crs", kFrom2,
     [](W& w) {
         Preset(w).Op(kCrs, To(R(0), "xyz"), {R(1), R(2)});
     },
     0.2f, 0.5f},
    {"nrm", kFrom2, [](W& w) { w.Op(kNrm, R(0), {R(2)}); }, 0.75f, 0.0f},
    {"abs", kFrom2, [](W& w) { w.Op(kAbs, R(0), {R(1)}); }, 0.5f, 0.0f},
    {"sgn", kVs20,
     [](W& w) {
         w.Op(kSgn, R(0), {R(1), R(4), R(5)});
     },
     0.5f, 0.5f},
    {"sgn", kVs30, [](W& w) { w.Op(kSgn, R(0), {R(1)}); }, 0.5f, 0.5f},
    {"sincos", kVs20 | kPs20 | kPs2x,
     [](W& w) {
         Preset(w).Op(kSinCos, To(R(0), "xy"), {Of(R(1), "x"), C(8), C(9)});
     },
     0.5f, 0.5f},
    {"sincos", kVs30 | kPs30, [](W& w) { Preset(w).Op(kSinCos, To(R(0), "xy"), {Of(R(1), "x")}); },
     0.5f, 0.5f},
    {"m4x4", kBoth,
     [](W& w) {
         w.Op(kM4x4, R(0), {R(1), C(4)});
     },
     0.5f, 0.5f},
    {"m4x3", kBoth,
     [](W& w) {
         Preset(w).Op(kM4x3, To(R(0), "xyz"), {R(1), C(4)});
     },
     0.5f, 0.5f},
    {"m3x4", kBoth,
     [](W& w) {
         w.Op(kM3x4, R(0), {R(1), C(4)});
     },
     0.5f, 0.5f},
    {"m3x3", kBoth,
     [](W& w) {
         Preset(w).Op(kM3x3, To(R(0), "xyz"), {R(1), C(4)});
     },
     0.5f, 0.5f},
    {"m3x2", kBoth,
     [](W& w) {
         Preset(w).Op(kM3x2, To(R(0), "xy"), {R(1), C(4)});
     },
     0.5f, 0.5f},
    {"cmp", kPixel,
     [](W& w) {
         w.Op(kCmp, R(0), {R(1), R(2), C(1)});
     }},
    {"dp2add", kPixel,
     [](W& w) {
         w.Op(kDp2Add, R(0), {R(1), R(2), Of(C(0), "z")});
     },
     0.2f, 0.3f},
    {"dsx", kPs2x | kPs30,
     [](W& w) {
         w.Op(kMul, R(0), {R(1), R(1)}).Op(kDsx, R(0), {R(0)});
     },
     2.0f, 0.5f},
    {"dsy", kPs2x | kPs30,
     [](W& w) {
         w.Op(kMul, R(0), {R(1), R(1)}).Op(kDsy, R(0), {R(0)});
     },
     2.0f, 0.5f},
};

const std::vector<InstructionRow> kModifiers = {
    {"negated", kBoth, [](W& w) { w.Op(kMov, R(0), {Minus(R(1))}); }, 0.25f, 0.5f},
    {"absolute", kVs30 | kPs30, [](W& w) { w.Op(kMov, R(0), {With(R(1), kAbsolute)}); }, 0.5f},
    {"absolute_negated", kVs30 | kPs30,
     [](W& w) { w.Op(kMov, R(0), {With(R(1), kAbsoluteNegate)}); }, 0.5f, 1.0f},
    {"saturated", kVs30 | kPixel, [](W& w) { w.Op(kMov, Modified(R(0), 1), {R(1)}); }, 0.5f, 0.25f},
    {"saturated_mad", kPixel,
     [](W& w) {
         w.Op(kMad, Modified(R(0), 1), {R(1), R(2), C(0)});
     },
     0.5f, 0.25f},
    {"partial_precision", kPs20,
     [](W& w) {
         w.Op(kMul, Modified(R(0), 2), {R(1), R(2)});
     },
     0.25f, 0.5f},
    {"all_x", kVs11 | kPs20, [](W& w) { w.Op(kMov, R(0), {Of(R(1), "x")}); }, 0.25f, 0.5f},
    {"all_y", kVs11 | kPs20, [](W& w) { w.Op(kMov, R(0), {Of(R(1), "y")}); }, 0.25f, 0.5f},
    {"all_z", kVs11 | kPs20, [](W& w) { w.Op(kMov, R(0), {Of(R(1), "z")}); }, 0.25f, 0.5f},
    {"all_w", kVs11 | kPs20, [](W& w) { w.Op(kMov, R(0), {Of(R(1), "w")}); }, 0.25f, 0.0f},
    {"yzxw", kVs20 | kPs20, [](W& w) { w.Op(kMov, R(0), {Of(R(1), "yzxw")}); }, 0.25f, 0.5f},
    {"zxyw", kVs20 | kPs20, [](W& w) { w.Op(kMov, R(0), {Of(R(1), "zxyw")}); }, 0.25f, 0.5f},
    {"wzyx", kVs20 | kPs20, [](W& w) { w.Op(kMov, R(0), {Of(R(1), "wzyx")}); }, 0.25f, 0.25f},
    {"ywxz", kVs11 | kPs2x | kPs30, [](W& w) { w.Op(kMov, R(0), {Of(R(1), "ywxz")}); }, 0.25f,
     0.25f},
    {"mask_x", kVs11 | kPs20, [](W& w) { Preset(w).Op(kMov, To(R(0), "x"), {R(2)}); }},
    {"mask_y", kVs11 | kPs20, [](W& w) { Preset(w).Op(kMov, To(R(0), "y"), {R(2)}); }},
    {"mask_z", kVs11 | kPs20, [](W& w) { Preset(w).Op(kMov, To(R(0), "z"), {R(2)}); }},
    {"mask_xz", kVs20 | kPs30,
     [](W& w) {
         Preset(w).Op(kMul, To(R(0), "xz"), {R(2), R(2)});
     }},
    {"mask_yw_swizzled", kVs20 | kPs30,
     [](W& w) {
         Preset(w).Op(kAdd, To(R(0), "yw"), {Of(R(2), "wzyx"), C(1)});
     },
     0.5f},
    {"scalar_of_w", kVs20 | kPs30,
     [](W& w) { Preset(w).Op(kRcp, To(R(0), "y"), {Of(R(1), "w")}); }},
    {"colour_input", kBoth, [](W& w) { w.Op(kMov, R(0), {R(3)}); }},
};

std::vector<PictureProgram> AllInstructionPictures()
{
    std::vector<PictureProgram> all;
    for (const auto* rows : {&kArithmetic, &kModifiers}) {
        const std::vector<PictureProgram> some = InstructionPictures(*rows);
        all.insert(all.end(), some.begin(), some.end());
    }
    return all;
}

} // namespace

const std::vector<PictureProgram> kArithmeticPictures = AllInstructionPictures();
