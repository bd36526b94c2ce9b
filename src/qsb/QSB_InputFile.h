#pragma once

#include <cstdint>

#include "base/File.h"
#include "base/LoadInHand.h"
#include "base/String.h"
#include "qsb/QSB_Format.h"

class KRE_3dObject;

/// A QSB file that is read, with what the `Load` operations of all scene classes need to know about
/// it. Every `Load` takes this type, so a plain `File`, which has no version, does not compile there.
class QSB_InputFile : public File {
public:
    /// Raises an `Error` of the object in hand that names the file.
    [[noreturn]] [[gnu::format(printf, 2, 3)]] void Fail(const char* format, ...) const;
    /// Reads the count of `what`. A count below 0, or above what the bytes left can hold at
    /// `leastBytes` each, is an `Error`.
    int32_t ReadCount(const char* what, int32_t leastBytes);
    /// The check of `ReadCount` for a count that has been read already.
    void CheckCount(const char* what, int32_t count, int64_t leastBytes) const;
    /// Reads a text. A length above the bytes left is an `Error`; below 1 it is the empty text.
    void ReadText(String* textOut);
    /// A null pointer is an `Error`.
    void CheckMemory(const void* memory) const;

    int32_t version = kQsbCurrent;
    bool cutToWindow = false; ///< cut all keys to the window below; never set here
    float windowStart = 0;    ///< seconds
    float windowEnd = 0;
    String directory;               ///< of the file; searched first for its textures
    bool singleMipLevel = false;    ///< textures get one mip level
    bool bumpMaps = false;          ///< bump maps are loaded, and vertices get room for them
    bool vertexColors = false;      ///< vertices get diffuse and specular colours
    KRE_3dObject* object = nullptr; ///< not owned; the one in hand, for messages
    int32_t material = -1; ///< of that object, whose texture is being read; -1: its background
};

/// Makes an object the one in hand for the lifetime of this.
class QSB_ObjectInHand {
public:
    QSB_ObjectInHand(QSB_InputFile& fileIn, KRE_3dObject& object);
    ~QSB_ObjectInHand() { file.object = before; }
    QSB_ObjectInHand(const QSB_ObjectInHand&) = delete;
    QSB_ObjectInHand& operator=(const QSB_ObjectInHand&) = delete;

private:
    QSB_InputFile& file;
    KRE_3dObject* before; ///< not owned
    LoadScope name;
};
