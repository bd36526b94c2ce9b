# Common to the cross-builds of the headless programs for other processors. QSA_ARCH is Debian's name of the
# processor, QSA_TRIPLET the compiler's, QSA_DEBIAN_TRIPLET that of Debian's folders where it is another one.
# The libraries come from the folder that tools/cross fills. The programs contain all that they need, so that an
# emulator finds them complete.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_C_COMPILER ${QSA_TRIPLET}-gcc)
set(CMAKE_CXX_COMPILER ${QSA_TRIPLET}-g++)
if(NOT QSA_DEBIAN_TRIPLET)
    set(QSA_DEBIAN_TRIPLET ${QSA_TRIPLET})
endif()
set(CMAKE_LIBRARY_ARCHITECTURE ${QSA_DEBIAN_TRIPLET})
set(CMAKE_FIND_ROOT_PATH ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot/${QSA_ARCH})
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES # Debian's place for headers that differ by processor
    ${CMAKE_FIND_ROOT_PATH}/usr/include/${QSA_DEBIAN_TRIPLET})
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
