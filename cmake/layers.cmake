# One static library per folder. The order of the folders is the order of the layers:
# a folder may use its own files and those of the folders before it.
set(TESSERA_LAYERS platform util records object_model interchange settings pim desktop
    drawing touch forms pages editors views shell)

# One precompiled header for each set of Qt modules, shared by all targets of that set.
function(tessera_pch name)
  file(WRITE ${CMAKE_BINARY_DIR}/pch_${name}.cpp "// Carries the precompiled header of this set.\n")
  add_library(pch_${name} STATIC ${CMAKE_BINARY_DIR}/pch_${name}.cpp)
  set_target_properties(pch_${name} PROPERTIES AUTOMOC OFF)
  target_link_libraries(pch_${name} PUBLIC tessera_options ${ARGN})
  target_precompile_headers(pch_${name} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/pch_${name}.h)
endfunction()
tessera_pch(core Qt6::Core)
tessera_pch(gui Qt6::Gui)
tessera_pch(widgets Qt6::Widgets)

# tessera_layer(<folder> PCH core|gui|widgets LINK <targets>...)
function(tessera_layer folder)
  cmake_parse_arguments(ARG "" "PCH" "LINK;PRIVATE_LINK" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp ${CMAKE_SOURCE_DIR}/src/${folder}/*.h)
  if(NOT sources MATCHES "\\.cpp")
    add_library(tessera_${folder} INTERFACE)
    target_link_libraries(tessera_${folder} INTERFACE tessera_options ${ARG_LINK})
    return()
  endif()
  add_library(tessera_${folder} STATIC ${sources})
  target_link_libraries(tessera_${folder} PUBLIC tessera_options ${ARG_LINK} PRIVATE ${ARG_PRIVATE_LINK})
  if(ARG_PCH)
    target_precompile_headers(tessera_${folder} REUSE_FROM pch_${ARG_PCH})
  endif()
endfunction()
