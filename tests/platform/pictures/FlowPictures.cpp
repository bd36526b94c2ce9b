// Flow control and relative addressing, each rule alone.

#include "tests/platform/pictures/ShaderStage.h"

namespace {

constexpr unsigned kStatic = kVs20 | kVs30 | kPs2x | kPs30;
constexpr unsigned kDynamic = kVs2x | kVs30 | kPs2x | kPs30;

using W = ShaderWords;

const std::vector<InstructionRow> kFlow = {
    {"if_true", kStatic,
     [](W& w) { w.Op(kMov, R(0), {C(1)}).Flow(kIf, {B(0)}).Op(kMov, R(0), {R(2)}).Flow(kEndIf); }},
    {"if_false_else", kStatic,
     [](W& w) {
         w.Flow(kIf, {B(1)}).Op(kMov, R(0), {C(1)});
         w.Flow(kElse).Op(kMul, R(0), {R(2), R(2)}).Flow(kEndIf);
     }},
    {"if_nested", kStatic,
     [](W& w) {
         w.Op(kMov, R(0), {C(1)}).Flow(kIf, {B(0)}).Flow(kIf, {B(1)}).Op(kMov, R(0), {R(1)});
         w.Flow(kElse).Op(kAdd, R(0), {R(0), R(2)}).Flow(kEndIf);
         w.Op(kMul, R(0), {R(0), R(2)}).Flow(kEndIf);
     }},
    {"if_compared", kDynamic,
     [](W& w) {
         w.Flow(kIfc | kGt << 16, {Of(R(1), "x"), Of(C(2), "w")}).Op(kMov, R(0), {C(1)});
         w.Flow(kElse).Op(kMov, R(0), {R(2)}).Flow(kEndIf);
     }},
    {"if_compared_nested", kDynamic,
     [](W& w) {
         w.Op(kMov, R(0), {C(1)}).Flow(kIfc | kLt << 16, {Of(R(1), "x"), Of(R(1), "y")});
         w.Flow(kIfc | kLe << 16, {Of(R(2), "x"), Of(C(3), "y")}).Op(kMov, R(0), {R(2)});
         w.Flow(kElse).Op(kAdd, R(0), {R(0), C(3)}).Flow(kEndIf);
         w.Op(kMul, R(0), {R(0), Of(R(2), "w")}).Flow(kEndIf);
     }},
    {"rep", kStatic,
     [](W& w) {
         w.Op(kMov, R(0), {C(1)})
             .Flow(kRep, {I(0)})
             .Op(kMad, R(0), {R(0), C(3), R(2)})
             .Flow(kEndRep);
     },
     0.5f},
    {"rep_nested", kDynamic,
     [](W& w) {
         w.Op(kMov, R(0), {R(2)}).Flow(kRep, {I(0)}).Op(kAdd, R(0), {R(0), C(1)});
         w.Flow(kRep, {I(1)}).Op(kMul, R(0), {R(0), Of(C(0), "x")}).Flow(kEndRep).Flow(kEndRep);
     }},
    {"rep_compared_break", kDynamic,
     [](W& w) {
         w.Op(kMov, R(0), {R(2)}).Flow(kRep, {I(0)}).Op(kAdd, R(0), {R(0), C(1)});
         w.Flow(kBreakC | kGt << 16, {Of(R(0), "x"), Of(C(0), "z")}).Flow(kEndRep);
     },
     0.5f},
    {"rep_break_in_if", kDynamic,
     [](W& w) {
         w.Op(kMov, R(0), {R(2)}).Flow(kRep, {I(0)});
         w.Flow(kIfc | kGe << 16, {Of(R(0), "y"), Of(C(0), "z")}).Flow(kBreak).Flow(kEndIf);
         w.Op(kAdd, R(0), {R(0), C(1)}).Flow(kEndRep);
     },
     0.5f},
    {"loop_of_constants", kVs20 | kVs30,
     [](W& w) {
         w.Op(kMov, R(0), {R(2)}).Flow(kLoop, {kAL, I(0)});
         w.Op(kAdd, R(0), {R(0), C(3)}).Indexed(kMov, R(4), C(0), kAL);
         w.Op(kMul, R(0), {R(0), R(4)}).Op(kAdd, R(0), {R(0), R(2)}).Flow(kEndLoop);
     },
     0.25f, 0.25f},
    {"loop_of_inputs", kPs30,
     [](W& w) {
         w.Op(kMov, R(0), {C(1)}).Flow(kLoop, {kAL, I(1)});
         w.Indexed(kMov, R(4), V(0), kAL).Op(kMad, R(0), {R(4), Of(C(0), "x"), R(0)});
         w.Flow(kEndLoop);
     },
     0.25f, 0.5f},
    {"loop_of_inputs", kVs30,
     [](W& w) {
         w.Op(kMov, R(0), {C(1)}).Flow(kLoop, {kAL, I(2)});
         w.Indexed(kMov, R(4), V(0), kAL).Op(kMad, R(0), {R(4), Of(C(0), "x"), R(0)});
         w.Flow(kEndLoop);
     },
     0.25f, 0.5f},
    {"loop_with_break", kVs30 | kPs30,
     [](W& w) {
         w.Op(kMov, R(0), {R(2)}).Flow(kLoop, {kAL, I(0)}).Op(kAdd, R(0), {R(0), C(1)});
         w.Flow(kBreakC | kGe << 16, {Of(R(0), "x"), Of(C(0), "z")}).Flow(kEndLoop);
     },
     0.5f},
    {"indexed_constant", kVs11,
     [](W& w) {
         w.Op(kMul, R(4), {R(2), C(10)}).Op(kMov, To(kA0, "x"), {Of(R(4), "x")});
         w.Indexed(kMov, R(0), C(4), Of(kA0, "x")).Op(kAdd, R(0), {R(0), R(2)});
     },
     0.5f, 0.25f},
    {"indexed_constant", kVs20 | kVs30,
     [](W& w) {
         w.Op(kMul, R(4), {R(2), C(10)}).Op(kMovA, To(kA0, "x"), {Of(R(4), "x")});
         w.Indexed(kMov, R(0), C(4), Of(kA0, "x")).Op(kAdd, R(0), {R(0), R(2)});
     },
     0.5f, 0.25f},
    {"indexed_by_w", kVs20 | kVs30,
     [](W& w) {
         w.Op(kMul, R(4), {R(1), Of(C(10), "x")}).Op(kMovA, kA0, {R(4)});
         w.Indexed(kMov, R(0), C(0), Of(kA0, "w")).Op(kAdd, R(0), {R(0), R(2)});
     },
     0.25f, 0.25f},
};

} // namespace

const std::vector<PictureProgram> kFlowPictures = InstructionPictures(kFlow);
