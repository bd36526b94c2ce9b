#include "tests/platform/headless_d3d9/RandomDraw.h"

#include <bit>
#include <limits>

using namespace headless;

namespace {

constexpr DWORD kFormat =
    D3DFVF_XYZRHW | D3DFVF_DIFFUSE | D3DFVF_SPECULAR | D3DFVF_TEX3 | D3DFVF_TEXCOORDSIZE3(2);

} // namespace

RandomDraw::RandomDraw(uint32_t seed) : source(seed)
{
    SetDrawDefaults(state, true);
    state.render[D3DRS_CULLMODE] = D3DCULL_NONE;
    state.render[D3DRS_LIGHTING] = FALSE;
    state.render[D3DRS_SPECULARENABLE] = Below(2);
    state.render[D3DRS_TEXTUREFACTOR] = Word();
    MakePictures();
    const UINT stages = Below(4);
    for (UINT i = 0; i < stages; ++i) {
        if (Below(5) != 0)
            MakeTexture(i);
        SetSampler(i);
        SetStage(i);
    }
    state.stage[stages][D3DTSS_COLOROP] = D3DTOP_DISABLE;
    SetOutput();
    SetDepth();
    SetFog();
    MakeVertices();
}

void RandomDraw::ShadeBy(shader::Program& program)
{
    state.pixelProgram = &program;
    float values[32];
    for (float& value : values)
        value = Between(-1.0f, 1.0f);
    state.pixelConstants.floats.Set(0, values, 8);
}

HRESULT RandomDraw::DrawSome(Rasterizer& rasterizer, UINT firstVertex, UINT count)
{
    VertexLayout layout;
    if (!MakeVertexLayout(kFormat, layout))
        return E_FAIL;
    const VertexStream stream = {reinterpret_cast<const uint8_t*>(vertices.data() + firstVertex),
                                 sizeof(Vertex), static_cast<UINT>(vertices.size()) - firstVertex};
    return rasterizer.Draw(state, layout, {type, count, {}, stream});
}

HRESULT RandomDraw::Draw(Rasterizer& rasterizer)
{
    return DrawSome(rasterizer, 0, primitives);
}

HRESULT RandomDraw::DrawEach(Rasterizer& rasterizer)
{
    HRESULT result = D3D_OK;
    for (UINT i = 0; i < primitives && SUCCEEDED(result); ++i)
        result = DrawSome(rasterizer, i * static_cast<UINT>(CornerCount(type)), 1);
    return result;
}

bool RandomDraw::HasList() const
{
    return type == D3DPT_TRIANGLELIST || type == D3DPT_LINELIST || type == D3DPT_POINTLIST;
}

std::vector<uint8_t> RandomDraw::Pictures() const
{
    std::vector<uint8_t> bytes;
    for (const PixelBuffer* pixels : {&target, &depth})
        bytes.insert(bytes.end(), pixels->bytes.get(),
                     pixels->bytes.get() + pixels->pitchBytes * pixels->height);
    return bytes;
}

unsigned RandomDraw::Below(unsigned count)
{
    return Word() % count;
}

float RandomDraw::Between(float low, float high)
{
    return low + (high - low) * static_cast<float>(Word() >> 8) / 16777216.0f;
}

void RandomDraw::FillRandomly(PixelBuffer& pixels)
{
    for (size_t i = 0; i < pixels.pitchBytes * pixels.height; ++i)
        pixels.bytes[i] = static_cast<uint8_t>(Word());
    ++pixels.changes;
}

void RandomDraw::MakePictures()
{
    const D3DFORMAT targets[] = {D3DFMT_A8R8G8B8, D3DFMT_X8R8G8B8, D3DFMT_R5G6B5};
    const D3DFORMAT depths[] = {D3DFMT_D24X8, D3DFMT_D24S8, D3DFMT_D16, D3DFMT_D32};
    const UINT width = 1 + Below(40), height = 1 + Below(24);
    target.Allocate(*FindPixelFormat(OneOf(targets)), width, height);
    depth.Allocate(*FindPixelFormat(OneOf(depths)), width + Below(3), height);
    FillRandomly(target);
    FillRandomly(depth);
    state.target = &target;
    state.depth = &depth;
    state.viewport = {Below(3), Below(3), width, height, 0.0f, 1.0f};
}

