#pragma once

#include "import/QsaScene.h"

class NoticeList;

struct PlanOptions {
    double framesPerSecond = 0; ///< 0: the model's own, or 30
    double unit = 1;            ///< times that of the model
    size_t mostLooks = 1000000; ///< at nodes, to sample their tracks; more is a ModelFault
    enum class Up { kModel, kY, kZ } up = Up::kModel;
};

/// Arranges a model as a scene of the scene format: `scene` is filled and must be empty. Throws ModelFault if
/// the model has no mesh.
void PlanScene(const Model& model, const PlanOptions& options, NoticeList& notices,
               QsaScene& scene);
