#pragma once

#include "scene/KRE_3dObject.h"

/// A node that looks somewhere: along its own -Z axis, or at a target object.
class KRE_Target3dObject : public KRE_3dObject {
public:
    KRE_Target3dObject() { SetClassName("KRE_Target3dObject"); }

    void Save(File& file) const override;
    void Load(QSB_InputFile& file) override;

    /// Called after every change of the vectors below; `extraTM` may be null.
    virtual void UpdateLightData([[maybe_unused]] const D3DXMATRIX* extraTM) {}

    void Reset();
    /// Sets the static and the world position, and rebuilds the matrices. All three return 1.
    int32_t SetPosition(float x, float y, float z);
    /// Store the vector normalised. A vector of length 0 is not checked for.
    int32_t SetDirection(float x, float y, float z);
    int32_t SetUp(float x, float y, float z);

    String targetName;              ///< as the file has it
    KRE_3dObject* target = nullptr; ///< not owned, lives in the scene; null: along its own axis
    D3DXVECTOR3 worldPosition = {0, 0, 0};
    D3DXVECTOR3 direction = {0, 1, 0}; ///< with a target, as long as the distance to it
    D3DXVECTOR3 up = {0, 0, 1};        ///< not changed by evaluations while there is a target

protected:
    KRE_3dObject* EvaluationTarget() const override { return target; }
    void FinishEvaluation() override;

private:
    void UpdateVectors();
};
