#pragma once

#include <cstdint>

#include "base/File.h"
#include "base/LoadInHand.h"
#include "base/String.h"
#include "qsb/QSB_Format.h"
#include "scene/KRE_3dObject.h"

/// What the `Load` operations of all scene classes need to know while a QSB file is read. There is
/// only one, so files are read one at a time.
struct QSB_ReadContext {
    int32_t version = kQsbCurrent;
    bool cutToWindow = false; ///< cut all keys to the window below; never set here
    float windowStart = 0;    ///< seconds
    float windowEnd = 0;
    String directory;               ///< of the file; searched first for its textures
    bool singleMipLevel = false;    ///< textures get one mip level
    bool bumpMaps = false;          ///< bump maps are loaded, and vertices get room for them
    bool vertexColors = false;      ///< vertices get diffuse and specular colours
    KRE_3dObject* object = nullptr; ///< not owned; the current one, for messages
    int32_t material = -1; ///< of that object, whose texture is being read; -1: its background

    /// Raises an `Error` of the current object that names the file.
    [[noreturn]] [[gnu::format(printf, 3, 4)]] void Fail(const File& file, const char* format,
                                                         ...) const;
    /// Reads the count of `what`. A count below 0, or above what the bytes left can hold at
    /// `leastBytes` each, is an `Error`.
    int32_t ReadCount(File& file, const char* what, int32_t leastBytes) const;
    /// The check of `ReadCount` for a count that has been read already.
    void CheckCount(const File& file, const char* what, int32_t count, int64_t leastBytes) const;
    /// Reads a text. A length above the bytes left is an `Error`; below 1 it is the empty text.
    void ReadText(File& file, String* textOut) const;
    /// A null pointer is an `Error`.
    void CheckMemory(const File& file, const void* memory) const;
};

extern QSB_ReadContext gQsbReadContext;

/// Makes an object the current one for the lifetime of this.
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
