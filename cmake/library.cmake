# vldv_shared(target name folders...) : the objects of folders as a shared object of the library's version. While the
# first number is 0 a new second one may change the contract.
function(vldv_shared target name)
  add_library(${target} SHARED)
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name} VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} LINKER_LANGUAGE CXX)
  foreach(folder IN LISTS ARGN)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${folder}>)
  endforeach()
  # Calls inside the library go straight to it. What the sanitizers call is found when a program starts.
  target_link_options(${target} PRIVATE -Wl,-Bsymbolic-functions)
  if(NOT VLDV_SANITIZE AND NOT VLDV_FUZZ)
    target_link_options(${target} PRIVATE -Wl,-z,defs)
  endif()
endfunction()

# vldv_program(name folder packages...) : the program of a folder, which links the library and not its folders.
function(vldv_program name folder)
  add_executable(${name}_program main.cpp $<TARGET_OBJECTS:vldv_${folder}>)
  set_target_properties(${name}_program PROPERTIES OUTPUT_NAME ${name})
  target_compile_definitions(${name}_program PRIVATE VLDV_VERSION="${PROJECT_VERSION}")
  target_link_libraries(${name}_program PRIVATE ${ARGN} vldv_library)
endfunction()
