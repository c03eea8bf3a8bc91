# libusb 0.1: its header is <usb.h>. Defines the targets libusb and libusb_headers.
find_path(LIBUSB_INCLUDE_DIR usb.h)
find_library(LIBUSB_LIBRARY usb)
if(NOT LIBUSB_INCLUDE_DIR OR NOT LIBUSB_LIBRARY)
  message(FATAL_ERROR "zvkconfig needs libusb 0.1 (Debian: libusb-dev)")
endif()

add_library(libusb INTERFACE)
target_include_directories(libusb SYSTEM INTERFACE ${LIBUSB_INCLUDE_DIR})
target_link_libraries(libusb INTERFACE ${LIBUSB_LIBRARY})

# The header without the library, for tests that define the usb_... functions themselves.
add_library(libusb_headers INTERFACE)
target_include_directories(libusb_headers SYSTEM INTERFACE ${LIBUSB_INCLUDE_DIR})
