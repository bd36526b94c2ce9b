#pragma once

#include <cstdint>

#include "base/File.h"
#include "base/LoadInHand.h"
#include "base/String.h"
#include "qsb/QSB_Format.h"
#include "scene/KRE_3dObject.h"

/// What the `Load` operations of all scene classes ask while a QSB file is read. There is one of it,
/// so one file is read at a time.
struct QSB_ReadContext {
    int32_t version = kQsbCurrent;
    bool cutToWindow = false; ///< cut all keys to the window below; nothing here sets it
    float windowStart = 0;    ///< seconds
    float windowEnd = 0;
    String directory;               ///< of the file; where its textures are looked for first
    bool singleMipLevel = false;    ///< textures get one mip level
    bool bumpMaps = false;          ///< bump maps are loaded, and vertices get room for them
    bool vertexColors = false;      ///< vertices get diffuse and specular colours
    KRE_3dObject* object = nullptr; ///< not owned; the one in hand, for messages
    int32_t material = -1; ///< of that object, whose texture is in hand; -1: its background

    /// An `Error` of the object in hand that names the file.
    [[noreturn]] [[gnu::format(printf, 3, 4)]] void Fail(const File& file, const char* format,
                                                         ...) const;
    /// Reads the number of `what`; one below 0, or above what the bytes left can hold at
    /// `leastBytes` for each, is an `Error`.
    int32_t ReadCount(File& file, const char* what, int32_t leastBytes) const;
    /// The test of `ReadCount` for a number that is read already.
    void CheckCount(const File& file, const char* what, int32_t count, int64_t leastBytes) const;
    /// Reads a text; a length above the bytes left is an `Error`, below 1 it is the empty one.
    void ReadText(File& file, String* textOut) const;
    /// A null pointer is an `Error`.
    void CheckMemory(const File& file, const void* memory) const;
};

extern QSB_ReadContext gQsbReadContext;

/// Makes an object the one in hand while this lives.
class QSB_ObjectInHand {
public:
    explicit QSB_ObjectInHand(KRE_3dObject& object)
        : before(gQsbReadContext.object),
          name(object.name)
    {
        gQsbReadContext.object = &object;
    }
    ~QSB_ObjectInHand() { gQsbReadContext.object = before; }
    QSB_ObjectInHand(const QSB_ObjectInHand&) = delete;
    QSB_ObjectInHand& operator=(const QSB_ObjectInHand&) = delete;

private:
    KRE_3dObject* before; ///< not owned
    LoadScope name;
};
