# System packages that consist of headers only. A cross compiler must not see /usr/include, which is the
# build machine's: each package is symlinked into a build folder, which is the include path on all hosts.
set(header_package_folder ${CMAKE_BINARY_DIR}/packages/include)

# qsa_header_package(TARGET HEADER PACKAGE) makes the library TARGET, whose users include <HEADER> and
# related headers from the Debian package PACKAGE.
function(qsa_header_package target header package)
    find_path(${target}_folder ${header} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
    if(NOT ${target}_folder)
        message(FATAL_ERROR "<${header}> is missing: install the package ${package}")
    endif()
    get_filename_component(name ${header} DIRECTORY)
    file(MAKE_DIRECTORY ${header_package_folder})
    file(CREATE_LINK ${${target}_folder}/${name} ${header_package_folder}/${name}
        COPY_ON_ERROR SYMBOLIC)
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${header_package_folder})
endfunction()

qsa_header_package(json_package nlohmann/json.hpp nlohmann-json3-dev)
qsa_header_package(arguments_package CLI/CLI.hpp libcli11-dev)
if(NOT WIN32) # of the importer
    qsa_header_package(picture_package stb/stb_image.h libstb-dev)
endif()
