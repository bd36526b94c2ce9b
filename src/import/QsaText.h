#pragma once

#include <string>

/// A text of the scene format under construction. Numbers are the shortest that read back as the same float.
class QsaText {
public:
    /// "*WORD {", to be closed by `Close`.
    void Open(const std::string& head);
    void Close();
    /// A line of a keyword and its values.
    QsaText& Line(const char* keyword);
    QsaText& Add(double value);
    /// Also the sign of a zero, which positions keep.
    QsaText& AddExact(float value);
    QsaText& AddWhole(long long value);
    QsaText& AddText(const std::string& value);  ///< in quotes
    QsaText& AddPlain(const std::string& value); ///< as it is
    template <class Vector>
    QsaText& AddVector(const Vector& vector)
    {
        return Add(vector[0]).Add(vector[1]).Add(vector[2]);
    }

    const std::string& Text() const { return text; }

private:
    void Indent();

    std::string text;
    size_t depth = 0;
};
