# libpcap reads captures. Its header is <pcap/pcap.h>. Defines the target libpcap if it is found.
find_path(LIBPCAP_INCLUDE_DIR pcap/pcap.h)
find_library(LIBPCAP_LIBRARY pcap)
mark_as_advanced(LIBPCAP_INCLUDE_DIR LIBPCAP_LIBRARY)

if(LIBPCAP_INCLUDE_DIR AND LIBPCAP_LIBRARY)
  add_library(libpcap INTERFACE)
  target_include_directories(libpcap SYSTEM INTERFACE ${LIBPCAP_INCLUDE_DIR})
  target_link_libraries(libpcap INTERFACE ${LIBPCAP_LIBRARY})
endif()
