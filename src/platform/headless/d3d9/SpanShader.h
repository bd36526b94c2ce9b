#pragma once

#include "platform/headless/d3d9/PixelProgram.h"

namespace headless {

/// Shades and writes the pixels of a draw without a pixel shader. Rows come from the top of a primitive to
/// its bottom and may wait for their neighbours until the primitive ends.
class SpanShader {
public:
    /// `program` outlives the draw.
    virtual void Prepare(const PixelProgram& program) = 0;
    /// The pixels left <= x < right, at least one, of a row in the program's area.
    virtual void AddRow(const Planes& planes, int y, int left, int right) = 0;
    /// Ends the primitive.
    virtual void Finish(const Planes& planes) = 0;

protected:
    ~SpanShader() = default;
};

// One of each kind serves the whole process: there is one thread, and each draw prepares it. They give the
// same bits.

/// Shades four pixels at a time.
SpanShader* FourSpanShader();
/// Eight at a time; null if this processor or this build cannot.
SpanShader* EightSpanShader();

} // namespace headless
