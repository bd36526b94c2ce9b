#pragma once

#include <cstdint>

#include "gfx/KRE_ResourceBase.h"
#include "scene/KRE_ObjectFields.h"

class File;
class QSB_InputFile;

/// A scene node: a named object with a parent, a static transform, three key tracks, and the
/// matrices that they give at a time. Vectors are rows, so products read in order of application: a
/// node's own matrix is scale * rotation * translation.
class KRE_3dObject : public KRE_ResourceBase, public KRE_ObjectFields {
public:
    KRE_3dObject();
    /// Copies the node and its keys, but not its shared resource.
    KRE_3dObject(const KRE_3dObject& other);
    KRE_3dObject& operator=(const KRE_3dObject&) = delete; // `Assign` says what it copies
    ~KRE_3dObject() override = default;

    /// As in `KRE_Base`, with the object's name and ": " before the message.
    [[noreturn]] [[gnu::format(printf, 2, 3)]] void Error(const char* format, ...) const override;
    [[gnu::format(printf, 2, 3)]] void Warning(const char* format, ...) const override;
    /// Write and read the object as in QSB files: `qsb/KRE_3dObjectFile.cpp` and its neighbours. A
    /// load starts with a reset; invalid data is an `Error`, after which the object's state is
    /// unspecified. Overrides call their base's first; a mesh and a scene override `Load` like the
    /// others, although nothing calls it through a base.
    virtual void Save(File& file) const;
    virtual void Load(QSB_InputFile& file);
    virtual int32_t IsMesh() const { return 0; }

    /// Computes the matrices at `time` in seconds; returns 1. A negative time counts as 0 unless
    /// the object loops. Skipped for the time of the last evaluation unless `dirty` or `force` is
    /// set. With `updateParent` the parent is evaluated first, at this object's time after looping.
    /// A loop walks chains of any length; a cycle of parents or targets ends at the object that is
    /// already being evaluated. Because of the loop this is not virtual: what a kind of object adds
    /// is in the three hooks below.
    int32_t Evaluate(double time, int32_t updateParent, int32_t force);

    /// Starts a pass. Within a pass, an object that is reached again at the same time is skipped
    /// altogether if nothing has changed in between. Callers that change an object in the middle of
    /// a pass use `Evaluate`, which starts a new one.
    static void BeginPass();
    /// `Evaluate` as part of the current pass.
    int32_t EvaluateInPass(double time, int32_t updateParent, int32_t force);

    /// Rebuilds the part matrices, `initTM` and `worldTM` from the static fields, without the
    /// parent.
    void RebuildInitTM();
    /// Stores `position`. With `rebuild` the matrices are rebuilt at once, else by the next
    /// evaluation. Returns 1.
    int32_t SetPosition(float x, float y, float z, int32_t rebuild);
    void SetLoop(int32_t flag) { loop = flag; }
    void SetLoopEnd(float seconds) { loopEnd = seconds; }
    /// The translation row of `worldTM`.
    void GetWorldPosition(D3DXVECTOR3& positionOut) const;
    /// The matrix that moves a camera's or light's vectors with the pivot and with `extraTM`, which
    /// may be null: inverse(W) * (P * W) * extraTM. The inverse of a singular W counts as the
    /// identity.
    D3DXMATRIX CorrectionTM(const D3DXMATRIX* extraTM) const;

    /// Indexes the three tracks; a counter that differs from its list's length is an `Error`.
    void BuildKeyIndex();
    /// Destroys all keys and indexes, then `Reset`.
    void ResetKeys();
    /// Resets every field to its default, the kind to plain, and removes all keys.
    void Reset();
    /// Copies all fields and keys of another node. The label and the shared resource stay this
    /// object's own.
    void Assign(const KRE_3dObject& other);
    /// Gives `target` copies of all keys and a new index, or no keys if `deep` is 0.
    void CloneKeys(KRE_3dObject& target, int32_t deep) const;

protected:
    // Hooks for kinds of objects. None of them may evaluate another object itself: files decide how
    // long the chains are, and the stack is limited.

    /// Called first, even if the evaluation is then skipped.
    virtual void PrepareEvaluation([[maybe_unused]] double time, [[maybe_unused]] int32_t force) {}
    /// An object to evaluate, with its parents, before `FinishEvaluation`; or null.
    virtual KRE_3dObject* EvaluationTarget() const { return nullptr; }
    /// Called last, even if the evaluation was skipped.
    virtual void FinishEvaluation() {}

private:
    enum class VisitStage : uint8_t { kIdle, kOwnMatrix, kParentMatrix, kFinish };

    /// The arguments and the state of an evaluation of this object: one frame of the walk, stored
    /// in the object so that the walk needs no stack and allocates no memory.
    struct Visit {
        KRE_3dObject* caller = nullptr; ///< not owned; continues when this one is done
        double time = 0;
        uint64_t stamp = 0; ///< `gEvaluationStamp` when the last visit ended
        VisitStage stage = VisitStage::kIdle;
        bool updateParent = false;
        int32_t force = 0;
    };

    bool BeginVisit(KRE_3dObject* caller, double time, bool updateParent, int32_t force);
    KRE_3dObject* StepVisit();
    KRE_3dObject* VisitOwnMatrix();
    KRE_3dObject* VisitTarget();
    KRE_3dObject* EndVisit();
    bool IsUnchangedSinceVisit(double time, int32_t force) const;
    float LocalTime(double time) const;
    void EvaluateTracks(float time);
    void BuildScaling(const D3DXVECTOR3& factors);
    D3DXMATRIX ProductOfParts() const;
    void ApplyParent();
    D3DXMATRIX PartlyInheritedTM() const;

    Visit visit;
};
