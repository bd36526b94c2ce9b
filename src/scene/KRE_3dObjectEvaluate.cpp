#include <bit>
#include <cmath>

#include "scene/KRE_3dObject.h"
#include "scene/KRE_KeyEvaluation.h"
#include "scene/WrapTime.h"

/// Incremented for every matrix that is computed and for every pass. If an object's visit ended at
/// the current number, nothing has changed since.
static uint64_t gEvaluationStamp = 1;

void KRE_3dObject::BeginPass()
{
    ++gEvaluationStamp;
}

int32_t KRE_3dObject::Evaluate(double time, int32_t updateParent, int32_t force)
{
    BeginPass();
    return EvaluateInPass(time, updateParent, force);
}

int32_t KRE_3dObject::EvaluateInPass(double time, int32_t updateParent, int32_t force)
{
    if (!BeginVisit(nullptr, time, updateParent != 0, force))
        return 1;
    KRE_3dObject* current = this;
    while (current)
        current = current->StepVisit();
    return 1;
}

/// Returns false if there is nothing to do: the object is being evaluated further up the chain, or
/// has already been evaluated in this pass. Without the latter check, a chain of cameras that
/// target each other would be walked to its end once for each of them.
bool KRE_3dObject::BeginVisit(KRE_3dObject* caller, double time, bool updateParent, int32_t force)
{
    if (visit.stage != VisitStage::kIdle || IsUnchangedSinceVisit(time, force))
        return false;
    visit = {caller, time, 0, VisitStage::kOwnMatrix, updateParent, force};
    return true;
}

bool KRE_3dObject::IsUnchangedSinceVisit(double time, int32_t force) const
{
    // Compared as bits, so that NaN equals itself.
    return visit.stamp == gEvaluationStamp && !dirty && !force &&
           std::bit_cast<uint64_t>(visit.time) == std::bit_cast<uint64_t>(time);
}

/// Does one stage of a visit and returns the object to continue with; null when the walk is over.
KRE_3dObject* KRE_3dObject::StepVisit()
{
    switch (visit.stage) {
    case VisitStage::kOwnMatrix:
        return VisitOwnMatrix();
    case VisitStage::kParentMatrix:
        ApplyParent();
        dirty = 0;
        return VisitTarget();
    default:
        return EndVisit();
    }
}

KRE_3dObject* KRE_3dObject::VisitOwnMatrix()
{
    PrepareEvaluation(visit.time, visit.force);
    if (frozen || (visit.time == lastTime && !dirty && !visit.force))
        return VisitTarget();

    ++gEvaluationStamp;
    const float time = LocalTime(visit.time);
    EvaluateTracks(time);
    lastTime = time;
    worldTM = ProductOfParts();
    if (!parent) {
        dirty = 0;
        return VisitTarget();
    }
    visit.stage = VisitStage::kParentMatrix;
    if (visit.updateParent && parent->BeginVisit(this, time, true, 0))
        return parent;
    return this;
}

KRE_3dObject* KRE_3dObject::VisitTarget()
{
    visit.stage = VisitStage::kFinish;
    KRE_3dObject* target = EvaluationTarget();
    return target && target->BeginVisit(this, visit.time, true, 0) ? target : this;
}

KRE_3dObject* KRE_3dObject::EndVisit()
{
    FinishEvaluation();
    visit.stage = VisitStage::kIdle;
    visit.stamp = visit.updateParent ? gEvaluationStamp : 0;
    return visit.caller;
}

/// Files may hold NaN and infinite times and loop lengths; these count as 0.
float KRE_3dObject::LocalTime(double time) const
{
    if (!loop)
        return time > 0 ? static_cast<float>(time) : 0.0f;
    const float wrapped = WrapTime(time, loopEnd);
    return std::isfinite(wrapped) ? wrapped : 0.0f;
}

void KRE_3dObject::EvaluateTracks(float time)
{
    const KRE_KeyLoop keyLoop = {loop, loopEnd};
    currentPosition = posKeys ? EvaluateKeys(posKeys, posIndex, time, keyLoop) : position;
    D3DXMatrixTranslation(&translationTM, currentPosition.x, currentPosition.y, currentPosition.z);
    currentScale = scaleKeys ? EvaluateKeys(scaleKeys, scaleIndex, time, keyLoop) : scale;
    BuildScaling(currentScale);
    if (rotKeys) {
        currentRotation = EvaluateKeys(rotKeys, rotIndex, time, keyLoop);
        D3DXMatrixRotationQuaternion(&rotationTM, &currentRotation);
    } else {
        D3DXQuaternionRotationAxis(&currentRotation, &rotationAxis, rotationAngle);
        D3DXMatrixRotationAxis(&rotationTM, &rotationAxis, rotationAngle);
    }
}

void KRE_3dObject::BuildScaling(const D3DXVECTOR3& factors)
{
    D3DXMatrixScaling(&scalingTM, factors.x, factors.y, factors.z);
    scalingTM._11 *= mirror.x;
    scalingTM._22 *= mirror.y;
    scalingTM._33 *= mirror.z;
}

D3DXMATRIX KRE_3dObject::ProductOfParts() const
{
    return scalingTM * rotationTM * translationTM;
}

void KRE_3dObject::ApplyParent()
{
    const bool inheritsAll =
        (inheritPosition & inheritScale & inheritRotation & inheritMirror) != 0;
    worldTM = worldTM * (inheritsAll ? parent->worldTM : PartlyInheritedTM());
}

/// Splits the parent's matrix into scale, rotation and translation, and recombines those that the
/// object inherits. Shear is lost, and a row of length 0 divides by 0.
D3DXMATRIX KRE_3dObject::PartlyInheritedTM() const
{
    D3DXMATRIX rotation = parent->worldTM;
    rotation._41 = rotation._42 = rotation._43 = 0;
    D3DXMATRIX inherited = IdentityMatrix();
    for (int row = 0; row < 3; ++row) {
        const double x = rotation.m[row][0], y = rotation.m[row][1], z = rotation.m[row][2];
        // A length is never negative: a mirrored parent's sign stays in the rotation, so
        // `inheritMirror` has no effect here.
        const float length = static_cast<float>(std::sqrt(x * x + y * y + z * z));
        for (int column = 0; column < 3; ++column)
            rotation.m[row][column] /= length;
        if (inheritScale)
            inherited.m[row][row] = length;
    }
    if (inheritRotation)
        inherited = inherited * rotation;
    if (inheritPosition) {
        inherited._41 = parent->worldTM._41;
        inherited._42 = parent->worldTM._42;
        inherited._43 = parent->worldTM._43;
    }
    return inherited;
}
