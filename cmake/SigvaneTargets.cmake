include_guard()

# sigvane_add_library(<folder> SOURCES <files>... [LINK <libraries>...])
# One folder, one static library sigvane_<folder> (alias sigvane::<folder>), included as "folder/File.h".
function(sigvane_add_library folder)
    cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
    add_library(sigvane_${folder} STATIC ${ARG_SOURCES})
    add_library(sigvane::${folder} ALIAS sigvane_${folder})
    target_include_directories(sigvane_${folder} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(sigvane_${folder} PUBLIC ${ARG_LINK})
    target_compile_features(sigvane_${folder} PUBLIC cxx_std_20)
    target_compile_definitions(sigvane_${folder} PRIVATE
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
