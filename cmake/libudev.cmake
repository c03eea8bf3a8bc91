# libudev reports which USB devices come and go. Its header is <libudev.h>. Defines the target libudev if it is found.
find_path(LIBUDEV_INCLUDE_DIR libudev.h)
find_library(LIBUDEV_LIBRARY udev)
mark_as_advanced(LIBUDEV_INCLUDE_DIR LIBUDEV_LIBRARY)

if(LIBUDEV_INCLUDE_DIR AND LIBUDEV_LIBRARY)
  add_library(libudev INTERFACE)
  target_include_directories(libudev SYSTEM INTERFACE ${LIBUDEV_INCLUDE_DIR})
  target_link_libraries(libudev INTERFACE ${LIBUDEV_LIBRARY})
endif()
