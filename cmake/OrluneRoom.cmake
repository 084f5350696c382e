# Compiler settings of the project's own code, and the rule that a room is seen only by those that link it.

add_library(orlune_options INTERFACE)
target_compile_options(orlune_options INTERFACE -Wall -Wextra)
target_compile_definitions(orlune_options INTERFACE QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING)
# Curve arithmetic rounds once an operation; the other rooms lose nothing by it.
target_compile_options(orlune_options INTERFACE -ffp-contract=off)
if(ORLUNE_SANITIZE)
    add_compile_options(-fsanitize=${ORLUNE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_compile_definitions(_GLIBCXX_ASSERTIONS)
    # A host knows the plug-in's classes by their headers alone, so it has no type information to compare.
    add_compile_options(-fno-sanitize=vptr)
    add_link_options(-fsanitize=${ORLUNE_SANITIZE})
else()
    # Not under the sanitizers: the code that they add makes the compiler warn where nothing is wrong.
    target_compile_options(orlune_options INTERFACE -Werror)
endif()

# What users get makes an overrun that slipped through stop the program rather than run somebody's code.
# tests/contract/tst_Module reads it back from the programs.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND NOT WIN32)
    add_compile_options(-fstack-protector-strong -fstack-clash-protection -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
        add_compile_options(-fcf-protection)
    endif()
    add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
endif()

# orlune_room_headers(TARGET SCOPE FOLDER [FILE...]): whoever links TARGET may write #include "FOLDER/x.h" for the
# files named, or for every file of this folder where none is named. The include path holds nothing else, so a
# room that is not linked cannot be included.
function(orlune_room_headers target scope folder)
    set(root ${CMAKE_BINARY_DIR}/rooms/${target})
    if(ARGN)
        file(MAKE_DIRECTORY ${root}/${folder})
        foreach(header ${ARGN})
            file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${root}/${folder}/${header} COPY_ON_ERROR SYMBOLIC)
        endforeach()
    else()
        cmake_path(GET folder PARENT_PATH parent)
        file(MAKE_DIRECTORY ${root}/${parent})
        file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${root}/${folder} COPY_ON_ERROR SYMBOLIC)
    endif()
    target_include_directories(${target} ${scope} ${root})
endfunction()
