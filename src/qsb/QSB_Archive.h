#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <initializer_list>
#include <type_traits>

#include "base/FormatText.h"
#include "platform/LittleEndian.h"
#include "qsb/QSB_InputFile.h"
#include "scene/KRE_ArrayTrack.h"
#include "scene/KRE_KeyList.h"
#include "scene/KRE_ObjectFields.h"

// Every stored record has one list of its fields, in file order: `Fields(archive, record)` in
// QSB_SceneFields.h, QSB_MaterialFields.h and QSB_HeaderFields.h. An archive decides what happens
// to the fields: the two below save and load them, `FieldList` of qsbinfo lists them with their
// names. An operation that only one archive needs is empty in the others; steps that belong only to
// saving or only to loading, such as checks, are in `Save` and `Load` around the list.

/// A record as an archive sees it: only an archive that loads may change it.
template <class Archive, class Record>
using Stored = std::conditional_t<Archive::kLoads, Record, const Record>;

/// The fields of a base class, which has a `Save` and a `Load` of its own.
template <class Base, class Archive, class Record>
void BaseFields(Archive& archive, Record& record)
{
    archive.Record(static_cast<Stored<Archive, Base>&>(record));
}

/// Writes the text up to its NUL; memory reserved after it is not part of a file.
void WriteText(File& file, const String& text);

/// Values stored in files as they are in memory, but for the order of bytes; `Archive::Bytes` transfers them.
template <class Archive>
class QSB_PlainValues {
public:
    /// An integer of one to four bytes, or an enumerator; stored in the size of its type.
    template <class T>
    void Whole(const char*, T& value)
    {
        static_assert(std::is_integral_v<T> || std::is_enum_v<T>);
        Transfer<sizeof(T), sizeof(T)>(value);
    }
    template <class T>
    void Real(const char*, T& value)
    {
        static_assert(std::is_same_v<std::remove_const_t<T>, float>);
        Transfer<4>(value);
    }
    template <class T, size_t N>
    void Reals(const char*, T (&values)[N])
    {
        static_assert(std::is_same_v<std::remove_const_t<T>, float>);
        Transfer<4 * N>(values);
    }
    /// A colour 0xAARRGGBB, flags.
    template <class T>
    void Bits(const char*, T& bits)
    {
        Transfer<4>(bits);
    }
    template <class T>
    void Vector(const char*, T& vector)
    {
        Transfer<12>(vector);
    }
    template <class T>
    void Quaternion(const char*, T& quaternion)
    {
        Transfer<16>(quaternion);
    }
    template <class T>
    void Color(const char*, T& color)
    {
        Transfer<16>(color);
    }
    template <class T>
    void Matrix(const char*, T& matrix)
    {
        Transfer<64>(matrix);
    }
    /// A matrix whose fourth column is 0, 0, 0, 1 and is not stored.
    template <class T>
    void AffineMatrix(const char*, T& matrix)
    {
        if constexpr (Archive::kLoads)
            matrix = IdentityMatrix();
        for (auto& row : matrix.m)
            TransferWords<3 * sizeof row[0], sizeof row[0]>(row);
    }

private:
    /// The value consists of words of `kWordBytes`.
    template <size_t kBytes, size_t kWordBytes = 4, class T>
    [[gnu::always_inline]] void Transfer(T& value)
    {
        static_assert(std::is_trivially_copyable_v<T> && sizeof(T) == kBytes);
        TransferWords<kBytes, kWordBytes>(&value);
    }
    template <size_t kBytes, size_t kWordBytes, class T>
    [[gnu::always_inline]] void TransferWords(T* words)
    {
        auto& archive = *static_cast<Archive*>(this);
        if constexpr (Archive::kLoads) {
            archive.Bytes(words, kBytes);
            ReorderWords(words, kWordBytes, kBytes / kWordBytes);
        } else {
            UseInFileOrder<kBytes, kWordBytes>(
                words, [&archive](const void* bytes) { archive.Bytes(bytes, kBytes); });
        }
    }
};

/// Writes records in the current version.
class QSB_SaveArchive : public QSB_PlainValues<QSB_SaveArchive> {
public:
    static constexpr bool kLoads = false;
    struct Flag {
        const char* name;
        const int32_t& value;
    };

    explicit QSB_SaveArchive(File& fileIn) : file(fileIn) {}

