#include "platform/headless/d3dx/effect/FxTextBuffer.h"

#include <new>
#include <utility>

#include "platform/headless/d3d9/ComObject.h"

namespace headless::fx {

namespace {

constexpr IID kBufferId = {
    0x8BA5FB08, 0x5195, 0x40E2, {0xAC, 0x58, 0x0D, 0x98, 0x9C, 0x3A, 0x01, 0x02}};

class TextBuffer final : public ComObject<ID3DXBuffer, kBufferId> {
public:
    explicit TextBuffer(std::string content) : text(std::move(content)) {}

    LPVOID STDMETHODCALLTYPE GetBufferPointer() override { return text.data(); }
    DWORD STDMETHODCALLTYPE GetBufferSize() override { return static_cast<DWORD>(text.size() + 1); }

private:
    std::string text;
};

} // namespace

ID3DXBuffer* FxMakeTextBuffer(const std::string& text)
{
    return new (std::nothrow) TextBuffer(text);
}

} // namespace headless::fx
