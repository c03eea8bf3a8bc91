#pragma once

#include <cstddef>
#include <usb.h>

// Wrappers of the libusb 0.1 functions. Unless its comment says otherwise, each wrapper passes its
// arguments on and returns the result unchanged. In src/, only this header includes libusb's
// header.
//
// The keyword `struct` in `struct usb_device` is necessary, because libusb also has a function
// called `usb_device`.

/// Calls no libusb function. Returns non-zero if bulk reads count their timeout in seconds. libusb
/// 0.1 counts in milliseconds, so the result is always 0.
int luu_initialize();

/// Initialises libusb. Further calls are allowed.
void luu_usb_init();
/// Updates the list of buses. Returns the count of changes or a negative value.
int luu_usb_find_busses();
/// Updates the devices of each bus. Returns the count of changes or a negative value.
int luu_usb_find_devices();
/// Returns the head of the list of buses, or null. libusb owns the list.
struct usb_bus* luu_usb_get_busses();
/// Returns a handle, which the caller closes with `luu_usb_close`, or null on failure.
usb_dev_handle* luu_usb_open(struct usb_device* dev);
/// Selects a configuration by its value, not by its index. Returns 0 or a negative value.
int luu_usb_set_configuration(usb_dev_handle* handle, int configuration);
/// Claims an interface by its number. Returns 0 or a negative value.
int luu_usb_claim_interface(usb_dev_handle* handle, int interface);
/// Releases a claimed interface. Returns 0 or a negative value.
int luu_usb_release_interface(usb_dev_handle* handle, int interface);
/// Closes and frees the handle. Returns 0 or a negative value.
int luu_usb_close(usb_dev_handle* handle);
/// Returns the count written or a negative errno value. `timeout` is in milliseconds.
int luu_usb_bulk_write(usb_dev_handle* handle, int endpoint, const char* bytes, int size,
                       int timeout);
/// Returns the count read or a negative errno value. `timeout` is in milliseconds.
int luu_usb_bulk_read(usb_dev_handle* handle, int endpoint, char* bytes, int size, int timeout);
/// Ends the stall of an endpoint. Returns 0 or a negative value.
int luu_usb_clear_halt(usb_dev_handle* handle, unsigned int endpoint);
/// Selects an alternate setting of the claimed interface. Returns 0 or a negative value.
int luu_usb_set_altinterface(usb_dev_handle* handle, int alternate);
/// Performs a control transfer. Returns the count of bytes or a negative value. `timeout` is in
/// milliseconds.
int luu_usb_control_msg(usb_dev_handle* handle, int requestType, int request, int value, int index,
                        char* bytes, int size, int timeout);
/// Returns the text of libusb's last error. libusb owns the text.
char* luu_usb_strerror();
/// Reads the string descriptor `index` in the device's first language. Returns its length or a
/// negative value.
int luu_usb_get_string_simple(usb_dev_handle* handle, int index, char* buffer,
                              std::size_t bufferSize);
