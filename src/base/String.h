#pragma once

#include <cstdint>
#include <memory>

/// Plain heap string of bytes. A copy is a real copy; a null `data` reads as the empty text.
/// Operations on the text see it up to its first NUL; copies and files take all `length` bytes.
class String {
public:
    constexpr String() = default;
    /// Null gives the empty string.
    String(const char* text);
    String(const String& other);
    String(String&& other) noexcept;
    String& operator=(const String& other);
    String& operator=(String&& other) noexcept;
    ~String() = default;

    /// Frees the buffer: `data` null, `length` 0.
    void Clear();
    /// Frees the old buffer and allocates one for `size` characters, with a NUL at its start and
    /// `length` = `size`. Below 0 the string stays empty, without a buffer.
    void Allocate(int32_t size);
    /// Takes over a copy of the source. Nothing happens if the source is this very buffer; a null or
    /// empty text empties the string. The source may lie inside this buffer.
    void Assign(const String& source);
    void Assign(const char* text);
    /// Takes `size` bytes that need not end in a NUL. Below 1 empties the string.
    void Assign(const char* bytes, int32_t size);
    /// The text; never null.
    const char* c_str() const { return data ? data.get() : ""; }
    bool IsEmpty() const { return c_str()[0] == 0; }
    /// Length of the text up to its NUL; less than `length` where `GetBuffer` reserved more.
    int32_t TextLength() const;
    /// Makes room for `size` characters and returns `data`, owned by this string. The text is
    /// kept, `length` grows to `size` if needed and never shrinks. Null only for a string without a
    /// buffer when `size` is below 0.
    char* GetBuffer(int32_t size);
    /// Whether the text ends in `text`, without regard to case. An empty or null one always matches.
    bool EndsWith(const char* text) const;
    /// First position of `text`, without regard to case, or -1; -1 also for a null `text` or when
    /// this string is empty.
    int32_t Find(const char* text) const;
    /// Reads `count` floats separated by commas. False if a piece is empty or the text runs out
    /// before `count`; the values before that are stored. Does not depend on the locale.
    bool ParseFloats(float* valuesOut, int32_t count) const;
    /// Replaces the content by formatted text, truncated to 4095 characters. The arguments may point into
    /// this string.
    [[gnu::format(printf, 2, 3)]] void Format(const char* format, ...);
    /// Appends `text`; null adds nothing. `text` may lie inside this buffer.
    void Append(const char* text);

    std::unique_ptr<char[]> data; ///< owned; `length` + 1 bytes, or null
    int32_t length = 0;           ///< of the text, or the size that `GetBuffer` reserved
};
