# Two interface targets that every target of the project links and none exports:
#   tovren_warnings  the warnings that are errors on the project's own code, on g++ and clang++ alike
#   tovren_build     what makes a build the same on every machine, and the sanitizers
set(TOVREN_SANITIZE "" CACHE STRING "Sanitizers for -fsanitize=, comma separated")

add_library(tovren_warnings INTERFACE)
target_compile_options(tovren_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

# Reports name the file that holds the check; these maps make that pgm/tovren/... wherever the tree lies.
add_library(tovren_build INTERFACE)
target_compile_options(tovren_build INTERFACE
    -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=
    -fmacro-prefix-map=${PROJECT_BINARY_DIR}/gen/=)
if(TOVREN_SANITIZE)
    target_compile_options(tovren_build INTERFACE
        -fsanitize=${TOVREN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(tovren_build INTERFACE -fsanitize=${TOVREN_SANITIZE})
endif()

# tovren_instrument(TARGET): lets libFuzzer see which code of TARGET an input reaches.
function(tovren_instrument TARGET)
    if(TOVREN_BUILD_FUZZ)
        target_compile_options(${TARGET} PRIVATE -fsanitize=fuzzer-no-link)
    endif()
endfunction()
