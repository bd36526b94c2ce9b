# The headless host has no resource compiler: this converts the string table of the resource file to a
# C++ table, so that both hosts read the same texts.
set(rc ${PROJECT_SOURCE_DIR}/src/app/qsa2qsb.rc)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${rc})
file(STRINGS ${rc} lines)
set(rows "")
set(in_table FALSE)
foreach(line IN LISTS lines)
    if(line MATCHES "^STRINGTABLE")
        set(in_table TRUE)
    elseif(line MATCHES "^END")
        set(in_table FALSE)
    elseif(in_table AND line MATCHES "^ *([0-9]+),? +(\".*\")")
        string(APPEND rows "    {${CMAKE_MATCH_1}, ${CMAKE_MATCH_2}},\n")
    endif()
endforeach()
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/StringTable.cpp @ONLY CONTENT
"// Made from src/app/qsa2qsb.rc by cmake/StringTable.cmake.
#include \"platform/headless/win32/StringTable.h\"

namespace headless {

const StringResource kStringTable[] = {
@rows@};
const unsigned kStringTableCount = sizeof kStringTable / sizeof *kStringTable;

} // namespace headless
")
