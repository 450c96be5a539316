# The user guides: one HTML template, printed to one PDF per model at build
# time by a small off-screen Qt tool, and shipped as resources of the app
# under the names the guide button asks for.
add_executable(guide_pdf tools/guide/guide_pdf.cpp)
target_link_libraries(guide_pdf PRIVATE orvane_core Qt6::Gui)

set(_guide_src ${CMAKE_CURRENT_SOURCE_DIR}/docs/guide)
set(_guide_out ${CMAKE_CURRENT_BINARY_DIR}/guides)
set(_guide_files)
foreach(model 61k 68k)
  set(_pdf ${_guide_out}/orvane-${model}-guide.pdf)
  add_custom_command(
    OUTPUT ${_pdf}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${_guide_out}
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen
            $<TARGET_FILE:guide_pdf> ${model} ${_guide_src}/guide.html ${_guide_src}/guide.css
            ${CMAKE_CURRENT_SOURCE_DIR}/packaging/70-orvane.rules ${_pdf}
    DEPENDS guide_pdf ${_guide_src}/guide.html ${_guide_src}/guide.css
            ${CMAKE_CURRENT_SOURCE_DIR}/packaging/70-orvane.rules
    COMMENT "Printing the Orvane ${model} user guide"
    VERBATIM)
  set_source_files_properties(${_pdf} PROPERTIES GENERATED TRUE QT_RESOURCE_ALIAS "Orvane ${model} User guide.pdf")
  list(APPEND _guide_files ${_pdf})
endforeach()
qt_add_resources(orvane_ui orvane_guides PREFIX /guides BASE ${_guide_out} FILES ${_guide_files})
