#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Text on its way to a stream, gathered into larger pieces; without a stream it is kept.
class Output {
public:
    /// `streamIn` is not owned; null keeps the text.
    explicit Output(FILE* streamIn = nullptr) : stream(streamIn) {}
    ~Output() { Flush(); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void Add(std::string_view bytes);
    /// Writes the texts one after the other, and a line end.
    void Line(std::initializer_list<std::string_view> parts);
    /// False if any of the text could not be written.
    bool Flush();
    /// The text that was kept.
    const std::string& Text() const { return text; }

private:
    FILE* stream; ///< not owned; null keeps the text
    std::string text;
    bool hasFailed = false;
};
