#include "testing/usb_capture.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace support {

void UsbCapture::add(const UsbRecord& record) {
  ::pcap_usb_header_mmapped header{};
  header.id = record.transfer;
  header.event_type = static_cast<std::uint8_t>(record.event);
  header.transfer_type = record.type;
  header.endpoint_number = record.endpoint;
  header.device_address = record.device;
  header.bus_id = record.bus;
  header.setup_flag = '-';
  header.data_flag = static_cast<char>(record.data && !record.flaggedEmpty ? 0 : '>');
  header.urb_len = record.length;
  header.data_len = record.data ? static_cast<std::uint32_t>(record.data->size()) : 0;
  // The longer header starts with the fields of the shorter one.
  const std::size_t size = m_LinkType == DLT_USB_LINUX ? sizeof(::pcap_usb_header) : sizeof header;
  std::string bytes(size, '\0');
  std::memcpy(bytes.data(), &header, size);
  if (record.data) {
    bytes.append(record.data->begin(), record.data->end());
  }
  m_Records.push_back(bytes);
}

void UsbCapture::out(const Bytes& data) {
  const auto length = static_cast<std::uint32_t>(data.size());
  const std::uint64_t transfer = ++m_Transfers;
  add({.event = URB_SUBMIT,
       .endpoint = 0x01,
       .transfer = transfer,
       .length = length,
       .data = data});
  add({.event = URB_COMPLETE, .endpoint = 0x01, .transfer = transfer, .length = length});
}

void UsbCapture::in(const Bytes& data) {
  const std::uint64_t transfer = ++m_Transfers;
  add({.event = URB_SUBMIT, .endpoint = 0x82, .transfer = transfer, .length = 8192});
  add({.event = URB_COMPLETE,
       .endpoint = 0x82,
       .transfer = transfer,
       .length = static_cast<std::uint32_t>(data.size()),
       .data = data});
}

std::string UsbCapture::content() const {
  constexpr int longestRecord = 262144;
  char* text = nullptr;
  std::size_t size = 0;
  ::pcap_t* const dead = ::pcap_open_dead(m_LinkType, longestRecord);
  std::FILE* const file = ::open_memstream(&text, &size);
  ::pcap_dumper_t* const dumper = ::pcap_dump_fopen(dead, file);
  if (dumper == nullptr) {
    throw std::runtime_error(::pcap_geterr(dead));
  }
  ::pcap_pkthdr header{};
  for (const std::string& record : m_Records) {
    header.caplen = static_cast<::bpf_u_int32>(record.size());
    header.len = header.caplen;
    header.ts.tv_usec += 100;
    ::pcap_dump(reinterpret_cast<unsigned char*>(dumper), &header,
                reinterpret_cast<const unsigned char*>(record.data()));
  }
  ::pcap_dump_close(dumper);
  ::pcap_close(dead);
  std::string content(text, size);
  std::free(text);
  return content;
}

}  // namespace support
