# Compiler settings shared by everything in this repository; none of them reaches a user of the installed library.

add_library(kel_options INTERFACE)
target_compile_options(kel_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror
    # Assertion messages name the source file as it is called in the repository.
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)

if(KEL_SANITIZE)
    target_compile_options(kel_options INTERFACE
        -fsanitize=${KEL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(kel_options INTERFACE -fsanitize=${KEL_SANITIZE})
    target_compile_definitions(kel_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(KEL_FUZZ)
    target_compile_options(kel_options INTERFACE -fsanitize=fuzzer-no-link)
    target_link_options(kel_options INTERFACE -fsanitize=fuzzer-no-link)
    target_compile_definitions(kel_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(KEL_COVERAGE)
    target_compile_options(kel_options INTERFACE -fprofile-instr-generate -fcoverage-mapping)
    target_link_options(kel_options INTERFACE -fprofile-instr-generate)
endif()
