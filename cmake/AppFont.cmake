# The app's own face: the characters its texts use, cut at build time out of
# the installed Noto Sans CJK SC (regular and bold) by tools/fonts/app_font.py
# (Debian's fonttools), and shipped uncompressed as resources so that the
# face is read in place. Without fonttools or the font the app draws with the
# full installed face, as it would anyway for characters the cut lacks.
find_program(ORVANE_PYTHON3 python3 PATHS /usr/bin NO_DEFAULT_PATH)
set(ORVANE_APP_FONT OFF)
if(ORVANE_PYTHON3)
  execute_process(COMMAND ${ORVANE_PYTHON3} -c "import fontTools.subset"
                  RESULT_VARIABLE _fonttools_missing OUTPUT_QUIET ERROR_QUIET)
  find_program(_fc_match fc-match)
  if(NOT _fonttools_missing AND _fc_match)
    set(ORVANE_APP_FONT ON)
  endif()
endif()

if(ORVANE_APP_FONT)
  file(GLOB_RECURSE _font_text_sources CONFIGURE_DEPENDS
       ${CMAKE_CURRENT_SOURCE_DIR}/Language/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/View/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/View/*.h ${CMAKE_CURRENT_SOURCE_DIR}/Common/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/AppDelegate.cpp)
  set(_font_out ${CMAKE_CURRENT_BINARY_DIR}/fonts)
  set(_font_files)
  foreach(style Regular Bold)
    execute_process(COMMAND ${_fc_match} -f "%{file}\n%{index}" "Noto Sans CJK SC:style=${style}"
                    OUTPUT_VARIABLE _match OUTPUT_STRIP_TRAILING_WHITESPACE)
    string(REPLACE "\n" ";" _match "${_match}")
    list(GET _match 0 _face_file)
    list(GET _match 1 _face_index)
    if(NOT _face_file MATCHES "NotoSansCJK")
      message(WARNING "Noto Sans CJK SC ${style} is not installed (fonts-noto-cjk): the app draws with the system's fonts")
      set(ORVANE_APP_FONT OFF)
      break()
    endif()
    set(_otf ${_font_out}/OrvaneSansCJKSC-${style}.otf)
    add_custom_command(
      OUTPUT ${_otf}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${_font_out}
      COMMAND ${ORVANE_PYTHON3} ${CMAKE_CURRENT_SOURCE_DIR}/tools/fonts/app_font.py ${_otf} ${_face_file}
              ${_face_index} "Orvane Sans CJK SC" ${style} ${_font_text_sources}
      DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/tools/fonts/app_font.py ${_face_file} ${_font_text_sources}
      COMMENT "Cutting the app's ${style} face out of Noto Sans CJK SC"
      VERBATIM)
    set_source_files_properties(${_otf} PROPERTIES GENERATED TRUE)
    list(APPEND _font_files ${_otf})
  endforeach()
endif()

if(ORVANE_APP_FONT)
  qt_add_resources(orvane_ui orvane_fonts PREFIX /fonts BASE ${_font_out} FILES ${_font_files}
                   OPTIONS --no-compress)
elseif(NOT _face_file)
  message(WARNING "fonttools is missing: the app loads the whole CJK face, several MiB more")
endif()
