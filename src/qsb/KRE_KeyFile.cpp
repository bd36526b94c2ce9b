// Keys of tracks in QSB files. The file decides how many links the chain has, so it is walked by
// loops.

#include "qsb/QSB_SceneFields.h"

template <class T>
int32_t KRE_KeyBase<T>::Save(File& file) const
{
    int32_t count = 0;
    for (const T* key = static_cast<const T*>(this); key; key = key->next.get()) {
        QSB_RecordBytes record;
        Fields(record, *key);
        const uint8_t hasNext = key->next ? 1 : 0;
        record.Whole("hasNext", hasNext);
        record.WriteTo(file);
        ++count;
    }
    return count;
}

template <class T>
bool KRE_KeyBase<T>::Load(QSB_InputFile& file)
{
    LoadFields(file, static_cast<T&>(*this));
    uint8_t hasNext = 0;
    file.ReadInt8(&hasNext);
    return hasNext != 0;
}

template class KRE_KeyBase<KRE_PosKeyData>;
template class KRE_KeyBase<KRE_ScaleKeyData>;
template class KRE_KeyBase<KRE_RotKeyData>;
