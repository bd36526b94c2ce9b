#pragma once

#include "platform/headless/d3d9/ColourLanes.h"
#include "platform/headless/d3d9/Prefetch.h"
#include "platform/headless/d3d9/SpanShader.h"
#include "platform/headless/d3d9/SpanStages.h"

namespace headless {

/// The inner loop, from interpolation to the target, for one form of lanes (FourLanes.inc, EightLanes.h).
template <typename F>
class SpanKernel final : public SpanShader {
public:
    void Prepare(const PixelProgram& pixelProgram) override
    {
        program = &pixelProgram;
        stages.Prepare(program->stages);
        const OutputMerger& output = program->output;
        blender = output.blends ? Blender<F>(output.colour, output.alpha, output.blendConstant)
                                : Blender<F>();
        waiting = 0;
    }

    void AddRow(const Planes& planes, int y, int left, int right) override
    {
        PrefetchAhead(*program, y, left, right);
        if (waiting > 0 && y != top + waiting)
            Finish(planes);
        if (waiting == 0)
            top = y;
        const int row = F::kRows == 1 ? 0 : waiting;
        lefts[row] = left;
        rights[row] = right;
        if (++waiting == F::kRows)
            Finish(planes);
    }

    void Finish(const Planes& planes) override
    {
        if (waiting == 0)
            return;
        int left = lefts[0], right = rights[0];
        for (int i = 1; i < F::kRows; ++i) {
            if (i >= waiting)
                lefts[i] = rights[i] = left;
            left = lefts[i] < left ? lefts[i] : left;
            right = rights[i] > right ? rights[i] : right;
        }
        RowStart<F> rows;
        StartRows(planes, rows);
        for (int x = left; x < right; x += 4) {
            SpanPixels<F> pixels = Start(planes, rows, x);
            Shade(pixels);
        }
        waiting = 0;
    }

private:
    void StartRows(const Planes& planes, RowStart<F>& rows) const
    {
        float downs[F::kRows];
        for (int i = 0; i < F::kRows; ++i)
            downs[i] = static_cast<float>(top + i) - planes.originY;
        const auto down = F::OfRows(downs);
        const auto start = [down](float at, float dy) {
            return F::Splat(at) + down * F::Splat(dy);
        };
        rows.depth = start(planes.depth.at, planes.depth.dy);
        rows.reciprocalW = start(planes.reciprocalW.at, planes.reciprocalW.dy);
        for (int i = 0; i < program->varyings.count; ++i)
            rows.varying[i] = start(planes.at[i], planes.dy[i]);
        rows.bias = program->depth.BiasOf(planes);
    }

    SpanPixels<F> Start(const Planes& planes, const RowStart<F>& rows, int x) const
    {
        SpanPixels<F> pixels;
        pixels.rows = &rows;
        pixels.planes = &planes;
        pixels.x = x;
        pixels.y = top;
        const int inPicture = program->output.width - x;
        int before[F::kRows], end[F::kRows];
        for (int i = 0; i < F::kRows; ++i) {
            before[i] = lefts[i] - x - 1;
            end[i] = rights[i] - x;
            pixels.counts[i] = i >= waiting ? 0 : (inPicture < 4 ? inPicture : 4);
        }
        const auto column = F::WholeColumns();
        pixels.mask = IsGreater(column, F::OfRows(before)) & IsLess(column, F::OfRows(end));
        pixels.fromOrigin = F::Splat(static_cast<float>(x) - planes.originX) + F::Columns();
        const auto value = [&](auto start, float slope) {
            return start + pixels.fromOrigin * F::Splat(slope);
        };
        pixels.depth = Saturate(value(rows.depth, planes.depth.dx) + F::Splat(rows.bias));
        // 1/w is positive inside a primitive, but lines and pixels past the edge may lie outside it.
        pixels.w =
            F::Splat(1.0f) / Max(value(rows.reciprocalW, planes.reciprocalW.dx), F::Splat(1e-30f));
        return pixels;
    }

    void Shade(SpanPixels<F>& pixels)
    {
        if (!program->depth.isOn) {
            if (LaneBits(pixels.mask) != 0)
                Draw(pixels, [](auto) {});
            return;
        }
        const DepthTest& test = program->depth;
        PixelWindow<F> window(test.rows, pixels.x, pixels.y, pixels.counts);
        const auto steps = StepsOf<F>(test, pixels.depth, pixels.w);
        pixels.mask = TestSteps<F>(test, window, steps, pixels.mask);
        if (LaneBits(pixels.mask) == 0)
            return;
        const auto store = [&](auto mask) {
            if (!test.writes)
                return;
            StoreSteps<F>(test, window, steps, mask);
            window.Close();
        };
        // Without an alpha test no later step can drop a pixel.
        if (program->output.testsAlpha) {
            Draw(pixels, store);
        } else {
            store(pixels.mask);
            Draw(pixels, [](auto) {});
        }
    }

    /// `storeDepth` takes the pixels that pass the alpha test.
    template <typename Store>
    void Draw(SpanPixels<F>& pixels, Store storeDepth)
    {
        const VaryingLayout& varyings = program->varyings;
        if (varyings.diffuse >= 0)
            stages.diffuse = pixels.Colour(varyings.diffuse);
        if (varyings.specular >= 0)
            stages.specular = pixels.Colour(varyings.specular);
        Rgba<F>& colour = stages.Run(pixels);
        if (program->output.testsAlpha) {
            pixels.mask = TestAlphaOf<F>(program->output, colour.c[3], pixels.mask);
            if (LaneBits(pixels.mask) == 0)
                return;
            storeDepth(pixels.mask);
        }
        for (int c = 0; program->addsSpecular && c < 3; ++c)
            colour.c[c] = Saturate(colour.c[c] + stages.specular.c[c]);
        if (program->fog.source != FogSource::None)
            MixFog<F>(program->fog, FogFactor(pixels), colour);
        PixelWindow<F> window(program->output.rows, pixels.x, pixels.y, pixels.counts);
        Merge<F>(program->output, blender, window, colour, pixels.mask);
        window.Close();
    }

    typename F::Floats FogFactor(const SpanPixels<F>& pixels) const
    {
        return program->fog.source == FogSource::Vertex
                   ? Saturate(pixels.Linear(program->varyings.fog) * pixels.w)
                   : FogFactorsOf<F>(program->fog, pixels.depth, pixels.w);
    }

    const PixelProgram* program = nullptr; ///< not owned
    SpanStages<F> stages;
    Blender<F> blender;
    int top = 0;     ///< the first row that waits
    int waiting = 0; ///< rows
    int lefts[F::kRows] = {}, rights[F::kRows] = {};
};

} // namespace headless
