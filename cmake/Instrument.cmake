# Compiler and linker flags of the instrumented presets.
if(QSA_INSTRUMENT STREQUAL "asan")
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    # Line numbers suffice for a report, and more optimisation doubles the time to compile. The
    # compiler's warnings about uninitialised values are not to be trusted in instrumented code.
    add_compile_options(-Wno-maybe-uninitialized)
    set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g1")
elseif(QSA_INSTRUMENT STREQUAL "fuzz")
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(QSA_INSTRUMENT STREQUAL "coverage")
    add_compile_options(--coverage)
    add_link_options(--coverage)
elseif(QSA_INSTRUMENT)
    message(FATAL_ERROR "QSA_INSTRUMENT is '${QSA_INSTRUMENT}'; asan, fuzz, coverage or nothing")
endif()
