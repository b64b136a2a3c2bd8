# Warning flags and sanitizer switches shared by every project target.
add_library(zorvik_warnings INTERFACE)
target_compile_options(zorvik_warnings INTERFACE -Wall -Wextra -Wpedantic)
# ZORVIK_WERROR: a warning in project code stops the build (CI builds this way).
if(ZORVIK_WERROR)
    target_compile_options(zorvik_warnings INTERFACE -Werror)
endif()

# ZORVIK_SANITIZE: AddressSanitizer (with LeakSanitizer) and UndefinedBehaviorSanitizer on
# everything built; any finding stops the program, so a test that meets one fails.
if(ZORVIK_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=address,undefined)
endif()

# ZORVIK_FUZZ: libFuzzer targets in fuzz/. Needs clang (CC=clang CXX=clang++). Every project
# source gets the fuzzer's coverage instrumentation and the two sanitizers, so that the
# fuzzer sees inside the code it exercises; only the fuzz targets link libFuzzer itself.
if(ZORVIK_FUZZ)
    if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        message(FATAL_ERROR "ZORVIK_FUZZ needs clang: configure with CC=clang CXX=clang++")
    endif()
    if(ZORVIK_FUZZ_ASAN)
        add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-omit-frame-pointer
                            -fno-sanitize-recover=undefined)
        add_link_options(-fsanitize=address,undefined)
    else()
        # Long runs: the invariants and UndefinedBehaviorSanitizer still stop the run, at
        # about twice the executions per second of the AddressSanitizer build.
        add_compile_options(-fsanitize=fuzzer-no-link,undefined -fno-omit-frame-pointer
                            -fno-sanitize-recover=undefined)
        add_link_options(-fsanitize=undefined)
    endif()
endif()
