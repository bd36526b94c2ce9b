// Keys of tracks in QSB files. The chain has as many links as the file says, so it is walked by loops.

#include <cstring>
#include <type_traits>

#include "base/File.h"
#include "scene/KRE_KeyData.h"

namespace {

constexpr int32_t kVectorKeyBytes = 36;
constexpr int32_t kRotKeyBytes = 84;

template <class T>
constexpr int32_t kDataBytes = kVectorKeyBytes;
template <>
constexpr int32_t kDataBytes<KRE_RotKeyData> = kRotKeyBytes;

// A key in a file: time, interpolation, data, whether a further one follows.
constexpr int32_t kInterpolationAt = 4;
constexpr int32_t kDataAt = 6;

template <class T>
constexpr int32_t kKeyBytes = kDataAt + kDataBytes<T> + 1;

/// Hands the data of a key in the order of files to `visit(field)`.
template <class Key, class Visit>
void VisitData(Key& key, Visit visit)
{
    if constexpr (std::is_same_v<std::remove_const_t<Key>, KRE_RotKeyData>) {
        visit(key.axis);
        visit(key.angle);
        visit(key.tension);
        visit(key.continuity);
        visit(key.bias);
        visit(key.easeIn);
        visit(key.easeOut);
        visit(key.rotation);
        visit(key.inControl);
        visit(key.outControl);
    } else {
        visit(key.value);
        visit(key.inTangent);
        visit(key.outTangent);
    }
}

} // namespace

template <class T>
int32_t KRE_KeyBase<T>::Save(File& file) const
{
    int32_t count = 0;
    for (const T* key = static_cast<const T*>(this); key; key = key->next.get()) {
        uint8_t bytes[kKeyBytes<T>];
        std::memcpy(bytes, &key->time, sizeof key->time);
        std::memcpy(bytes + kInterpolationAt, &key->interpolation, sizeof key->interpolation);
        uint8_t* at = bytes + kDataAt;
        VisitData(*key, [&at](const auto& field) {
            std::memcpy(at, &field, sizeof field);
            at += sizeof field;
        });
        *at = key->next ? 1 : 0;
        file.Write(bytes, static_cast<int32_t>(sizeof bytes));
        ++count;
    }
    return count;
}

template <class T>
bool KRE_KeyBase<T>::Load(File& file)
{
    T& key = static_cast<T&>(*this);
    uint8_t bytes[kKeyBytes<T>];
    file.Read(bytes, static_cast<int32_t>(sizeof bytes));
    std::memcpy(&key.time, bytes, sizeof key.time);
    std::memcpy(&key.interpolation, bytes + kInterpolationAt, sizeof key.interpolation);
    const uint8_t* at = bytes + kDataAt;
    VisitData(key, [&at](auto& field) {
        std::memcpy(&field, at, sizeof field);
        at += sizeof field;
    });
    return *at != 0;
}

template class KRE_KeyBase<KRE_PosKeyData>;
template class KRE_KeyBase<KRE_ScaleKeyData>;
template class KRE_KeyBase<KRE_RotKeyData>;
