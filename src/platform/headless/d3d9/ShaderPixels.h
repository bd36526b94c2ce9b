#pragma once

#include "platform/headless/d3d9/PixelProgram.h"
#include "platform/headless/d3d9/ShaderTexture.h"

namespace headless {

/// Shades pixels by a pixel shader, in blocks of two rows of four pixels. Rows come from the top of a
/// primitive to its bottom, and two rows of one block are shaded together. Where nothing forbids it,
/// blocks of several primitives wait for each other, so that the program runs on many pixels.
class ShaderPixels {
public:
    /// `state` and `program` outlive the draw. `budget` is the work left for it.
    virtual HRESULT Prepare(const DrawState& state, const PixelProgram& program,
                            uint64_t budget) = 0;
    /// The pixels left <= x < right of a row of the current primitive.
    virtual void AddRow(const Planes& planes, int y, int left, int right) = 0;
    /// Ends the primitive.
    virtual void Finish(const Planes& planes) = 0;
    /// Ends the draw.
    virtual void Flush() = 0;
    /// Which side of the triangle that follows is seen.
    void SetFace(bool isFront) { isFrontFace = isFront; }

    /// Whether blocks of several primitives may wait for each other.
    bool Gathers() const { return gathers; }
    uint64_t Work() const { return machine.work; }

protected:
    ~ShaderPixels() = default;

    /// An input component that the program reads.
    struct Input {
        int varying;
        float* at; ///< of the first group
        bool isHeld;
    };

    HRESULT PrepareProgram(const DrawState& state, const PixelProgram& program, uint64_t budget,
                           bool isEight);

    const PixelProgram* program = nullptr; ///< not owned
    shader::Program* code = nullptr;       ///< not owned
    shader::Machine machine;
    Input inputs[kMaxShaderInputs * 4];
    int inputCount = 0;
    bool testsEarly = false; ///< no later step can change the depth
    bool writesEarly = false;
    bool gathers = false;
    bool isFrontFace = true;
    const float* colour = nullptr; ///< red of the first group; null if the program writes no colour
    uint64_t budget = 0;

private:
    void FindInputs();

    ShaderTextures textures;
};

// One of each kind serves the whole process, like those of SpanShader.h. They give the same bits.

/// Shades four pixels at a time.
ShaderPixels* FourShaderPixels();
/// Eight at a time; null if this processor or this build cannot.
ShaderPixels* EightShaderPixels();

} // namespace headless
