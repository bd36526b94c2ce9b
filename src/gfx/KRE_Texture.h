#pragma once

#include <cstdint>

#include <d3d9.h>

#include "base/HeapArray.h"
#include "base/String.h"
#include "gfx/KRE_SlotValues.h"
#include "gfx/KRE_SurfaceBase.h"
#include "gfx/KRE_TextMatrixAni.h"
#include "platform/ComPointer.h"

/// What a map slot of a material does with its picture.
enum KRE_StageType : int32_t {
    StageDiffuse = 1,
    StageBump = 2,
    StageReflection = 3, ///< in slot 0 only
    StageModulate = 4,   ///< multiplies with the result so far
    StageAdd = 5,
    StageSphere = 6, ///< panoramic reflection that follows the camera
};

/// The order in which the frames of a sequence are shown.
enum KRE_SequenceMode : int32_t { kSequenceLoop = 0, kSequencePingPong = 1, kSequenceOnce = 2 };

/// A material's texture: up to four map slots, or one sequence of frames, with the rectangle and
/// the quad that draw it as a sprite. As a `KRE_SurfaceBase` it is the selected picture. The device
/// textures are counted by `manager` and shared under their names: the destructor gives up this
/// object's use and releases textures whose last user it was.
class KRE_Texture : public KRE_SurfaceBase {
public:
    static constexpr int32_t kSlots = KRE_SlotAnimations::kSlots;

    struct Slot {
        int32_t type = StageDiffuse; ///< a KRE_StageType; files may hold any value
        float param = 1.0f;
    };
    struct SlotFileInfo {
        int32_t sizeBytes = 0; ///< of the picture's file
        int32_t isVideo = 0;   ///< filled by a video source
    };

    KRE_Texture();
    ~KRE_Texture() override;

    // ---- The selected picture

    void Lock(const RECT* area, DWORD flags) override;
    void Unlock() override;
    /// The texture rectangle in pixels, rounded.
    void GetRect(RECT* rectOut) const override;
    /// Size of level `mipShift`, at least 1 by 1.
    void GetSize(SIZE* sizeOut) const override;
    void GetFullSize(SIZE* sizeOut) const override;
    bool IsValid() const override { return current != nullptr; }

    /// Reads size, format and alpha of the selected picture. Call it after a load or a selection.
    void Refresh();

    // ---- Slots and frames

    /// Type and parameter of a slot. A slot outside 0 to 3 is an `Error`, here and below.
    void SetStage(int32_t slot, int32_t type, float param);
    /// Makes a slot the current one. An `Error` for a texture with a sequence.
    void SelectStage(int32_t slot);
    /// The matrix of the current slot; null for none.
    void SetSlotMatrix(const D3DMATRIX* matrix);
    /// Makes a frame of the sequence the current picture; one that does not exist is an `Error`.
    void SelectFrame(int32_t index);
    /// Seconds per frame, start in seconds, and a KRE_SequenceMode.
    void SetSequenceTiming(float period, float start, int32_t mode);
    /// Makes `count` empty frames. Without `keep` the pictures of the slots are freed as well.
    void CreateSequence(int32_t count, bool keep);
    /// Releases one picture: a frame of the sequence, or a slot of a texture without one.
    /// QUIRK: slots up to 7 are accepted; those above 3 hold nothing.
    void FreeStage(int32_t index);
    /// Releases all pictures and the quad. Names, slot types, timing and tracks stay.
    void Free();
    /// Frees this texture and shares the other's pictures as one more user, with all settings.
    /// QUIRK: from a texture that never had a picture, only the names, the types and amounts of the
    /// slots, and the stored words are copied. The types tell what the names are for when a file is
    /// loaded again.
    void CopyFrom(const KRE_Texture& other);
    /// Puts a device texture into the current frame or slot, as a user of `id` in `newManager`. The
    /// texture that was there is released.
    void PutTexture(KRE_ResourceManager* newManager, int32_t id, IDirect3DTexture9* texture);
    /// Frees the current frame or slot.
    void FreeCurrent();

    // ---- Animation: KRE_TextureAnimation.cpp

    /// Sets matrices and the frame for a time in seconds: in all four slots of a texture with a
    /// sequence, in the current slot of one without.
    void Evaluate(float time);
    /// The matrix of the current slot, for coordinates passed as (u, v, 1): shift about the
    /// picture's centre, rotate by `angle` radians, scale. The values (0, 0, 1, 1, 0) mean no
    /// matrix.
    void SetMatrixFromTrack(float offsetU, float offsetV, float tileU, float tileV, float angle);

