# The contents of the packages: a .deb of the headless program, a zip of the Windows program. The presets
# of CMakePresets.json choose one: `cpack --preset deb`, `zip-x64`, `zip-x86`.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY TRUE) # a package needs its programs, not the tests
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE) # whatever the umask
if(WIN32)
    set(program_folder .)
    set(document_folder docs)
    set(example_folder examples)
else()
    set(program_folder bin)
    set(document_folder share/doc/qsa2qsb)
    set(example_folder share/doc/qsa2qsb/examples)
endif()

# qsa_compress(FILE NAME FOLDER) installs FILE as FOLDER/NAME.gz, without a time stamp, so that
# the same sources give the same package.
function(qsa_compress file name folder)
    set(compressed ${CMAKE_BINARY_DIR}/packaging/${name}.gz)
    install(CODE "file(MAKE_DIRECTORY \"${CMAKE_BINARY_DIR}/packaging\")
execute_process(COMMAND gzip -9nc \"${file}\" OUTPUT_FILE \"${compressed}\"
    COMMAND_ERROR_IS_FATAL ANY)")
    install(FILES ${compressed} DESTINATION ${folder})
endfunction()

# qsa_package(NAME) puts the program NAME into the packages, on Linux with packaging/NAME.1 and, if
# they exist, its completions for bash, zsh and fish. It builds the program first, so no package is stale.
function(qsa_package name)
    install(CODE "execute_process(COMMAND \"${CMAKE_COMMAND}\" --build \"${CMAKE_BINARY_DIR}\"
    --target ${name} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)")
    install(TARGETS ${name} RUNTIME DESTINATION ${program_folder})
    if(WIN32)
        return()
    endif()
    qsa_compress(${PROJECT_SOURCE_DIR}/packaging/${name}.1 ${name}.1 share/man/man1)
    install(FILES packaging/${name}.bash-completion OPTIONAL RENAME ${name}
        DESTINATION share/bash-completion/completions)
    install(FILES packaging/${name}.zsh-completion OPTIONAL RENAME _${name}
        DESTINATION share/zsh/vendor-completions)
    install(FILES packaging/${name}.fish OPTIONAL DESTINATION share/fish/vendor_completions.d)
endfunction()

qsa_package(qsa2qsb)
qsa_package(qsbinfo)
if(TARGET qsbexport)
    qsa_package(qsbexport)
endif()
if(TARGET qsaimport)
    qsa_package(qsaimport)
endif()
if(TARGET qsbatch)
    qsa_package(qsbatch)
endif()

# User documents only, not those about the sources. Conversions leave files next to the
# examples, so the patterns list what to install.
install(DIRECTORY docs/ DESTINATION ${document_folder} FILES_MATCHING PATTERN "*.md" PATTERN "*.png"
    PATTERN "*.schema.json" PATTERN architecture.md EXCLUDE PATTERN extending.md EXCLUDE PATTERN packaging.md EXCLUDE
    PATTERN testing.md EXCLUDE PATTERN where.md EXCLUDE PATTERN README.md EXCLUDE)
if(NOT WIN32)
    install(DIRECTORY farm DESTINATION ${document_folder} USE_SOURCE_PERMISSIONS)
endif()
install(DIRECTORY examples/ DESTINATION ${example_folder} FILES_MATCHING PATTERN "*.md"
    PATTERN "*.qsa" PATTERN "*.ifl" PATTERN "*.fx" PATTERN "*.fxo" PATTERN "*.png" PATTERN "*.tga" PATTERN "*.bmp"
    PATTERN "*.jpg" PATTERN "*.dds" PATTERN frames EXCLUDE)

set(CPACK_PACKAGE_NAME qsa2qsb)
set(CPACK_PACKAGE_VENDOR "QSA2QSB developers")
set(CPACK_PACKAGE_CONTACT "QSA2QSB developers <maintainers@qsa2qsb.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "batch converter of 3D scenes from QSA text to QSB binary")
set(CPACK_PACKAGE_DESCRIPTION "\
Converts 3D scenes that a modelling package exported in the QSA text format,
one file or a whole tree, to QSB, the compact binary form that a runtime
loads without parsing. It can keep a picture of one frame of each scene as
proof that it loaded.

This program needs neither a display nor a graphics card: it brings a
software rasterizer, and serves build farms and asset pipelines.")
set(CPACK_STRIP_FILES TRUE)
set(CPACK_THREADS 2)
if(WIN32)
    configure_file(packaging/README.txt packaging/README.txt @ONLY NEWLINE_STYLE CRLF)
    configure_file(packaging/copyright packaging/copyright.txt @ONLY NEWLINE_STYLE CRLF)
    install(FILES ${CMAKE_BINARY_DIR}/packaging/README.txt
        ${CMAKE_BINARY_DIR}/packaging/copyright.txt DESTINATION .)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_SYSTEM_NAME x64)
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
        set(CPACK_SYSTEM_NAME x86)
    endif()
else()
    install(FILES packaging/copyright DESTINATION ${document_folder})
    qsa_compress(${PROJECT_SOURCE_DIR}/packaging/changelog changelog ${document_folder})
    set(CPACK_GENERATOR DEB)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_PACKAGE_HOMEPAGE_URL https://qsa2qsb.invalid)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
    set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS TRUE)
    set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
    set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION TRUE)
endif()
include(CPack)
