#pragma once

#include <cstddef>
#include <usb.h>

// Wrappers of the libusb 0.1 functions. Each passes its arguments on and returns the result
// unchanged. Only this header includes libusb's header.
//
// The keyword in `struct usb_device` is necessary: libusb also has a function of that name.

/// Returns non-zero if bulk reads count their timeout in seconds. libusb 0.1 counts in
/// milliseconds, so the result is always 0.
int luu_initialize();

void luu_usb_init();
int luu_usb_find_busses();
int luu_usb_find_devices();
/// Returns the head of the list of buses, or null. libusb owns the list.
struct usb_bus* luu_usb_get_busses();
/// Returns a handle, which the caller closes with `luu_usb_close`, or null on failure.
usb_dev_handle* luu_usb_open(struct usb_device* dev);
int luu_usb_set_configuration(usb_dev_handle* handle, int configuration);
int luu_usb_claim_interface(usb_dev_handle* handle, int interface);
int luu_usb_release_interface(usb_dev_handle* handle, int interface);
int luu_usb_close(usb_dev_handle* handle);
/// Returns the count written or a negative errno value. `timeout` is in milliseconds.
int luu_usb_bulk_write(usb_dev_handle* handle, int endpoint, const char* bytes, int size,
                       int timeout);
/// Returns the count read or a negative errno value. `timeout` is in milliseconds.
int luu_usb_bulk_read(usb_dev_handle* handle, int endpoint, char* bytes, int size, int timeout);
int luu_usb_clear_halt(usb_dev_handle* handle, unsigned int endpoint);
int luu_usb_set_altinterface(usb_dev_handle* handle, int alternate);
int luu_usb_control_msg(usb_dev_handle* handle, int requestType, int request, int value, int index,
                        char* bytes, int size, int timeout);
/// Returns the text of libusb's last error. libusb owns the text.
char* luu_usb_strerror();
int luu_usb_get_string_simple(usb_dev_handle* handle, int index, char* buffer,
                              std::size_t bufferSize);
