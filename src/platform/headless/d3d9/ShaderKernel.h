#pragma once

#include "platform/headless/d3d9/ColourLanes.h"
#include "platform/headless/d3d9/Prefetch.h"
#include "platform/headless/d3d9/ShaderPixels.h"

namespace headless {

/// The pixels of shaders for one form of lanes (FourLanes.inc, EightLanes.h).
template <typename F>
class ShaderKernel final : public ShaderPixels {
public:
    HRESULT Prepare(const DrawState& state, const PixelProgram& pixelProgram,
                    uint64_t workLeft) override
    {
        const OutputMerger& output = pixelProgram.output;
        blender = output.blends ? Blender<F>(output.colour, output.alpha, output.blendConstant)
                                : Blender<F>();
        rows[0] = rows[1] = {};
        blockCount = 0;
        return PrepareProgram(state, pixelProgram, workLeft, F::kRows == 2);
    }

    void AddRow(const Planes& planes, int y, int left, int right) override
    {
        if (left < right)
            PrefetchAhead(*program, y, left, right);
        const int top = y & ~1;
        if (top != topRow || rows[y & 1].left < rows[y & 1].right)
            EndRows(planes);
        topRow = top;
        rows[y & 1] = {left, right};
    }

    void Finish(const Planes& planes) override
    {
        EndRows(planes);
        if (!gathers)
            ShadeBlocks();
    }

    void Flush() override { ShadeBlocks(); }

private:
    using Floats = typename F::Floats;
    using Ints = typename F::Ints;

    static constexpr int kParts = 2 / F::kRows; ///< of a block
    static constexpr int kMaxBlocks = shader::kMaxGroups / 2;

    struct Row {
        int left = 0;
        int right = 0; ///< none if not above `left`
    };
    /// What is known of pixels before the program runs.
    struct Part {
        int x, y;             ///< of the first one
        int counts[F::kRows]; ///< pixels of each row that are in the picture
        Ints mask;            ///< those still to be drawn
        Floats w;
        Floats depth;
        Ints steps;
        Floats fogFactor;
    };
    /// Two rows of four pixels.
    struct Block {
        Part parts[kParts];
    };

    /// Starts the blocks of the two rows; the program runs when there is no room for another one.
    void EndRows(const Planes& planes)
    {
        const bool hasFirst = rows[0].left < rows[0].right, hasLast = rows[1].left < rows[1].right;
        if (!hasFirst && !hasLast)
            return;
        const Row &first = rows[hasFirst ? 0 : 1], &last = rows[hasLast ? 1 : 0];
        const int left = first.left < last.left ? first.left : last.left;
        const int right = first.right > last.right ? first.right : last.right;
        RowStart<F> starts[kParts];
        for (int i = 0; i < kParts; ++i)
            StartRows(planes, topRow + i, starts[i]);
        for (int x = left & ~1; x < right && machine.work < budget; x += 4)
            if (StartBlock(planes, starts, x) && ++blockCount == kMaxBlocks)
                ShadeBlocks();
        rows[0] = rows[1] = {};
    }

    void StartRows(const Planes& planes, int y, RowStart<F>& start) const
    {
        float downs[F::kRows];
        for (int i = 0; i < F::kRows; ++i)
            downs[i] = static_cast<float>(y + i) - planes.originY;
        const Floats down = F::OfRows(downs);
        const auto value = [down](float at, float dy) {
            return F::Splat(at) + down * F::Splat(dy);
        };
        start.depth = value(planes.depth.at, planes.depth.dy);
        start.reciprocalW = value(planes.reciprocalW.at, planes.reciprocalW.dy);
        for (int i = 0; i < program->varyings.count; ++i)
            start.varying[i] = value(planes.at[i], planes.dy[i]);
        start.bias = program->depth.BiasOf(planes);
    }

    /// False if no pixel of the block is left to draw.
    bool StartBlock(const Planes& planes, const RowStart<F> (&starts)[kParts], int x)
    {
        const Floats fromOrigin = F::Splat(static_cast<float>(x) - planes.originX) + F::Columns();
        bool isSeen = false;
        for (int i = 0; i < kParts; ++i) {
            Part& part = blocks[blockCount].parts[i];
            SetPlace(x, topRow + i, part);
            StartPart(planes, starts[i], fromOrigin, part);
            isSeen = LaneBits(part.mask) != 0 || isSeen;
        }
        for (int i = 0; isSeen && i < kParts; ++i)
            LoadInputs(planes, starts[i], fromOrigin, i);
        return isSeen;
    }

    /// The pixels of the part, and which of them are in the rows.
    void SetPlace(int x, int y, Part& part) const
    {
        part.x = x;
        part.y = y;
        const int inPicture = program->output.width - x;
        int before[F::kRows], end[F::kRows];
        for (int i = 0; i < F::kRows; ++i) {
            const Row& row = rows[(y + i) & 1];
            before[i] = row.left - x - 1;
            end[i] = row.right - x;
            part.counts[i] = row.left < row.right ? (inPicture < 4 ? inPicture : 4) : 0;
        }
        const Ints column = F::WholeColumns();
        part.mask = IsGreater(column, F::OfRows(before)) & IsLess(column, F::OfRows(end));
    }

