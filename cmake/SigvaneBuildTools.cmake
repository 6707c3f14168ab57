# Faster compilers' helpers, used when the machine has them. Only for our own builds: a project that
# pulls the libraries in with add_subdirectory decides for itself.
find_program(SIGVANE_CCACHE ccache)
if(SIGVANE_CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER "${SIGVANE_CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${SIGVANE_CCACHE}")
endif()

find_program(SIGVANE_MOLD mold)
if(SIGVANE_MOLD)
    include(CheckLinkerFlag)
    check_linker_flag(CXX "-fuse-ld=mold" SIGVANE_LINKS_WITH_MOLD)
    if(SIGVANE_LINKS_WITH_MOLD)
        add_link_options(-fuse-ld=mold)
    endif()
endif()