void RandomDraw::MakeTexture(UINT stage)
{
    const D3DFORMAT formats[] = {D3DFMT_A8R8G8B8, D3DFMT_X8R8G8B8, D3DFMT_R5G6B5, D3DFMT_V8U8};
    const PixelFormat& format = *FindPixelFormat(OneOf(formats));
    Texture& texture = textures[stage];
    TexturePicture& picture = texture.picture;
    const UINT width = 1 + Below(17), height = 1 + Below(17), levels = 1 + Below(4);
    const TextureKind kinds[] = {TextureKind::Flat, TextureKind::Flat, TextureKind::Flat,
                                 TextureKind::Cube, TextureKind::Volume};
    picture.kind = OneOf(kinds);
    const bool isCube = picture.kind == TextureKind::Cube;
    picture.depth = picture.kind == TextureKind::Volume ? 1 + Below(5) : 1;
    picture.height = isCube ? width : height;
    texture.levels.resize(isCube ? levels * kCubeFaces : levels);
    for (size_t i = 0; i < texture.levels.size(); ++i) {
        const auto side = [&](UINT ofLevel0) { return std::max(ofLevel0 >> i % levels, 1u); };
        SampledPicture& level = texture.levels[i];
        level.pixels.Allocate(format, side(width), side(picture.height) * side(picture.depth));
        FillRandomly(level.pixels);
        picture.levels.push_back(&level);
    }
    state.pictures[stage] = &picture;
}

void RandomDraw::SetSampler(UINT stage)
{
    auto& sampler = state.sampler[stage];
    sampler[D3DSAMP_ADDRESSU] = 1 + Below(5);
    sampler[D3DSAMP_ADDRESSV] = Below(2) != 0 ? sampler[D3DSAMP_ADDRESSU] : 1 + Below(5);
    sampler[D3DSAMP_ADDRESSW] = 1 + Below(5);
    sampler[D3DSAMP_MAGFILTER] = 1 + Below(2);
    sampler[D3DSAMP_MINFILTER] = Below(2) != 0 ? sampler[D3DSAMP_MAGFILTER] : 1 + Below(2);
    if (Below(6) == 0)
        sampler[D3DSAMP_MINFILTER] = D3DTEXF_ANISOTROPIC;
    sampler[D3DSAMP_MAXANISOTROPY] = Below(18);
    sampler[D3DSAMP_MIPFILTER] = Below(3);
    sampler[D3DSAMP_BORDERCOLOR] = Word();
    sampler[D3DSAMP_SRGBTEXTURE] = Below(8) == 0;
    sampler[D3DSAMP_MIPMAPLODBIAS] = std::bit_cast<DWORD>(Between(-1.0f, 1.0f));
}

void RandomDraw::SetStage(UINT index)
{
    auto& stage = state.stage[index];
    const auto argument = [this] {
        const DWORD flags[] = {0, 0, 0, D3DTA_COMPLEMENT, D3DTA_ALPHAREPLICATE};
        return Below(7) | OneOf(flags);
    };
    for (const auto name : {D3DTSS_COLORARG0, D3DTSS_COLORARG1, D3DTSS_COLORARG2, D3DTSS_ALPHAARG0,
                            D3DTSS_ALPHAARG1, D3DTSS_ALPHAARG2})
        stage[name] = argument();
    stage[D3DTSS_COLOROP] = 2 + Below(25);
    stage[D3DTSS_ALPHAOP] = 1 + Below(26);
    stage[D3DTSS_RESULTARG] = Below(4) == 0 ? D3DTA_TEMP : D3DTA_CURRENT;
    stage[D3DTSS_CONSTANT] = Word();
    stage[D3DTSS_TEXCOORDINDEX] = Below(3);
    const DWORD transforms[] = {D3DTTFF_DISABLE, D3DTTFF_DISABLE, D3DTTFF_COUNT2,
                                D3DTTFF_COUNT3 | D3DTTFF_PROJECTED};
    stage[D3DTSS_TEXTURETRANSFORMFLAGS] = OneOf(transforms);
    for (const auto name : {D3DTSS_BUMPENVMAT00, D3DTSS_BUMPENVMAT01, D3DTSS_BUMPENVMAT10,
                            D3DTSS_BUMPENVMAT11, D3DTSS_BUMPENVLSCALE, D3DTSS_BUMPENVLOFFSET})
        stage[name] = std::bit_cast<DWORD>(Between(-1.0f, 1.0f));
}

