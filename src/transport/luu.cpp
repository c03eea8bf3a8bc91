// Each wrapper calls the libusb function of the same name, without the prefix "luu_".

#include "transport/luu.h"

int luu_initialize() {
  return 0;
}

void luu_usb_init() {
  usb_init();
}

int luu_usb_find_busses() {
  return usb_find_busses();
}

int luu_usb_find_devices() {
  return usb_find_devices();
}

struct usb_bus* luu_usb_get_busses() {
  return usb_get_busses();
}

usb_dev_handle* luu_usb_open(struct usb_device* dev) {
  return usb_open(dev);
}

int luu_usb_set_configuration(usb_dev_handle* handle, int configuration) {
  return usb_set_configuration(handle, configuration);
}

int luu_usb_claim_interface(usb_dev_handle* handle, int interface) {
  return usb_claim_interface(handle, interface);
}

int luu_usb_release_interface(usb_dev_handle* handle, int interface) {
  return usb_release_interface(handle, interface);
}

int luu_usb_close(usb_dev_handle* handle) {
  return usb_close(handle);
}

int luu_usb_bulk_write(usb_dev_handle* handle, int endpoint, const char* bytes, int size,
                       int timeout) {
  return usb_bulk_write(handle, endpoint, bytes, size, timeout);
}

int luu_usb_bulk_read(usb_dev_handle* handle, int endpoint, char* bytes, int size, int timeout) {
  return usb_bulk_read(handle, endpoint, bytes, size, timeout);
}

int luu_usb_clear_halt(usb_dev_handle* handle, unsigned int endpoint) {
  return usb_clear_halt(handle, endpoint);
}

int luu_usb_set_altinterface(usb_dev_handle* handle, int alternate) {
  return usb_set_altinterface(handle, alternate);
}

int luu_usb_control_msg(usb_dev_handle* handle, int requestType, int request, int value, int index,
                        char* bytes, int size, int timeout) {
  return usb_control_msg(handle, requestType, request, value, index, bytes, size, timeout);
}

char* luu_usb_strerror() {
  return usb_strerror();
}

int luu_usb_get_string_simple(usb_dev_handle* handle, int index, char* buffer,
                              std::size_t bufferSize) {
  return usb_get_string_simple(handle, index, buffer, bufferSize);
}
