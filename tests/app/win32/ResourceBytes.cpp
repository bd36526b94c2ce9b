#include "tests/app/win32/ResourceBytes.h"

#include <cstring>
#include <gtest/gtest.h>

namespace {

/// Reads the 16-bit words that dialog resources are made of; returns zeros beyond the end.
class WordReader {
public:
    explicit WordReader(std::vector<BYTE> all) : bytes(std::move(all)) {}

    WORD Word()
    {
        WORD value = 0;
        if (position + sizeof value <= bytes.size())
            std::memcpy(&value, &bytes[position], sizeof value);
        position += sizeof value;
        return value;
    }

    int Signed() { return static_cast<SHORT>(Word()); }

    DWORD Long()
    {
        const DWORD low = Word();
        return low | static_cast<DWORD>(Word()) << 16;
    }

    std::string Text()
    {
        std::string text;
        for (WORD letter = Word(); letter != 0; letter = Word())
            text += static_cast<char>(letter);
        return text;
    }

    /// Reads a number after 0xFFFF, or a text. Returns the number, or 0 for a text.
    int NumberOrText(std::string& textOut)
    {
        const WORD first = Word();
        if (first == 0xFFFF)
            return Word();
        if (first != 0) {
            position -= sizeof first;
            textOut = Text();
        }
        return 0;
    }

    void Align() { position = (position + 3) & ~size_t{3}; }

private:
    std::vector<BYTE> bytes;
    size_t position = 0;
};

DialogControl ReadControl(WordReader& words)
{
    DialogControl control;
    words.Align();
    control.style = words.Long();
    words.Long(); // extended style
    control.x = words.Signed();
    control.y = words.Signed();
    control.width = words.Signed();
    control.height = words.Signed();
    control.id = words.Signed();
    std::string className;
    control.windowClass = words.NumberOrText(className);
    control.icon = words.NumberOrText(control.text);
    for (WORD extra = words.Word(); extra > 0; --extra) // creation data, counted in bytes
        ADD_FAILURE() << "creation data";
    return control;
}

} // namespace

std::vector<BYTE> ResourceBytes(LPCSTR type, int id)
{
    const HMODULE module = GetModuleHandleA(nullptr);
    const HRSRC found = FindResourceA(module, MAKEINTRESOURCEA(id), type);
    if (found == nullptr)
        return {};
    const auto* first = static_cast<const BYTE*>(LockResource(LoadResource(module, found)));
    return {first, first + SizeofResource(module, found)};
}

DialogResource ReadDialogResource(int id)
{
    WordReader words(ResourceBytes(MAKEINTRESOURCEA(5), id)); // RT_DIALOG
    DialogResource dialog;
    dialog.style = words.Long();
    EXPECT_NE(dialog.style, 0xFFFF0001) << "the mark of the extended form";
    words.Long(); // extended style
    const int count = words.Word();
    dialog.x = words.Signed();
    dialog.y = words.Signed();
    dialog.width = words.Signed();
    dialog.height = words.Signed();
    std::string none;
    EXPECT_EQ(words.NumberOrText(none), 0) << "a menu";
    EXPECT_EQ(words.NumberOrText(none), 0) << "a window class";
    EXPECT_EQ(none, "");
    dialog.title = words.Text();
    dialog.fontPoints = words.Word();
    dialog.font = words.Text();
    for (int i = 0; i < count; ++i)
        dialog.controls.push_back(ReadControl(words));
    return dialog;
}
