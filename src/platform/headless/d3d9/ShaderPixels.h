#pragma once

#include "platform/headless/d3d9/PixelProgram.h"
#include "platform/headless/d3d9/ShaderTexture.h"

namespace headless {

/// Shades pixels by a pixel shader, in blocks of two rows of four pixels. Rows come from the top of a
/// primitive to its bottom, and two rows of one block are shaded together.
class ShaderPixels {
public:
    /// `state` and `program` outlive the draw. `budget` is the work left for it.
    HRESULT Prepare(const DrawState& state, const PixelProgram& program, uint64_t budget);

    /// The pixels left <= x < right of a row of the current primitive.
    void AddRow(const Planes& planes, int y, int left, int right);
    /// Ends the primitive.
    void Finish(const Planes& planes);
    /// Which side of the triangle that follows is seen.
    void SetFace(bool isFront) { isFrontFace = isFront; }

    uint64_t Work() const { return machine.work; }

private:
    struct Row {
        int left = 0;
        int right = 0; ///< none if not above `left`
    };
    /// Two rows of four pixels, with what is known of each.
    struct Block {
        int x, y;
        int lanes[2];
        Lanes w[2];
        Lanes fromOrigin;
        Lanes depth[2];
        IntLanes steps[2];
    };
    static constexpr int kMaxBlocks = shader::kMaxGroups / 2;

    void EndRows(const Planes& planes);
    void ShadeRows(const Planes& planes, int y, const Row (&rows)[2]);
    bool StartBlock(const Planes& planes, int x, int y, const Row (&rows)[2]);
    void StartGroup(const Planes& planes, Block& block, int row);
    void LoadInputs(const Planes& planes, int index);
    void LoadSpecial(int index);
    void ShadeBlocks(const Planes& planes);
    void WriteGroup(const Planes& planes, Block& block, int index, int row);
    bool PassesTests(Block& block, int group, int row, Rgba4& colour);

    const PixelProgram* program = nullptr; ///< not owned
    shader::Program* code = nullptr;       ///< not owned
    shader::Machine machine;
    ShaderTextures textures;
    bool testsEarly = false; ///< no later step can change the depth
    bool writesEarly = false;
    bool isFrontFace = true;
    bool hasColour = false;
    uint32_t colourPlace = 0;
    uint64_t budget = 0;
    int pendingY = 0;
    Row pending[2];
    Block blocks[kMaxBlocks];
    int blockCount = 0;
};

} // namespace headless
