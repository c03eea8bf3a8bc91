#pragma once

#include <cstddef>
#include <usb.h>

/// The libusb 0.1 calls, one wrapper each: the same arguments, the result unchanged. This header is
/// the only one that includes libusb's.
///
/// The elaborated `struct usb_device` is needed throughout: libusb also has a function of that
/// name.

/// Prepares the layer; returns non-zero when its bulk-read time limits count in seconds, which they
/// never do, so 0.
int luu_initialize();

void luu_usb_init();
int luu_usb_find_busses();
int luu_usb_find_devices();
/// Returns the head of libusb's own list of buses, or null.
struct usb_bus* luu_usb_get_busses();
/// Returns a handle to be given back with `luu_usb_close`, or null.
usb_dev_handle* luu_usb_open(struct usb_device* dev);
int luu_usb_set_configuration(usb_dev_handle* handle, int configuration);
int luu_usb_claim_interface(usb_dev_handle* handle, int interface);
int luu_usb_release_interface(usb_dev_handle* handle, int interface);
int luu_usb_close(usb_dev_handle* handle);
/// `timeout` in milliseconds; returns the count written or a negative errno value.
int luu_usb_bulk_write(usb_dev_handle* handle, int endpoint, const char* bytes, int size,
                       int timeout);
/// `timeout` in milliseconds; returns the count read or a negative errno value.
int luu_usb_bulk_read(usb_dev_handle* handle, int endpoint, char* bytes, int size, int timeout);
int luu_usb_clear_halt(usb_dev_handle* handle, unsigned int endpoint);
int luu_usb_set_altinterface(usb_dev_handle* handle, int alternate);
int luu_usb_control_msg(usb_dev_handle* handle, int requestType, int request, int value, int index,
                        char* bytes, int size, int timeout);
/// Returns libusb's own text of its last error; not to be released.
char* luu_usb_strerror();
int luu_usb_get_string_simple(usb_dev_handle* handle, int index, char* buffer,
                              std::size_t bufferSize);
