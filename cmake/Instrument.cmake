# Compiler and linker flags of the instrumented presets.
if(QSA_INSTRUMENT STREQUAL "asan")
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    add_compile_definitions(__SANITIZE_ADDRESS__) # as g++ defines it; clang only has a feature test
    # Line numbers are enough for a report. Tests are compiled more often than they run, so optimising them more
    # takes longer than it saves. Long fuzzing wants it, and its driver tracks the coverage of src.
    if(QSA_FUZZING)
        # Neither ninja nor ccache looks into the list, so its content is in the command.
        set(uncovered fuzz/uncovered.txt)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${uncovered})
        file(SHA1 ${CMAKE_SOURCE_DIR}/${uncovered} content)
        set(QSA_SOURCE_INSTRUMENTS -fsanitize=fuzzer-no-link
            -fsanitize-coverage-ignorelist=../../${uncovered} -DQSA_UNCOVERED=${content})
        # It compares two addresses wherever a pointer is moved, which the driver would record each time. The tests
        # under sanitizers, which take all inputs of the corpora, have it.
        add_compile_options(-fno-sanitize=pointer-overflow)
        set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -gline-tables-only")
    else()
        set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -gline-tables-only")
    endif()
elseif(QSA_INSTRUMENT MATCHES "^(coverage|branches)$") # "branches": the fuzz targets are built too
    # Without optimisation, so that each condition is there.
    add_compile_options(-fprofile-instr-generate -fcoverage-mapping)
    add_link_options(-fprofile-instr-generate)
    if(QSA_INSTRUMENT STREQUAL "coverage")
        # The counters are shared memory of their file, so a process that is killed or leaves by _exit counts too.
        # Several processes add to them at a time: without atomic additions some would be lost.
        add_compile_options("SHELL:-mllvm -runtime-counter-relocation" -fprofile-update=atomic)
        # Otherwise a source that does not call an inline function of a header hides the counters of one that does.
        add_compile_options("SHELL:-mllvm -limited-coverage-experimental")
    endif()
elseif(QSA_INSTRUMENT)
    message(FATAL_ERROR "QSA_INSTRUMENT is '${QSA_INSTRUMENT}'; asan, coverage, branches or nothing")
endif()
