#pragma once

#include <string>
#include <vector>
#include <windows.h>

/// The bytes of a resource of this program; empty if there is none.
std::vector<BYTE> ResourceBytes(LPCSTR type, int id);

/// A control of a dialog resource. Positions are in dialog units.
struct DialogControl {
    DWORD style = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int id = 0;
    int windowClass = 0; ///< 0x80 a button, 0x82 a static
    int icon = 0;        ///< number of the icon resource in place of a text
    std::string text;
};

struct DialogResource {
    DWORD style = 0;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::string title;
    int fontPoints = 0;
    std::string font;
    std::vector<DialogControl> controls;
};

/// Reads a dialog resource of the plain form. Fails the test if it is of the extended form.
DialogResource ReadDialogResource(int id);
