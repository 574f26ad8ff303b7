# Common headers are parsed once: JSON's for the daemon, the standard library's for the plug-in and the host. Builds
# without ZARN_PRECOMPILE detect missing includes.
function(precompile_headers provider)
    cmake_parse_arguments(given "" "" "HEADERS;TARGETS" ${ARGN})
    file(WRITE ${CMAKE_BINARY_DIR}/precompile/${provider}.cpp "")
    add_library(${provider} OBJECT ${CMAKE_BINARY_DIR}/precompile/${provider}.cpp)
    target_link_libraries(${provider} PRIVATE zarn_options)
    target_precompile_headers(${provider} PRIVATE ${given_HEADERS})
    foreach(target ${given_TARGETS})
        target_precompile_headers(${target} REUSE_FROM ${provider})
    endforeach()
endfunction()

precompile_headers(daemon_headers
    HEADERS <nlohmann/json.hpp> <functional> <map> <string> <vector>
    TARGETS norvex_sim_rpc norvex_sim_control norvex_sim_tv norvex_sim_device norvex_sim_debug norvex_sim_pipelines
            norvex_sim_services)
precompile_headers(console_headers
    HEADERS <functional> <iostream> <map> <sstream> <string> <thread> <vector>
    TARGETS zarn_debugmenu_driver zarn_debugutil zarn_simplemenu zarn_tpms zarn_host)
