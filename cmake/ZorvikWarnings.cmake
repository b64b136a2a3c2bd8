# Warning flags and sanitizer switches shared by every project target.
add_library(zorvik_warnings INTERFACE)
target_compile_options(zorvik_warnings INTERFACE -Wall -Wextra -Wpedantic)

if(ZORVIK_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer
                        -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=address,undefined)
endif()