    void StartPart(const Planes& planes, const RowStart<F>& start, Floats fromOrigin, Part& part)
    {
        const auto value = [&](Floats first, float slope) {
            return first + fromOrigin * F::Splat(slope);
        };
        // 1/w is positive inside a primitive, but helper pixels may lie outside it.
        part.w =
            F::Splat(1.0f) / Max(value(start.reciprocalW, planes.reciprocalW.dx), F::Splat(1e-30f));
        part.depth = Saturate(value(start.depth, planes.depth.dx) + F::Splat(start.bias));
        if (program->fog.source == FogSource::Vertex) {
            const int fog = program->varyings.fog;
            part.fogFactor = Saturate(value(start.varying[fog], planes.dx[fog]) * part.w);
        }
        if (!testsEarly || LaneBits(part.mask) == 0)
            return;
        part.steps = StepsOf<F>(program->depth, part.depth, part.w);
        TestDepth(part);
        if (writesEarly)
            WriteDepth(part);
    }

    void TestDepth(Part& part) const
    {
        const PixelWindow<F> window(program->depth.rows, part.x, part.y, part.counts);
        part.mask = TestSteps<F>(program->depth, window, part.steps, part.mask);
    }

    void WriteDepth(const Part& part) const
    {
        if (LaneBits(part.mask) == 0)
            return;
        PixelWindow<F> window(program->depth.rows, part.x, part.y, part.counts);
        StoreSteps<F>(program->depth, window, part.steps, part.mask);
        window.Close();
    }

    /// Where part `part` of block `block` has its lanes in each register, in floats.
    static int LanesAt(int block, int part) { return block * 8 + part * F::kCount; }

    void LoadInputs(const Planes& planes, const RowStart<F>& start, Floats fromOrigin, int index)
    {
        const Part& part = blocks[blockCount].parts[index];
        const int at = LanesAt(blockCount, index);
        for (int i = 0; i < inputCount; ++i) {
            const Input& input = inputs[i];
            const Floats value =
                (start.varying[input.varying] + fromOrigin * F::Splat(planes.dx[input.varying])) *
                part.w;
            F::Store(input.at + at, input.isHeld ? Saturate(value) : value);
        }
        if (code->readsPosition || code->readsFace)
            LoadSpecial(part, at);
    }

    /// vPos and vFace.
    void LoadSpecial(const Part& part, int at)
    {
        constexpr int kComponent = shader::kMaxGroups * 4;
        if (code->readsPosition) {
            float* position = reinterpret_cast<float*>(machine.At(code->position)) + at;
            float ys[F::kRows];
            for (int i = 0; i < F::kRows; ++i)
                ys[i] = static_cast<float>(part.y + i);
            F::Store(position, F::Splat(static_cast<float>(part.x)) + F::Columns());
            F::Store(position + kComponent, F::OfRows(ys));
        }
        float* face = reinterpret_cast<float*>(machine.At(code->face)) + at;
        for (int c = 0; code->readsFace && c < 4; ++c)
            F::Store(face + c * kComponent, F::Splat(isFrontFace ? 1.0f : -1.0f));
    }

    void ShadeBlocks()
    {
        if (blockCount == 0)
            return;
        machine.Run(blockCount * 2);
        for (int i = 0; i < blockCount; ++i)
            for (int part = 0; part < kParts; ++part)
                if (LaneBits(blocks[i].parts[part].mask) != 0)
                    WritePart(blocks[i].parts[part], LanesAt(i, part));
        blockCount = 0;
    }

    /// What can still drop a pixel after the program has run, and the depth that follows from it.
    bool PassesTests(Part& part, int at, Floats alpha)
    {
        const DepthTest& test = program->depth;
        if (code->canKill) {
            const Floats killed =
                F::Load(reinterpret_cast<const float*>(machine.At(code->kill)) + at);
            part.mask = AsInts(AndNot(killed, AsFloats(part.mask)));
        }
        if (program->output.testsAlpha)
            part.mask = TestAlphaOf<F>(program->output, alpha, part.mask);
        if (LaneBits(part.mask) == 0 || !test.isOn || writesEarly)
            return LaneBits(part.mask) != 0;
        if (code->writesDepth) {
            part.depth =
                Saturate(F::Load(reinterpret_cast<const float*>(machine.At(code->depth)) + at));
            part.steps = StepsOf<F>(test, part.depth, part.w);
            TestDepth(part);
        }
        if (test.writes)
            WriteDepth(part);
        return LaneBits(part.mask) != 0;
    }

    void WritePart(Part& part, int at)
    {
        Rgba<F> pixels = SplatRgba<F>({0.0f, 0.0f, 0.0f, 0.0f});
        for (int c = 0; colour && c < 4; ++c)
            pixels.c[c] = F::Load(colour + c * shader::kMaxGroups * 4 + at);
        if (!PassesTests(part, at, pixels.c[3]))
            return;
        const PixelFog& fog = program->fog;
        if (fog.source != FogSource::None) {
            for (Floats& channel : pixels.c)
                channel = Saturate(channel);
            MixFog<F>(fog,
                      fog.source == FogSource::Vertex ? part.fogFactor
                                                      : FogFactorsOf<F>(fog, part.depth, part.w),
                      pixels);
        }
        PixelWindow<F> window(program->output.rows, part.x, part.y, part.counts);
        Merge<F>(program->output, blender, window, pixels, part.mask);
        window.Close();
    }

    Blender<F> blender;
    int topRow = 0; ///< of the two that wait
    Row rows[2];
    Block blocks[kMaxBlocks];
    int blockCount = 0;
};

} // namespace headless
