# A processor whose numbers begin with their highest byte: everything that takes bytes of a file for a number in
# memory, or the reverse, fails on it.
set(QSA_ARCH s390x)
set(QSA_TRIPLET s390x-linux-gnu)
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x-static)
include(${CMAKE_CURRENT_LIST_DIR}/linux-cross.cmake)
