#pragma once

#include <cstdint>
#include <type_traits>

#include "base/File.h"

/// Write and read a record whose bytes in memory are those of the file: members of one size, so that
/// there is no padding.
template <class T>
void WriteRecord(File& file, const T& record)
{
    static_assert(std::is_trivially_copyable_v<T>);
    file.Write(&record, static_cast<int32_t>(sizeof record));
}

template <class T>
void ReadRecord(File& file, T* recordOut)
{
    static_assert(std::is_trivially_copyable_v<T>);
    file.Read(recordOut, static_cast<int32_t>(sizeof *recordOut));
}

/// Writes the text up to its NUL; what was reserved behind it is no part of a file.
void WriteText(File& file, const String& text);
