#pragma once

extern const char* const kPageStart;  ///< up to the heading
extern const char* const kPageSearch; ///< the form, up to the choices of a status
extern const char* const kPageEnd;    ///< the script, and the end of the page
