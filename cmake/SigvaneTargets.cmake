include_guard()

# sigvane_add_library(<room> SOURCES <files>... [LINK <libraries>...])
# One room, one static library sigvane_<room> (alias sigvane::<room>), named after the last folder of its path;
# its files are included by the whole path from the top, as "widgets/trend/File.h".
function(sigvane_add_library room)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
    add_library(sigvane_${room} STATIC ${ARG_SOURCES})
    add_library(sigvane::${room} ALIAS sigvane_${room})
    target_include_directories(sigvane_${room} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(sigvane_${room} PUBLIC ${ARG_LINK})
    target_compile_features(sigvane_${room} PUBLIC cxx_std_20)
    target_compile_definitions(sigvane_${room} PRIVATE
        QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING
        QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
endfunction()

# sigvane_add_test(<name> LINK <libraries>... [TIMEOUT <seconds>] [LABELS <labels>...])
# One Qt Test executable from <name>.cpp, with a home and settings folder of its own and no screen.
function(sigvane_add_test name)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "LINK;LABELS")
    add_executable(${name} ${name}.cpp)
    target_link_libraries(${name} PRIVATE ${ARG_LINK} sigvane_test_support Qt6::Test)
    add_test(NAME ${name} COMMAND ${name})
    set(home "${CMAKE_CURRENT_BINARY_DIR}/${name}.home")
    file(MAKE_DIRECTORY "${home}/run")
    file(CHMOD "${home}/run" PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT ${ARG_TIMEOUT}
        LABELS "${ARG_LABELS}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;HOME=${home};XDG_CONFIG_HOME=${home}/config;XDG_DATA_HOME=${home}/data;XDG_CACHE_HOME=${home}/cache;XDG_RUNTIME_DIR=${home}/run")
endfunction()
