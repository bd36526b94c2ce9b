#include "import/QsaText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

void QsaText::Indent()
{
    if (!text.empty() && text.back() != '\n')
        text += '\n';
    text.append(depth, '\t');
}

void QsaText::Open(const std::string& head)
{
    Indent();
    text += head;
    text += " {\n";
    ++depth;
}

void QsaText::Close()
{
    --depth;
    Indent();
    text += "}\n";
}

QsaText& QsaText::Line(const char* keyword)
{
    Indent();
    text += keyword;
    return *this;
}

QsaText& QsaText::Add(double value)
{
    constexpr double kMost = std::numeric_limits<float>::max();
    const float rounded =
        std::isfinite(value) ? static_cast<float>(std::clamp(value, -kMost, kMost)) : 0.0f;
    return AddExact(rounded == 0 ? 0.0f : rounded);
}

QsaText& QsaText::AddExact(float rounded)
{
    char digits[32];
    text += '\t';
    text.append(digits, std::to_chars(digits, digits + sizeof digits, rounded).ptr);
    return *this;
}

QsaText& QsaText::AddWhole(long long value)
{
    text += '\t' + std::to_string(value);
    return *this;
}

QsaText& QsaText::AddText(const std::string& value)
{
    text += "\t\"" + value + '"';
    return *this;
}

QsaText& QsaText::AddPlain(const std::string& value)
{
    text += '\t' + value;
    return *this;
}