void RandomDraw::SetOutput()
{
    auto& render = state.render;
    render[D3DRS_ALPHATESTENABLE] = Below(3) == 0;
    render[D3DRS_ALPHAFUNC] = 1 + Below(8);
    render[D3DRS_ALPHAREF] = Below(256);
    render[D3DRS_ALPHABLENDENABLE] = Below(2);
    render[D3DRS_SRCBLEND] = 1 + Below(15);
    render[D3DRS_DESTBLEND] = 1 + Below(15);
    render[D3DRS_BLENDOP] = 1 + Below(5);
    render[D3DRS_SEPARATEALPHABLENDENABLE] = Below(4) == 0;
    render[D3DRS_SRCBLENDALPHA] = 1 + Below(11);
    render[D3DRS_DESTBLENDALPHA] = 1 + Below(11);
    render[D3DRS_BLENDFACTOR] = Word();
    if (Below(3) == 0) { // what nearly all transparent things use
        render[D3DRS_SRCBLEND] = D3DBLEND_SRCALPHA;
        render[D3DRS_DESTBLEND] = D3DBLEND_INVSRCALPHA;
        render[D3DRS_BLENDOP] = D3DBLENDOP_ADD;
    }
    render[D3DRS_COLORWRITEENABLE] = Below(3) == 0 ? Below(16) : 15;
    render[D3DRS_SRGBWRITEENABLE] = Below(8) == 0;
}

void RandomDraw::SetDepth()
{
    auto& render = state.render;
    render[D3DRS_ZENABLE] = Below(3);
    render[D3DRS_ZFUNC] = 1 + Below(8);
    render[D3DRS_ZWRITEENABLE] = Below(4) != 0;
    render[D3DRS_DEPTHBIAS] = std::bit_cast<DWORD>(Below(3) == 0 ? Between(-0.1f, 0.1f) : 0.0f);
    render[D3DRS_SLOPESCALEDEPTHBIAS] =
        std::bit_cast<DWORD>(Below(3) == 0 ? Between(-1.0f, 1.0f) : 0.0f);
    state.projection._33 = 1.1f;
    state.projection._34 = Below(2) != 0 ? 1.0f : 0.0f;
    state.projection._43 = -1.1f;
    state.projection._44 = state.projection._34 != 0.0f ? 0.0f : 1.0f;
}

void RandomDraw::SetFog()
{
    auto& render = state.render;
    render[D3DRS_FOGENABLE] = Below(3) == 0;
    render[D3DRS_FOGTABLEMODE] = Below(4);
    render[D3DRS_FOGVERTEXMODE] = Below(4);
    render[D3DRS_FOGCOLOR] = Word();
    render[D3DRS_FOGSTART] = std::bit_cast<DWORD>(Between(0.0f, 1.0f));
    render[D3DRS_FOGEND] = std::bit_cast<DWORD>(Between(0.0f, 4.0f));
    render[D3DRS_FOGDENSITY] = std::bit_cast<DWORD>(Between(0.0f, 1.0f));
}

void RandomDraw::MakeVertices()
{
    const D3DPRIMITIVETYPE types[] = {D3DPT_TRIANGLELIST, D3DPT_TRIANGLELIST, D3DPT_TRIANGLESTRIP,
                                      D3DPT_TRIANGLEFAN,  D3DPT_LINELIST,     D3DPT_LINESTRIP,
                                      D3DPT_POINTLIST};
    type = OneOf(types);
    primitives = 1 + Below(6);
    state.render[D3DRS_POINTSIZE] = std::bit_cast<DWORD>(Between(0.5f, 9.0f));
    state.render[D3DRS_POINTSPRITEENABLE] = Below(2);
    state.render[D3DRS_SHADEMODE] = 1 + Below(2);
    const float oddities[] = {0.0f, 1e30f, -1e9f, std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN()};
    vertices.resize(static_cast<size_t>(VertexCountOf(type, primitives)));
    for (Vertex& vertex : vertices) {
        vertex = {Between(-9.0f, 49.0f),
                  Between(-9.0f, 33.0f),
                  Between(-0.2f, 1.2f),
                  Between(0.1f, 3.0f),
                  Word(),
                  Word(),
                  {}};
        for (float& value : vertex.coordinates)
            value = Below(40) == 0 ? OneOf(oddities) : Between(-3.0f, 3.0f);
    }
}
