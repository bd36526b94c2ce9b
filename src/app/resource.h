#pragma once

// Numbers of the resources in qsa2qsb.rc. The resource compiler reads this file, so it has only macros.

#define RESOURCE_STRING_WINDOW_TITLE 103
#define RESOURCE_STRING_STARTUP_TEXT 106
#define RESOURCE_STRING_WINDOW_CLASS 109

#define RESOURCE_ICON_MAIN 107
#define RESOURCE_ICON_SMALL 108
#define RESOURCE_MENU 109
#define RESOURCE_INFO_DIALOG 103

#define ID_INFO 104
#define ID_EXIT 105
#define ID_TEXTURE_PATH 32771
#define ID_SAVE_BINARY 32773
#define ID_OPEN 32774
#define ID_SCENE_INFO 32775
#define ID_BASE_PATH 32782
