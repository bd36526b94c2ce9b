#include "platform/headless/d3dx/effect/FxStateWords.h"

namespace headless::fx {

namespace {

constexpr FxStateWord kZBuffer[] = {
    {"FALSE", D3DZB_FALSE}, {"TRUE", D3DZB_TRUE}, {"USEW", D3DZB_USEW}};
constexpr FxStateWord kFill[] = {
    {"POINT", D3DFILL_POINT}, {"WIREFRAME", D3DFILL_WIREFRAME}, {"SOLID", D3DFILL_SOLID}};
constexpr FxStateWord kShade[] = {
    {"FLAT", D3DSHADE_FLAT}, {"GOURAUD", D3DSHADE_GOURAUD}, {"PHONG", D3DSHADE_PHONG}};
constexpr FxStateWord kBlend[] = {
    {"ZERO", D3DBLEND_ZERO},
    {"ONE", D3DBLEND_ONE},
    {"SRCCOLOR", D3DBLEND_SRCCOLOR},
    {"INVSRCCOLOR", D3DBLEND_INVSRCCOLOR},
    {"SRCALPHA", D3DBLEND_SRCALPHA},
    {"INVSRCALPHA", D3DBLEND_INVSRCALPHA},
    {"DESTALPHA", D3DBLEND_DESTALPHA},
    {"INVDESTALPHA", D3DBLEND_INVDESTALPHA},
    {"DESTCOLOR", D3DBLEND_DESTCOLOR},
    {"INVDESTCOLOR", D3DBLEND_INVDESTCOLOR},
    {"SRCALPHASAT", D3DBLEND_SRCALPHASAT},
    {"BOTHSRCALPHA", D3DBLEND_BOTHSRCALPHA},
    {"BOTHINVSRCALPHA", D3DBLEND_BOTHINVSRCALPHA},
    {"BLENDFACTOR", D3DBLEND_BLENDFACTOR},
    {"INVBLENDFACTOR", D3DBLEND_INVBLENDFACTOR},
};
constexpr FxStateWord kBlendOp[] = {{"ADD", D3DBLENDOP_ADD},
                                    {"SUBTRACT", D3DBLENDOP_SUBTRACT},
                                    {"REVSUBTRACT", D3DBLENDOP_REVSUBTRACT},
                                    {"MIN", D3DBLENDOP_MIN},
                                    {"MAX", D3DBLENDOP_MAX}};
constexpr FxStateWord kCull[] = {{"NONE", D3DCULL_NONE}, {"CW", D3DCULL_CW}, {"CCW", D3DCULL_CCW}};
constexpr FxStateWord kCompare[] = {{"NEVER", D3DCMP_NEVER},
                                    {"LESS", D3DCMP_LESS},
                                    {"EQUAL", D3DCMP_EQUAL},
                                    {"LESSEQUAL", D3DCMP_LESSEQUAL},
                                    {"GREATER", D3DCMP_GREATER},
                                    {"NOTEQUAL", D3DCMP_NOTEQUAL},
                                    {"GREATEREQUAL", D3DCMP_GREATEREQUAL},
                                    {"ALWAYS", D3DCMP_ALWAYS}};
constexpr FxStateWord kStencil[] = {
    {"KEEP", D3DSTENCILOP_KEEP},       {"ZERO", D3DSTENCILOP_ZERO},
    {"REPLACE", D3DSTENCILOP_REPLACE}, {"INCRSAT", D3DSTENCILOP_INCRSAT},
    {"DECRSAT", D3DSTENCILOP_DECRSAT}, {"INVERT", D3DSTENCILOP_INVERT},
    {"INCR", D3DSTENCILOP_INCR},       {"DECR", D3DSTENCILOP_DECR}};
constexpr FxStateWord kFog[] = {
    {"NONE", D3DFOG_NONE}, {"EXP", D3DFOG_EXP}, {"EXP2", D3DFOG_EXP2}, {"LINEAR", D3DFOG_LINEAR}};
constexpr FxStateWord kMaterialSource[] = {
    {"MATERIAL", D3DMCS_MATERIAL}, {"COLOR1", D3DMCS_COLOR1}, {"COLOR2", D3DMCS_COLOR2}};
constexpr FxStateWord kVertexBlend[] = {
    {"DISABLE", D3DVBF_DISABLE},   {"1WEIGHTS", D3DVBF_1WEIGHTS}, {"2WEIGHTS", D3DVBF_2WEIGHTS},
    {"3WEIGHTS", D3DVBF_3WEIGHTS}, {"TWEENING", D3DVBF_TWEENING}, {"0WEIGHTS", D3DVBF_0WEIGHTS}};
constexpr FxStateWord kPatchEdge[] = {{"DISCRETE", D3DPATCHEDGE_DISCRETE},
                                      {"CONTINUOUS", D3DPATCHEDGE_CONTINUOUS}};
constexpr FxStateWord kDebug[] = {{"ENABLE", D3DDMT_ENABLE}, {"DISABLE", D3DDMT_DISABLE}};
constexpr FxStateWord kDegree[] = {{"LINEAR", D3DDEGREE_LINEAR},
                                   {"QUADRATIC", D3DDEGREE_QUADRATIC},
                                   {"CUBIC", D3DDEGREE_CUBIC},
                                   {"QUINTIC", D3DDEGREE_QUINTIC}};
constexpr FxStateWord kColorWrite[] = {{"RED", D3DCOLORWRITEENABLE_RED},
                                       {"GREEN", D3DCOLORWRITEENABLE_GREEN},
                                       {"BLUE", D3DCOLORWRITEENABLE_BLUE},
                                       {"ALPHA", D3DCOLORWRITEENABLE_ALPHA}};
constexpr FxStateWord kWrap[] = {{"COORD0", D3DWRAPCOORD_0},
                                 {"COORD_0", D3DWRAPCOORD_0},
                                 {"COORD1", D3DWRAPCOORD_1},
                                 {"COORD_1", D3DWRAPCOORD_1},
                                 {"COORD2", D3DWRAPCOORD_2},
                                 {"COORD_2", D3DWRAPCOORD_2},
                                 {"COORD3", D3DWRAPCOORD_3},
                                 {"COORD_3", D3DWRAPCOORD_3},
                                 {"U", D3DWRAP_U},
                                 {"V", D3DWRAP_V},
                                 {"W", D3DWRAP_W}};
constexpr FxStateWord kClipPlane[] = {{"CLIPPLANE0", D3DCLIPPLANE0}, {"CLIPPLANE1", D3DCLIPPLANE1},
                                      {"CLIPPLANE2", D3DCLIPPLANE2}, {"CLIPPLANE3", D3DCLIPPLANE3},
                                      {"CLIPPLANE4", D3DCLIPPLANE4}, {"CLIPPLANE5", D3DCLIPPLANE5}};
constexpr FxStateWord kTextureOp[] = {
    {"DISABLE", D3DTOP_DISABLE},
    {"SELECTARG1", D3DTOP_SELECTARG1},
    {"SELECTARG2", D3DTOP_SELECTARG2},
    {"MODULATE", D3DTOP_MODULATE},
    {"MODULATE2X", D3DTOP_MODULATE2X},
    {"MODULATE4X", D3DTOP_MODULATE4X},
    {"ADD", D3DTOP_ADD},
    {"ADDSIGNED", D3DTOP_ADDSIGNED},
    {"ADDSIGNED2X", D3DTOP_ADDSIGNED2X},
    {"SUBTRACT", D3DTOP_SUBTRACT},
    {"ADDSMOOTH", D3DTOP_ADDSMOOTH},
    {"BLENDDIFFUSEALPHA", D3DTOP_BLENDDIFFUSEALPHA},
    {"BLENDTEXTUREALPHA", D3DTOP_BLENDTEXTUREALPHA},
    {"BLENDFACTORALPHA", D3DTOP_BLENDFACTORALPHA},
    {"BLENDTEXTUREALPHAPM", D3DTOP_BLENDTEXTUREALPHAPM},
    {"BLENDCURRENTALPHA", D3DTOP_BLENDCURRENTALPHA},
    {"PREMODULATE", D3DTOP_PREMODULATE},
    {"MODULATEALPHA_ADDCOLOR", D3DTOP_MODULATEALPHA_ADDCOLOR},
    {"MODULATECOLOR_ADDALPHA", D3DTOP_MODULATECOLOR_ADDALPHA},
    {"MODULATEINVALPHA_ADDCOLOR", D3DTOP_MODULATEINVALPHA_ADDCOLOR},
    {"MODULATEINVCOLOR_ADDALPHA", D3DTOP_MODULATEINVCOLOR_ADDALPHA},
    {"BUMPENVMAP", D3DTOP_BUMPENVMAP},
    {"BUMPENVMAPLUMINANCE", D3DTOP_BUMPENVMAPLUMINANCE},
    {"DOTPRODUCT3", D3DTOP_DOTPRODUCT3},
    {"MULTIPLYADD", D3DTOP_MULTIPLYADD},
    {"LERP", D3DTOP_LERP},
};
constexpr FxStateWord kTextureArgument[] = {{"DIFFUSE", D3DTA_DIFFUSE},
                                            {"CURRENT", D3DTA_CURRENT},
                                            {"TEXTURE", D3DTA_TEXTURE},
                                            {"TFACTOR", D3DTA_TFACTOR},
                                            {"SPECULAR", D3DTA_SPECULAR},
                                            {"TEMP", D3DTA_TEMP},
                                            {"CONSTANT", D3DTA_CONSTANT},
                                            {"COMPLEMENT", D3DTA_COMPLEMENT},
                                            {"ALPHAREPLICATE", D3DTA_ALPHAREPLICATE}};
constexpr FxStateWord kTexCoord[] = {
    {"PASSTHRU", D3DTSS_TCI_PASSTHRU},
    {"CAMERASPACENORMAL", D3DTSS_TCI_CAMERASPACENORMAL},
    {"CAMERASPACEPOSITION", D3DTSS_TCI_CAMERASPACEPOSITION},
    {"CAMERASPACEREFLECTIONVECTOR", D3DTSS_TCI_CAMERASPACEREFLECTIONVECTOR},
    {"SPHEREMAP", D3DTSS_TCI_SPHEREMAP}};
constexpr FxStateWord kTransformFlag[] = {
    {"DISABLE", D3DTTFF_DISABLE}, {"COUNT1", D3DTTFF_COUNT1}, {"COUNT2", D3DTTFF_COUNT2},
    {"COUNT3", D3DTTFF_COUNT3},   {"COUNT4", D3DTTFF_COUNT4}, {"PROJECTED", D3DTTFF_PROJECTED}};
constexpr FxStateWord kAddress[] = {{"WRAP", D3DTADDRESS_WRAP},
                                    {"MIRROR", D3DTADDRESS_MIRROR},
                                    {"CLAMP", D3DTADDRESS_CLAMP},
                                    {"BORDER", D3DTADDRESS_BORDER},
                                    {"MIRRORONCE", D3DTADDRESS_MIRRORONCE}};
constexpr FxStateWord kFilter[] = {{"NONE", D3DTEXF_NONE},
                                   {"POINT", D3DTEXF_POINT},
                                   {"LINEAR", D3DTEXF_LINEAR},
                                   {"ANISOTROPIC", D3DTEXF_ANISOTROPIC},
                                   {"PYRAMIDALQUAD", D3DTEXF_PYRAMIDALQUAD},
                                   {"GAUSSIANQUAD", D3DTEXF_GAUSSIANQUAD}};
constexpr FxStateWord kLightType[] = {
    {"POINT", D3DLIGHT_POINT}, {"SPOT", D3DLIGHT_SPOT}, {"DIRECTIONAL", D3DLIGHT_DIRECTIONAL}};
constexpr FxStateWord kVertexFormat[] = {{"XYZ", D3DFVF_XYZ},
                                         {"XYZRHW", D3DFVF_XYZRHW},
                                         {"XYZB1", D3DFVF_XYZB1},
                                         {"XYZB2", D3DFVF_XYZB2},
                                         {"XYZB3", D3DFVF_XYZB3},
                                         {"XYZB4", D3DFVF_XYZB4},
                                         {"XYZB5", D3DFVF_XYZB5},
                                         {"XYZW", D3DFVF_XYZW},
                                         {"NORMAL", D3DFVF_NORMAL},
                                         {"PSIZE", D3DFVF_PSIZE},
                                         {"DIFFUSE", D3DFVF_DIFFUSE},
                                         {"SPECULAR", D3DFVF_SPECULAR},
                                         {"TEX0", D3DFVF_TEX0},
                                         {"TEX1", D3DFVF_TEX1},
                                         {"TEX2", D3DFVF_TEX2},
                                         {"TEX3", D3DFVF_TEX3},
                                         {"TEX4", D3DFVF_TEX4},
                                         {"TEX5", D3DFVF_TEX5},
                                         {"TEX6", D3DFVF_TEX6},
                                         {"TEX7", D3DFVF_TEX7},
                                         {"TEX8", D3DFVF_TEX8},
                                         {"LASTBETA_UBYTE4", D3DFVF_LASTBETA_UBYTE4},
                                         {"LASTBETA_D3DCOLOR", D3DFVF_LASTBETA_D3DCOLOR}};

} // namespace

const FxStateWords kFxZBufferWords = {"D3DZB_", kZBuffer};
const FxStateWords kFxFillWords = {"D3DFILL_", kFill};
const FxStateWords kFxShadeWords = {"D3DSHADE_", kShade};
const FxStateWords kFxBlendWords = {"D3DBLEND_", kBlend};
const FxStateWords kFxBlendOpWords = {"D3DBLENDOP_", kBlendOp};
const FxStateWords kFxCullWords = {"D3DCULL_", kCull};
const FxStateWords kFxCompareWords = {"D3DCMP_", kCompare};
const FxStateWords kFxStencilWords = {"D3DSTENCILOP_", kStencil};
const FxStateWords kFxFogWords = {"D3DFOG_", kFog};
const FxStateWords kFxMaterialSourceWords = {"D3DMCS_", kMaterialSource};
const FxStateWords kFxVertexBlendWords = {"D3DVBF_", kVertexBlend};
const FxStateWords kFxPatchEdgeWords = {"D3DPATCHEDGE_", kPatchEdge};
const FxStateWords kFxDebugWords = {"D3DDMT_", kDebug};
const FxStateWords kFxDegreeWords = {"D3DDEGREE_", kDegree};
const FxStateWords kFxColorWriteWords = {"D3DCOLORWRITEENABLE_", kColorWrite};
const FxStateWords kFxWrapWords = {"D3DWRAP", kWrap};
const FxStateWords kFxClipPlaneWords = {"D3D", kClipPlane};
const FxStateWords kFxTextureOpWords = {"D3DTOP_", kTextureOp};
const FxStateWords kFxTextureArgumentWords = {"D3DTA_", kTextureArgument};
const FxStateWords kFxTexCoordWords = {"D3DTSS_TCI_", kTexCoord};
const FxStateWords kFxTransformFlagWords = {"D3DTTFF_", kTransformFlag};
const FxStateWords kFxAddressWords = {"D3DTADDRESS_", kAddress};
const FxStateWords kFxFilterWords = {"D3DTEXF_", kFilter};
const FxStateWords kFxLightTypeWords = {"D3DLIGHT_", kLightType};
const FxStateWords kFxVertexFormatWords = {"D3DFVF_", kVertexFormat};

} // namespace headless::fx
