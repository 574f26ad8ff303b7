# Parsing GoogleTest is half of what compiling a test takes, and there are many; the daemon's files are alike with
# JSON. Parsed once for programs and once for libraries (which are compiled another way), it is a minute of a build.


if(NOT ZARN_TESTS)
    return()
endif()

file(WRITE ${CMAKE_BINARY_DIR}/precompile/program.cpp "int main() {}\n")
file(WRITE ${CMAKE_BINARY_DIR}/precompile/library.cpp "")
add_executable(test_headers_program ${CMAKE_BINARY_DIR}/precompile/program.cpp)
add_library(test_headers_library OBJECT ${CMAKE_BINARY_DIR}/precompile/library.cpp)
foreach(provider test_headers_program test_headers_library)
    target_link_libraries(${provider} PRIVATE zarn_options GTest::gtest GTest::gmock)
    target_precompile_headers(${provider} PRIVATE
        <gmock/gmock.h> <gtest/gtest.h> <functional> <iostream> <map> <string> <vector>)
endforeach()

function(precompile_tests folder)
    get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target ${targets})
        get_target_property(type ${target} TYPE)
        get_target_property(libraries ${target} LINK_LIBRARIES)
        get_target_property(standard ${target} CXX_STANDARD)
        if(NOT "${libraries}" MATCHES "GTest|gtest|test_console" OR NOT standard EQUAL CMAKE_CXX_STANDARD)
            continue()
        elseif(type STREQUAL EXECUTABLE)
            target_precompile_headers(${target} REUSE_FROM test_headers_program)
        elseif(type MATCHES "OBJECT|STATIC")
            target_precompile_headers(${target} REUSE_FROM test_headers_library)
        endif()
    endforeach()
    get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
    foreach(below ${folders})
        precompile_tests(${below})
    endforeach()
endfunction()
precompile_tests(${CMAKE_CURRENT_SOURCE_DIR}/tests)
