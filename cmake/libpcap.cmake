# libpcap (Debian: libpcap-dev), which reads captures: its header is <pcap/pcap.h>.
find_path(LIBPCAP_INCLUDE_DIR pcap/pcap.h REQUIRED)
find_library(LIBPCAP_LIBRARY pcap REQUIRED)

add_library(libpcap INTERFACE)
target_include_directories(libpcap SYSTEM INTERFACE ${LIBPCAP_INCLUDE_DIR})
target_link_libraries(libpcap INTERFACE ${LIBPCAP_LIBRARY})
