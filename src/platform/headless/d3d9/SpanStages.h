#pragma once

#include "platform/headless/d3d9/PixelProgram.h"
#include "platform/headless/d3d9/StageArithmetic.h"
#include "platform/headless/d3d9/StageSampling.h"

namespace headless {

/// The texture stages of a draw, resolved for one form of lanes: the function of each operation, and a
/// place of its own for each result, so that the places of all arguments are known before the first
/// pixel.
template <typename F>
class SpanStages {
public:
    /// `stages` outlives the draw.
    void Prepare(const StagePrograms& stages)
    {
        factor = SplatRgba<F>(stages.factor);
        none = SplatRgba<F>({0.0f, 0.0f, 0.0f, 0.0f});
        black = SplatRgba<F>({0.0f, 0.0f, 0.0f, 1.0f});
        current = &diffuse;
        temporary = &none;
        count = stages.count;
        for (int i = 0; i < count; ++i) {
            codes[i].bumping = i > 0 && stages.stages[i - 1].bump != BumpKind::None
                                   ? &stages.stages[i - 1]
                                   : nullptr;
            PrepareStage(stages.stages[i], codes[i]);
        }
    }

    /// The colour after all stages, which may be changed.
    Rgba<F>& Run(const SpanPixels<F>& pixels)
    {
        for (int i = 0; i < count; ++i)
            RunStage(codes[i], pixels);
        return *current;
    }

    Rgba<F> diffuse;
    Rgba<F> specular;

private:
    /// An operation and where its arguments are.
    struct Operation {
        StageFunction<F> run = nullptr; ///< null to pass the current value through
        OperationInput<F> input = {};
        bool isAnyModified = false;
        const Rgba<F>* registers[3] = {};
        StageArgument arguments[3];
        Rgba<F> modified[3];
    };
    struct Code {
        const StageProgram* stage = nullptr;
        const StageProgram* bumping = nullptr; ///< the stage before, if it moves the coordinates
        SampleFunction<F> sample = nullptr;
        const Rgba<F>* before = nullptr; ///< the current colour
        const Rgba<F>* passed = nullptr; ///< what an operation that does nothing gives
        Operation colour, alpha;
        Rgba<F> constant;
        Rgba<F> texture;
        Rgba<F> premodulated;
        Rgba<F> result;
    };

    const Rgba<F>* Register(const Code& code, int source) const
    {
        const Rgba<F>* const registers[] = {
            &diffuse,  current,       code.sample ? &code.texture : &black, &factor, &specular,
            temporary, &code.constant};
        return registers[source];
    }

    void PrepareOperation(const StageOperation& operation, StageFunction<F> run, const Code& code,
                          Operation& out) const
    {
        out.run = run;
        out.isAnyModified = false;
        for (int i = 0; i < 3; ++i) {
            const StageArgument& argument = operation.arguments[i];
            const bool isModified = argument.isComplement || argument.isAlphaReplicate;
            out.arguments[i] = argument;
            out.registers[i] = Register(code, argument.source);
            out.input.arguments[i] = isModified ? &out.modified[i] : out.registers[i];
            out.isAnyModified = out.isAnyModified || isModified;
        }
        out.input.share = &Register(code, operation.shareFrom)->c[3];
    }

    void PrepareStage(const StageProgram& stage, Code& code)
    {
        code.stage = &stage;
        code.sample = stage.samples ? FindSampling<F>(stage.sampler) : nullptr;
        code.constant = SplatRgba<F>(stage.constant);
        code.before = current;
        if (stage.isPremodulated)
            current = &code.premodulated;
        code.passed = current;
        const auto ofColour = FunctionsOf<F>(stage.colour.operation).colour;
        const auto ofAlpha = FunctionsOf<F>(stage.alpha.operation).alpha;
        PrepareOperation(stage.colour, ofColour, code, code.colour);
        PrepareOperation(stage.alpha, stage.doublesAsAlpha ? nullptr : ofAlpha, code, code.alpha);
        Rgba<F>* result = code.colour.run || code.alpha.run ? &code.result : current;
        (stage.writesTemp ? temporary : current) = result;
    }

    static void RunOperation(Operation& operation, Rgba<F>& out)
    {
        for (int i = 0; operation.isAnyModified && i < 3; ++i) {
            const StageArgument& argument = operation.arguments[i];
            for (int c = 0; c < 4; ++c) {
                const auto channel = operation.registers[i]->c[argument.isAlphaReplicate ? 3 : c];
                operation.modified[i].c[c] = argument.isComplement ? OneMinus(channel) : channel;
            }
        }
        operation.run(operation.input, out);
    }

    /// Moves coordinates by the bump map of the stage before.
    template <typename Place>
    void Move(const Code& code, Place& at) const
    {
        if (!code.bumping)
            return;
        at.u = at.u + bump.u;
        at.v = at.v + bump.v;
    }

    /// The texture, moved and darkened by the bump map of the stage before.
    void Sample(Code& code, const SpanPixels<F>& pixels)
    {
        if (code.stage->needsFootprint) {
            TextureFootprint<F> footprint = FootprintOfStage(*code.stage, pixels);
            Move(code, footprint.at);
            code.texture = SampleFootprint<F>(code.stage->sampler, footprint, F::Splat(0.0f),
                                              LaneBits(pixels.mask));
        } else {
            StageCoordinates<F> at = CoordinatesOf(*code.stage, pixels);
            Move(code, at);
            code.texture =
                code.sample(code.stage->sampler, at.u, at.v, at.level, LaneBits(pixels.mask));
        }
        if (code.bumping && code.bumping->bump == BumpKind::OffsetsAndLuminance)
            for (int c = 0; c < 3; ++c)
                code.texture.c[c] = code.texture.c[c] * bump.luminance;
    }

    void RunStage(Code& code, const SpanPixels<F>& pixels)
    {
        if (code.sample)
            Sample(code, pixels);
        if (code.stage->bump != BumpKind::None)
            bump = MakeBump(*code.stage, code.texture);
        for (int c = 0; code.stage->isPremodulated && c < 4; ++c)
            code.premodulated.c[c] = code.before->c[c] * code.texture.c[c];
        if (code.colour.run)
            RunOperation(code.colour, code.result);
        else if (code.alpha.run)
            code.result = *code.passed;
        if (code.alpha.run)
            RunOperation(code.alpha, code.result);
        else if (code.colour.run && !code.stage->doublesAsAlpha)
            code.result.c[3] = code.passed->c[3];
    }

    Rgba<F> factor, none, black;
    Rgba<F>* current = nullptr; ///< where the colour is after the stages so far
    Rgba<F>* temporary = nullptr;
    BumpOf<F> bump;
    int count = 0;
    Code codes[kStageCount];
};

} // namespace headless
