#include "qsa/QSA_NameAttributes.h"

#include <cstring>

#include "base/ParseNumber.h"

namespace {

const char* SkipBlanks(const char* at)
{
    while (*at == ' ' || *at == '\t')
        ++at;
    return at;
}

} // namespace

String GetNameAttribute(const char* text, const char* key)
{
    String value;
    const char* at = std::strstr(text, key);
    if (!at)
        return value;
    at = SkipBlanks(at + std::strlen(key));
    if (*at != '=')
        return value;
    at = SkipBlanks(at + 1);
    if (*at != '\'')
        return value;
    const char* first = at + 1;
    const char* close = std::strchr(first, '\'');
    value.Assign(first, static_cast<int32_t>(close ? close - first
                                                   : static_cast<ptrdiff_t>(std::strlen(first))));
    return value;
}

void ParseEffectAttributes(const char* text, KRE_EffectParams* paramsOut)
{
    paramsOut->name = GetNameAttribute(text, "shader");
    for (int32_t i = 0; i < KRE_EffectParams::kParams; ++i) {
        KRE_EffectParam& param = paramsOut->params[i];
        String key;
        key.Format("fParam%i", i + 1);
        String value = GetNameAttribute(text, key.c_str());
        if (!value.IsEmpty()) {
            const char* first = value.c_str();
            param.hasFloat = 1;
            param.floatValue = static_cast<float>(ParseDouble(first, first + value.TextLength()));
        }
        key.Format("vParam%i", i + 1);
        value = GetNameAttribute(text, key.c_str());
        if (!value.IsEmpty())
            param.hasVector = value.ParseFloats(param.vectorValue, 3) ? 1 : 0;
    }
}
