#pragma once

#include "platform/headless/d3dx/effect/FxStates.h"

namespace headless::fx {

// The names used as state values, one table for each public enumeration.

extern const FxStateWords kFxZBufferWords;
extern const FxStateWords kFxFillWords;
extern const FxStateWords kFxShadeWords;
extern const FxStateWords kFxBlendWords;
extern const FxStateWords kFxBlendOpWords;
extern const FxStateWords kFxCullWords;
extern const FxStateWords kFxCompareWords;
extern const FxStateWords kFxStencilWords;
extern const FxStateWords kFxFogWords;
extern const FxStateWords kFxMaterialSourceWords;
extern const FxStateWords kFxVertexBlendWords;
extern const FxStateWords kFxPatchEdgeWords;
extern const FxStateWords kFxDebugWords;
extern const FxStateWords kFxDegreeWords;
extern const FxStateWords kFxColorWriteWords;
extern const FxStateWords kFxWrapWords;
extern const FxStateWords kFxClipPlaneWords;
extern const FxStateWords kFxTextureOpWords;
extern const FxStateWords kFxTextureArgumentWords;
extern const FxStateWords kFxTexCoordWords;
extern const FxStateWords kFxTransformFlagWords;
extern const FxStateWords kFxAddressWords;
extern const FxStateWords kFxFilterWords;
extern const FxStateWords kFxLightTypeWords;
extern const FxStateWords kFxVertexFormatWords;

} // namespace headless::fx