    /// Whether the file has what a version introduced.
    bool Has(QSB_Version) const { return true; }
    void Bytes(const void* bytes, size_t size) { file.Write(bytes, static_cast<int32_t>(size)); }
    void Text(const char*, const String& text) { WriteText(file, text); }
    template <size_t N>
    void Text(const char*, const char (&text)[N])
    {
        const auto length = static_cast<int32_t>(strnlen(text, N));
        file.WriteInt32(length);
        file.Write(text, length);
    }
    /// The name of an object; lists show it apart from the fields.
    void Name(const String& name) { WriteText(file, name); }
    /// One byte, the first flag in bit 0.
    void Flags(std::initializer_list<Flag> flags)
    {
        uint32_t packed = 0;
        uint32_t bit = 1;
        for (const Flag& flag : flags) {
            packed |= flag.value ? bit : 0;
            bit <<= 1;
        }
        file.WriteInt8(static_cast<int8_t>(packed));
    }
    /// A byte that says whether an optional value follows.
    bool IsGiven(const uint8_t& isGiven)
    {
        file.WriteInt8(static_cast<int8_t>(isGiven));
        return isGiven != 0;
    }
    /// The keys of an object, after their count. A list without keys is stored with count 0,
    /// whatever its counter says: a count without a chain after it could not be read again. False
    /// if `count` is not the number of keys.
    template <class Key>
    bool Keys(const char*, const char*, const KRE_KeyList<Key>& keys, int32_t count)
    {
        file.WriteInt32(keys ? count : 0);
        return !keys || keys.Head()->Save(file) == count;
    }
    /// The keys of a material's track, whose count comes before its other fields.
    template <class Key>
    void TrackKeys(const KRE_ArrayTrack<Key>& track, int32_t count, int32_t keyBytes)
    {
        if (int64_t{count} * keyBytes > INT32_MAX) {
            file.Error("Error writing to file"); // as for any file that would grow too large
            return;
        }
        for (int32_t i = 0; i < count; ++i)
            Fields(*this, track.Key(i));
    }
    /// A part whose fields count as the record's own.
    template <class Part>
    void Record(const Part& part)
    {
        part.Part::Save(file);
    }
    /// A part that lists show separately.
    template <class Part>
    void Track(const char*, const Part& track)
    {
        track.Save(file);
    }

protected:
    File& file;
};

/// Collects the bytes of a short record without track keys, whose texts are empty, as
/// `QSB_SaveArchive` would write them, so that the file takes them at once.
class QSB_RecordBytes : public QSB_PlainValues<QSB_RecordBytes> {
public:
    static constexpr bool kLoads = false;

    /// Inlined, so that the compiler knows the place of each field.
    [[gnu::always_inline]] void Bytes(const void* added, size_t count)
    {
        assert(count <= sizeof bytes - size);
        std::memcpy(bytes + size, added, count);
        size += count;
    }
    bool Has(QSB_Version) const { return true; }
    void Text(const char*, [[maybe_unused]] const String& text)
    {
        assert(text.IsEmpty());
        const int32_t length = 0;
        Bytes(&length, sizeof length);
    }
    template <class Part>
    void Record(const Part& part)
    {
        Fields(*this, part);
    }
    template <class Part>
    void Track(const char*, const Part& track)
    {
        Fields(*this, track);
    }
    bool IsGiven(const uint8_t& isGiven)
    {
        Bytes(&isGiven, 1);
        return isGiven != 0;
    }
    template <class Key>
    void TrackKeys([[maybe_unused]] const KRE_ArrayTrack<Key>& track, int32_t count, int32_t)
    {
        assert(count == 0);
    }
    void WriteTo(File& file) const { file.Write(bytes, static_cast<int32_t>(size)); }
    void AddTo(QSB_RecordBytes& other) const { other.Bytes(bytes, size); }

private:
    uint8_t bytes[512];
    size_t size = 0;
};

/// Reads records of a file, each as the file's version has it.
class QSB_LoadArchive : public QSB_PlainValues<QSB_LoadArchive> {
public:
    static constexpr bool kLoads = true;
    struct Flag {
        const char* name;
        int32_t& value;
    };

    explicit QSB_LoadArchive(QSB_InputFile& fileIn) : file(fileIn) {}

    bool Has(QSB_Version version) const { return file.version >= version; }
    void Bytes(void* bytesOut, size_t size) { file.Read(bytesOut, static_cast<int32_t>(size)); }
    void Text(const char*, String& text) { file.ReadText(&text); }
    /// Truncated to the room available.
    template <size_t N>
    void Text(const char*, char (&text)[N])
    {
        String stored;
        file.ReadText(&stored);
        CopyText(text, N, stored.c_str());
    }
    void Name(String& name) { file.ReadText(&name); }
    void Flags(std::initializer_list<Flag> flags)
    {
        uint8_t packed = 0;
        file.ReadInt8(&packed);
        uint32_t bit = 1;
        for (const Flag& flag : flags) {
            flag.value = packed & bit ? 1 : 0;
            bit <<= 1;
        }
    }
    bool IsGiven(uint8_t& isGiven)
    {
        file.ReadInt8(&isGiven);
        return isGiven != 0;
    }
    /// The chain is as long as its keys say; `what` names them in the error if the count is too
    /// large.
    template <class Key>
    bool Keys(const char*, const char* what, KRE_KeyList<Key>& keys, int32_t& count)
    {
        count = file.ReadCount(what, kQsbLeastKey);
        for (bool more = count > 0; more;) {
            Key key;
            more = key.Load(file);
            keys.Append(key);
        }
        return true;
    }
    template <class Key>
    void TrackKeys(KRE_ArrayTrack<Key>& track, int32_t count, int32_t keyBytes)
    {
        file.CheckCount("track keys", count, keyBytes);
        track.SetKeyCount(count);
        if (count == 0)
            return;
        file.CheckMemory(track.Keys());
        for (int32_t i = 0; i < count; ++i)
            Fields(*this, track.Key(i));
    }
    template <class Part>
    void Record(Part& part)
    {
        part.Part::Load(file);
    }
    template <class Part>
    void Track(const char*, Part& track)
    {
        track.Load(file);
    }

protected:
    QSB_InputFile& file;
};

/// Saves and loads the fields of a record that needs nothing else.
template <class Record>
void SaveFields(File& file, const Record& record)
{
    QSB_SaveArchive archive(file);
    Fields(archive, record);
}

template <class Record>
void LoadFields(QSB_InputFile& file, Record& record)
{
    QSB_LoadArchive archive(file);
    Fields(archive, record);
}
