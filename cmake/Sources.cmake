# Each folder's sources are globbed so that adding a file never needs an edit
# here; the platform backend is the one place where CMake picks by OS.
set(_core_dirs Common FocusWatch HIDDevice Protocol Simulator SQLite Language View/KeyboardLayout HIDDevice/Platform HIDDevice/Platform/Virtual)
set(ORVANE_CORE_SOURCES)
foreach(dir IN LISTS _core_dirs)
  file(GLOB _files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/*.h)
  list(APPEND ORVANE_CORE_SOURCES ${_files})
endforeach()

if(CMAKE_SYSTEM_NAME STREQUAL "Linux")
  file(GLOB ORVANE_PLATFORM_SOURCES CONFIGURE_DEPENDS
       ${CMAKE_CURRENT_SOURCE_DIR}/HIDDevice/Platform/Linux/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/HIDDevice/Platform/Linux/*.h
       ${CMAKE_CURRENT_SOURCE_DIR}/Keylogger/Platform/Linux/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/FocusWatch/Platform/Linux/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/FocusWatch/Platform/Linux/*.h)
  # Keys typed in other windows come from evdev; the window in front, on
  # X11, from the X server through xcb.
  pkg_check_modules(LIBEVDEV REQUIRED IMPORTED_TARGET libevdev)
  pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
  set(ORVANE_PLATFORM_LIBS PkgConfig::LIBUDEV PkgConfig::LIBUSB PkgConfig::LIBEVDEV PkgConfig::XCB)
else()
  file(GLOB ORVANE_PLATFORM_SOURCES CONFIGURE_DEPENDS
       ${CMAKE_CURRENT_SOURCE_DIR}/HIDDevice/Platform/None/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/Keylogger/Platform/None/*.cpp
       ${CMAKE_CURRENT_SOURCE_DIR}/FocusWatch/Platform/None/*.cpp)
  set(ORVANE_PLATFORM_LIBS)
endif()

set(_ui_dirs View View/control View/CustomMenu View/CustomWindow View/popover View/DataSource Keylogger)
set(ORVANE_UI_SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/AppDelegate.cpp ${CMAKE_CURRENT_SOURCE_DIR}/AppDelegate.h)
foreach(dir IN LISTS _ui_dirs)
  file(GLOB _files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/*.h)
  list(APPEND ORVANE_UI_SOURCES ${_files})
endforeach()
