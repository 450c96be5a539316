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
  # X11, from the X server through xcb, on wlroots compositors from their
  # toplevel list through libwayland-client, on KDE Plasma from KWin over D-Bus.
  pkg_check_modules(LIBEVDEV REQUIRED IMPORTED_TARGET libevdev)
  pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb)
  pkg_check_modules(WAYLAND_CLIENT REQUIRED IMPORTED_TARGET wayland-client)
  find_package(Qt6 REQUIRED COMPONENTS DBus)
  find_program(WAYLAND_SCANNER wayland-scanner REQUIRED)
  # The toplevel list's client code is generated from the protocol's XML,
  # kept in the tree because Debian's wayland-protocols lacks the wlr ones.
  enable_language(C)
  set(_protocol wlr-foreign-toplevel-management-unstable-v1)
  set(_protocol_xml ${CMAKE_CURRENT_SOURCE_DIR}/FocusWatch/Platform/Linux/protocol/${_protocol}.xml)
  set(ORVANE_PLATFORM_GENERATED ${CMAKE_CURRENT_BINARY_DIR}/wayland)
  add_custom_command(
    OUTPUT ${ORVANE_PLATFORM_GENERATED}/${_protocol}-client-protocol.h ${ORVANE_PLATFORM_GENERATED}/${_protocol}-protocol.c
    COMMAND ${CMAKE_COMMAND} -E make_directory ${ORVANE_PLATFORM_GENERATED}
    COMMAND ${WAYLAND_SCANNER} client-header ${_protocol_xml} ${ORVANE_PLATFORM_GENERATED}/${_protocol}-client-protocol.h
    COMMAND ${WAYLAND_SCANNER} private-code ${_protocol_xml} ${ORVANE_PLATFORM_GENERATED}/${_protocol}-protocol.c
    DEPENDS ${_protocol_xml}
    VERBATIM)
  list(APPEND ORVANE_PLATFORM_SOURCES
       ${ORVANE_PLATFORM_GENERATED}/${_protocol}-client-protocol.h ${ORVANE_PLATFORM_GENERATED}/${_protocol}-protocol.c)
  set(ORVANE_PLATFORM_LIBS PkgConfig::LIBUDEV PkgConfig::LIBUSB PkgConfig::LIBEVDEV PkgConfig::XCB
      PkgConfig::WAYLAND_CLIENT Qt6::DBus)
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
