# caddis_importer(Image SOURCES ImageImporter.cpp DEPENDS unicode LIBRARIES PkgConfig::EXIV2
#                 TYPES public.jpeg jpg,jpeg public.png png public.camera-raw-image -)
#
# An importer plug-in: lib/caddis/Spotlight/Image.mdimporter in the build tree and where it is installed. TYPES are
# pairs of a content type and its file-name extensions ("-" for none): both go into Info.plist, so that a file is
# found by either. What SOURCES hold is also the library caddis::bundle_Image, for fuzz targets.
function(caddis_importer name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LIBRARIES;TYPES" ${ARGN})
  list(TRANSFORM ARG_DEPENDS PREPEND caddis::)
  add_library(caddis_bundle_${name} STATIC ${ARG_SOURCES})
  add_library(caddis::bundle_${name} ALIAS caddis_bundle_${name})
  target_link_libraries(
    caddis_bundle_${name} PUBLIC caddis::bundle_support ${ARG_DEPENDS} PRIVATE ${ARG_LIBRARIES} caddis::warnings)

  set(contents lib/caddis/Spotlight/${name}.mdimporter/Contents)
  set(target caddis_${name}_importer)
  add_library(${target} MODULE ${PROJECT_SOURCE_DIR}/bundles/support/Plugin.cpp)
  target_link_libraries(${target} PRIVATE caddis_bundle_${name} caddis::warnings)
  target_link_options(${target} PRIVATE -Wl,--exclude-libs,ALL -Wl,--as-needed -Wl,-z,defs)
  set_target_properties(
    ${target} PROPERTIES PREFIX "" OUTPUT_NAME ${name} LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${contents}/Linux)
  caddis_importer_plist(${name} ${PROJECT_BINARY_DIR}/${contents}/Info.plist ${ARG_TYPES})
  install(TARGETS ${target} DESTINATION ${contents}/Linux)
  install(FILES ${PROJECT_BINARY_DIR}/${contents}/Info.plist DESTINATION ${contents})
  set_property(GLOBAL APPEND PROPERTY CADDIS_IMPORTERS ${name})
endfunction()

# Writes the Info.plist of the bundle. Its factory's identifier is made from its name, so it never changes.
function(caddis_importer_plist BUNDLE_NAME file)
  set(types ${ARGN})
  string(UUID BUNDLE_FACTORY NAMESPACE 8b08c4bf-415b-11d8-b3f9-0003936726fc NAME ${BUNDLE_NAME} TYPE SHA1 UPPER)
  while(types)
    list(POP_FRONT types TYPE extensions)
    string(APPEND BUNDLE_CONTENT_TYPES "        <string>${TYPE}</string>\n")
    if(NOT extensions STREQUAL "-")
      string(REGEX REPLACE "([^,]+),?" "          <string>\\1</string>\n" TYPE_EXTENSIONS ${extensions})
      file(READ ${PROJECT_SOURCE_DIR}/bundles/Declaration.plist.in declaration)
      string(CONFIGURE "${declaration}" declaration @ONLY)
      string(APPEND BUNDLE_DECLARATIONS "${declaration}")
    endif()
  endwhile()
  configure_file(${PROJECT_SOURCE_DIR}/bundles/Info.plist.in ${file} @ONLY)
endfunction()

# caddis_importer_needs(EXIV2 exiv2): finds the libraries of a bundle by their pkg-config names, as the target
# PkgConfig::EXIV2. Where one is missing the folder is left with one line said, and the bundle is not built.
macro(caddis_importer_needs prefix)
  pkg_check_modules(${prefix} QUIET IMPORTED_TARGET ${ARGN})
  if(NOT ${prefix}_FOUND)
    get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    message(STATUS "The ${folder} importer is left out: ${ARGN} not found")
    return()
  endif()
endmacro()