    // ---- Scene files: qsb/KRE_TextureFile.cpp

    /// Slots and timing as in QSB files, for a texture that is new or freed. A load looks for the
    /// pictures and loads them; one that is not found is a `Warning` and loses its name.
    void Save(File& file) const;
    void Load(QSB_InputFile& file);

    // ---- Sprite rectangle

    /// Makes the quad on a device, or releases it for null.
    void SetDevice(IDirect3DDevice9* newDevice);
    /// Sets the rectangle from two opposite corners, in any order. It is inset slightly, so that a
    /// sprite does not sample its neighbour. `setSize` makes it the source size; `swapAxes` mirrors
    /// the picture over its diagonal.
    void SetRectFromPixels(int32_t x1, int32_t y1, int32_t x2, int32_t y2, bool setSize,
                           bool swapAxes);
    void SetRect(float newOriginU, float newOriginV, float newAxisAU, float newAxisAV,
                 float newAxisBU, float newAxisBV);
    /// Writes the rectangle into the quad, if there is one.
    void UpdateQuad();

    // ---- Fields

    Slot slots[kSlots];
    int32_t slotIds[kSlots] = {-1, -1, -1, -1};
    int32_t slotDefaultPool[kSlots]{}; ///< 1: the picture is in the default pool
    int32_t sequenceCount = 0;
    float sequenceStart = 0.0f;           ///< seconds
    float framePeriod = 0.2f;             ///< seconds
    HeapArray<int32_t> frameIds;          ///< `sequenceCount` ids, -1 for none
    int32_t frameIndex = -1;              ///< the selected frame
    int32_t sequenceMode = kSequenceLoop; ///< files may hold any value; unknown ones loop
    HeapArray<IDirect3DTexture9*> frames; ///< `sequenceCount`; the uses are in `frameIds`
    int32_t width = 0;                    ///< of level 0, pixels
    int32_t height = 0;
    float currentTime = 0.0f; ///< seconds, of the last evaluation
    int32_t videoSource = -1; ///< 0 to 15, -1 for none
    float sourceWidth = 0.0f; ///< of the picture in its file, pixels
    float sourceHeight = 0.0f;
    int32_t levelCount = 0;
    int32_t mipShift = 0; ///< the level that `Lock` locks
    float originU = 0.0f; ///< the texture rectangle: a corner and its two sides
    float originV = 0.0f;
    float axisAU = 1.0f;
    float axisAV = 0.0f;
    float axisBU = 0.0f;
    float axisBV = 1.0f;
    IDirect3DTexture9* slotTextures[kSlots]{}; ///< the uses are in `slotIds`
    IDirect3DTexture9* current = nullptr;      ///< the selected one of the frames or slots
    KRE_SlotValues<D3DSURFACE_DESC> slotDescs;
    KRE_SlotAnimations matrixAni;
    int32_t currentSlot = 0;
    ComPointer<IDirect3DVertexBuffer9> quad; ///< owned; four KRE_TLVertex
    IDirect3DDevice9* device = nullptr;      ///< not owned, lives in KRE_Gfx
    KRE_SlotValues<D3DMATRIX> slotMatrices;
    int32_t slotMatrixSet[kSlots]{};
    int32_t hasAlpha = 0;     ///< by the slots' formats; see also `HasAlpha`
    String slotNames[kSlots]; ///< files, as scenes name them
    SlotFileInfo slotFileInfo[kSlots];
    uint8_t clampFlag = 0;        ///< 1: a sprite of it wraps
    int32_t textureIsDynamic = 0; ///< 1: made empty, not loaded
    uint32_t textureWord = 0;     ///< of files; passed through
    float textureValue = 0.0f;    ///< of files; passed through
    uint32_t loadOptions = 0;     ///< of files; bit 0: one mip level

private:
    void LoadSlot(QSB_InputFile& file, int32_t slot);
    void SwapReflectionToFront();
    void LoadPicture(QSB_InputFile& file, int32_t slot);
    void ReadCurrent();
    void ReadSlots();
    void ReleaseUse(IDirect3DTexture9*& texture, int32_t& id);
    void FreeSlot(int32_t slot);
    void FreeFrames();
    void CopySettings(const KRE_Texture& other);
    void CopyPictures(const KRE_Texture& other);
    IDirect3DTexture9* AcquireFrom(const KRE_Texture& other, int32_t id,
                                   IDirect3DTexture9* texture);
    void SetMatrixOf(int32_t slot, const float (&values)[KRE_TextMatrixAni::kTrackCount]);
    int32_t FrameAt(float time) const;
};
