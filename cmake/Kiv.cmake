# Helpers shared by the platform libraries, the plug-in and the programs.

# kiv_add_library(NAME [DIRS dir...] [LIBS lib...])
# A shared library made of every source, header and form below the given
# folders (default: the current folder). New files are picked up on the next
# build without editing any CMakeLists.
function(kiv_add_library name)
  cmake_parse_arguments(A "" "" "DIRS;LIBS" ${ARGN})
  if(NOT A_DIRS)
    set(A_DIRS ${CMAKE_CURRENT_SOURCE_DIR})
  endif()
  set(srcs)
  foreach(d ${A_DIRS})
    file(GLOB_RECURSE found CONFIGURE_DEPENDS
      ${d}/*.cpp ${d}/*.h ${d}/*.ui ${d}/*.qrc)
    list(APPEND srcs ${found})
  endforeach()
  add_library(${name} SHARED ${srcs})
  target_link_libraries(${name} PUBLIC ${A_LIBS})
  # Every shared library records libc, also one that calls it only through
  # Qt and the C++ library (the Debian package checks that it does).
  target_link_options(${name} PRIVATE "LINKER:--push-state,--no-as-needed,-lc,--pop-state")
  install(TARGETS ${name} LIBRARY DESTINATION lib RUNTIME DESTINATION bin)
endfunction()
