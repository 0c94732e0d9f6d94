# What `cmake --install` puts where. Programs find the library, and the library its layouts and palettes, by their places
# below the prefix, which may be moved as a whole.
include(CMakePackageConfigHelpers)

install(TARGETS vldv_program velmira_program)
install(TARGETS vldv_painter LIBRARY NAMELINK_SKIP)
set_target_properties(vldv_library PROPERTIES EXPORT_NAME vldv)
install(TARGETS vldv_library EXPORT vldv-targets INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vldv)
install(DIRECTORY interface/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vldv FILES_MATCHING PATTERN *.xml PATTERN *.pal)

# vldv_with_included(out headers...) : headers of src/ and all that they include.
function(vldv_with_included out)
  set(waiting ${ARGN})
  set(found)
  while(waiting)
    list(POP_FRONT waiting header)
    list(APPEND found ${header})
    file(STRINGS ${PROJECT_SOURCE_DIR}/src/${header} lines REGEX "^#include \"")
    foreach(line IN LISTS lines)
      string(REGEX REPLACE "^#include \"([^\"]+)\".*" "\\1" included ${line})
      if(NOT included IN_LIST found AND NOT included IN_LIST waiting)
        list(APPEND waiting ${included})
      endif()
    endforeach()
  endwhile()
  set(${out} ${found} PARENT_SCOPE)
endfunction()

# The contract: what a host program, a module or another program includes.
vldv_with_included(public_headers
  vldv.h
  base/CZLib.h base/SPMDataStream.h base/SPMVar.h base/SPMVarList.h base/VLAllocator.h base/VLAxis.h base/VLXMLParser.h
  base/smart_string.h base/text.h base/units.h
  primitives/numeric.h
  document/Decorations.h document/FileReader.h document/MinMaxInfo.h document/StorageDoc.h document/StorageDocTemplate.h
  document/UndoData.h
  plugins/PluginRequest.h
  view/AxisLine.h view/ChildFrame.h view/DCView.h view/DIBImage.h view/ImageView.h view/Scale.h
  entry/Application.h)
foreach(header IN LISTS public_headers)
  get_filename_component(folder ${header} DIRECTORY)
  install(FILES src/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vldv/${folder})
endforeach()

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/vldv)
install(EXPORT vldv-targets NAMESPACE vldv:: DESTINATION ${package_folder})
configure_package_config_file(cmake/vldv-config.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/vldv-config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/vldv-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vldv-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/vldv-config-version.cmake
  DESTINATION ${package_folder})

file(RELATIVE_PATH prefix_from_pkgconfig ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/vldv.pc.in ${CMAKE_CURRENT_BINARY_DIR}/vldv.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/vldv.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
