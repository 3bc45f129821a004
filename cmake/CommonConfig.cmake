# One place for the language standard, warnings and sanitizers, so every
# target of the program is built with the same strictness.
add_library(orv_common INTERFACE)
target_compile_features(orv_common INTERFACE cxx_std_20)
target_compile_options(orv_common INTERFACE -Wall -Wextra -Wpedantic)
if(ORVANTA_WERROR)
    target_compile_options(orv_common INTERFACE -Werror)
endif()
if(ORVANTA_SANITIZE)
    target_compile_options(orv_common INTERFACE -fsanitize=address,undefined -fno-omit-frame-pointer
                                                -fno-sanitize-recover=undefined)
    target_link_options(orv_common INTERFACE -fsanitize=address,undefined)
endif()
if(ORVANTA_FUZZ)
    # Coverage for libFuzzer in every library; the harnesses link its main.
    target_compile_options(orv_common INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    target_link_options(orv_common INTERFACE -fsanitize=address,undefined)
endif()
target_include_directories(orv_common INTERFACE ${PROJECT_SOURCE_DIR}/src)

# orv_core_module(NAME DEPS...) builds every .cpp in src/core/NAME into the
# static library orv_NAME. Each subsystem is its own library so that a test
# suite links only what it uses.
# A module without sources yet is an interface library, so that the targets
# which name it still configure and link.
function(orv_core_module name)
    file(GLOB_RECURSE _src CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/core/${name}/*.cpp)
    if(_src)
        add_library(orv_${name} STATIC ${_src})
        target_link_libraries(orv_${name} PUBLIC orv_common ${ARGN})
    else()
        add_library(orv_${name} INTERFACE)
        target_link_libraries(orv_${name} INTERFACE orv_common ${ARGN})
    endif()
endfunction()

# orv_test_suite(NAME DIR DEPS...) builds every .cpp in DIR into one test
# executable test_NAME and registers its cases with CTest.
function(orv_test_suite name dir)
    file(GLOB_RECURSE _src CONFIGURE_DEPENDS ${dir}/*.cpp)
    if(NOT _src)
        return()
    endif()
    add_executable(test_${name} ${_src})
    target_link_libraries(test_${name} PRIVATE orv_test_support ${ARGN} GTest::gmock GTest::gtest_main)
    gtest_discover_tests(test_${name} DISCOVERY_TIMEOUT 60
        PROPERTIES ENVIRONMENT "ORVANTA_SOURCE_DIR=${PROJECT_SOURCE_DIR};ORVANTA_BINARY_DIR=${PROJECT_BINARY_DIR}")
endfunction()
