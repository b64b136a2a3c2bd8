# The fuzz targets, shared by the libFuzzer build (fuzz/CMakeLists.txt, -DZORVIK_FUZZ=ON with
# clang) and the corpus replay tests of every build (tests/reliability/CMakeLists.txt).
set(ZORVIK_FUZZ_DIR ${CMAKE_CURRENT_LIST_DIR})

set(ZORVIK_FUZZ_RECEIVE_SOURCES
    ${ZORVIK_FUZZ_DIR}/FuzzInput.h
    ${ZORVIK_FUZZ_DIR}/NaiveFrameDecoder.h ${ZORVIK_FUZZ_DIR}/NaiveFrameDecoder.cpp
    ${ZORVIK_FUZZ_DIR}/ReceiveDifferential.h ${ZORVIK_FUZZ_DIR}/ReceiveDifferential.cpp
    ${ZORVIK_FUZZ_DIR}/ReceiveFuzzTarget.cpp)

set(ZORVIK_FUZZ_PROFILE_SOURCES
    ${ZORVIK_FUZZ_DIR}/FuzzInput.h
    ${ZORVIK_FUZZ_DIR}/ProfileChanges.h ${ZORVIK_FUZZ_DIR}/ProfileChanges.cpp
    ${ZORVIK_FUZZ_DIR}/ProfileFuzzTarget.cpp)

set(ZORVIK_FUZZ_WAVEFORM_SOURCES
    ${ZORVIK_FUZZ_DIR}/FuzzInput.h
    ${ZORVIK_FUZZ_DIR}/WaveformFuzzTarget.cpp)

# zorvik_fuzz_executable(<target> <LIBFUZZER|REPLAY> <sources>...)
# LIBFUZZER links libFuzzer's own main; REPLAY links a main that runs the target once on every
# file of the folders named on its command line.
function(zorvik_fuzz_executable target kind)
    add_executable(${target} ${ARGN})
    target_include_directories(${target} PRIVATE ${ZORVIK_FUZZ_DIR})
    target_link_libraries(${target} PRIVATE zorvik_core zorvik_warnings)
    if(kind STREQUAL "LIBFUZZER")
        target_compile_options(${target} PRIVATE -fsanitize=fuzzer)
        target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    else()
        target_sources(${target} PRIVATE ${ZORVIK_FUZZ_DIR}/CorpusReplayMain.cpp)
    endif()
endfunction()
