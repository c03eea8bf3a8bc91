#!/usr/bin/python
# Copyright (c) 2026 The zvkconfig authors
# MIT License (see https://opensource.org/license/mit)

from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
---
module: zvkwifi_network
short_description: Put USB printers into a wireless network
version_added: "1.0.0"
description:
  - Stores the settings of a wireless network in printers that are connected to the host by USB, with C(zvkwifi set),
    and waits until each printer has joined.
  - A printer that is in the network already is unchanged. Printers of one task are set up at the same time.
  - The secret goes from this module to C(zvkwifi) over standard input. Set C(pipelining) in the Ansible
    configuration, so that Ansible also sends this module over standard input. Otherwise Ansible writes
    the parameters, with the secret, to a temporary file on the host.
options:
  printers:
    description:
      - Serial numbers, device files, addresses such as C(1:5), or parts of make and model that fit one printer.
      - If empty, the only printer of the host.
    type: list
    elements: str
    default: []
  all:
    description: Every printer of the host.
    type: bool
    default: false
  ssid:
    description: The name of the network, 1 to 32 bytes.
    type: str
    required: true
  security:
    description: The security of the network. The adapters do not support WPA3.
    type: str
    required: true
    choices: [open, wep, wpa, wpa2, wpa-personal, 802.1x, wpa-enterprise, eap]
  password:
    description: The passphrase, key or password.
    type: str
  password_file:
    description: A file on the host whose first line is the passphrase, key or password.
    type: path
  mode:
    description: The kind of network.
    type: str
    choices: [infrastructure, ad-hoc]
  channel:
    description: The channel of an ad-hoc network, 1 to 11.
    type: int
  encryption:
    description: The encryption. If not given, the adapter decides.
    type: str
    choices: [auto, tkip, aes, wep-dynamic, wep-static]
  wep_auth:
    description: The authentication of WEP.
    type: str
    choices: [open, shared]
  user:
    description: The user name of 802.1x, at most 31 bytes.
    type: str
  eap:
    description: The methods of 802.1x.
    type: list
    elements: str
    choices: [md5, mschapv2, leap, peap, tls, ttls]
  inner:
    description: The inner method of 802.1x.
    type: str
    choices: [chap, mschap, mschapv2, pap]
  wait:
    description:
      - Wait at most so many seconds until a printer has joined. With 0 it is enough that the printer accepts the
        settings.
    type: int
    default: 60
  force:
    description: Store the settings also in a printer that is in the network already.
    type: bool
    default: false
extends_documentation_fragment:
  - zvkconfig.wifi.zvkwifi
attributes:
  check_mode:
    description: Checks the settings and reads the status of the printers. Stores nothing.
    support: full
  diff_mode:
    description: Shows the network of each printer.
    support: full
"""

EXAMPLES = r"""
- name: Put the only printer into the network of the office
  zvkconfig.wifi.zvkwifi_network:
    ssid: office
    security: wpa
    password: "{{ office_passphrase }}"

- name: Put two printers into a network with 802.1x
  zvkconfig.wifi.zvkwifi_network:
    printers: [X1234, X1235]
    ssid: campus
    security: 802.1x
    eap: [peap]
    inner: mschapv2
    user: printer
    password_file: /etc/zvkwifi/password
"""

RETURN = r"""
printers:
  description: The printers, in the order of I(printers). C(zvkwifi.schema.json) describes all keys.
  returned: if the printers were found
  type: list
  elements: dict
  contains:
    device:
      description: C(/dev/usb/lpN) or C(BUS:DEVICE).
      type: str
    serial:
      description: The serial number, or null.
      type: str
    result:
      description:
        - C(confirmed) or C(stored) (with I(wait=0)) if the settings were stored, C(unchanged) if the printer was in the
          network already, C(would-change) in check mode.
        - After a failure C(stored), C(refused), C(no-answer), C(no-permission), C(busy), C(no-such-printer),
          C(interrupted) or C(failed).
      type: str
    changed:
      description: True if the settings were stored, or would be in check mode.
      type: bool
    ssid_before:
      description: The network before the task, or null.
      type: str
    ssid:
      description: The network after the task, or null.
      type: str
    ip:
      description: The address, or null.
      type: str
    trouble_code:
      description: The adapter's trouble code, 0 if there is no trouble, or null.
      type: int
    authentication:
      description: C(code) and C(text) of the 802.1x status, or null.
      type: dict
    seconds:
      description: How long it took.
      type: float
    error:
      description: Null, or C(message) and C(remedy).
      type: dict
  sample:
    - device: /dev/usb/lp0
      serial: X1234
      result: confirmed
      changed: true
      ssid_before: old
      ssid: office
      ip: 192.168.1.20
      trouble_code: 0
      seconds: 14.1
      error: null
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.zvkconfig.wifi.plugins.module_utils import zvkwifi


def predict(module, program, words, secret):
    """Returns what a run would do. Checks the settings, and only reads from the printers."""
    params = module.params
    # A dry run opens no printer.
    zvkwifi.run(module, program, ["set", "--dry-run"] + words, secret)
    names = ["--all"] if params["all"] else params["printers"]
    entries = zvkwifi.run(module, program, ["status"] + names)
    for entry in entries:
        entry["ssid_before"] = entry.get("ssid")
        entry["changed"] = False
        if entry["error"] is None:
            entry["changed"] = params["force"] or not zvkwifi.is_joined(entry, params)
            entry["result"] = "would-change" if entry["changed"] else "unchanged"
            if entry["changed"]:
                entry["ssid"] = params["ssid"]
    return entries


def store(module, program, words, secret):
    """Stores the settings, and returns the results."""
    params = module.params
    names = ["--all"] if params["all"] else params["printers"]
    entries = zvkwifi.run(module, program, ["set"] + words + names, secret)
    for entry in entries:
        entry["changed"] = entry["result"] in ("confirmed", "stored")
    return entries


def networks(entries, key):
    """Returns the network of each printer, for the diff."""
    return dict((entry["serial"] or entry["device"], {"ssid": entry[key]}) for entry in entries)


def main():
    text = {"type": "str"}
    module = AnsibleModule(
        argument_spec={
            **zvkwifi.COMMON_PARAMETERS,
            "printers": {"type": "list", "elements": "str", "default": []},
            "all": {"type": "bool", "default": False},
            "ssid": {"type": "str", "required": True},
            "security": {
                "type": "str",
                "required": True,
                "choices": ["open", "wep", "wpa", "wpa2", "wpa-personal", "802.1x", "wpa-enterprise", "eap"],
            },
            "password": {"type": "str", "no_log": True},
            "password_file": {"type": "path", "no_log": False},
            "mode": {"type": "str", "choices": ["infrastructure", "ad-hoc"]},
            "channel": {"type": "int"},
            "encryption": {"type": "str", "choices": ["auto", "tkip", "aes", "wep-dynamic", "wep-static"]},
            "wep_auth": {"type": "str", "choices": ["open", "shared"]},
            "user": text,
            "eap": {
                "type": "list",
                "elements": "str",
                "choices": ["md5", "mschapv2", "leap", "peap", "tls", "ttls"],
            },
            "inner": {"type": "str", "choices": ["chap", "mschap", "mschapv2", "pap"]},
            "wait": {"type": "int", "default": 60},
            "force": {"type": "bool", "default": False},
        },
        mutually_exclusive=[("password", "password_file"), ("all", "printers")],
        supports_check_mode=True,
    )
    params = module.params
    secret = params["password"]
    if secret is not None and ("\n" in secret or "\r" in secret):
        module.fail_json(msg="password: expected one line")
    words = zvkwifi.setting_words(params) + ["--wait=%d" % params["wait"]]
    if params["force"]:
        words.append("--force")
    if secret is not None:
        words.append("--password-from=fd:0")
    elif params["password_file"] is not None:
        words.append("--password-from=file:" + params["password_file"])

    program = zvkwifi.find_program(module, required=not module.check_mode)
    if program is None:
        # A task before this one would install it.
        module.exit_json(changed=True, printers=[], msg="zvkwifi is not installed yet")
    act = predict if module.check_mode else store
    entries = act(module, program, words, secret)
    result = {
        "printers": entries,
        "changed": any(entry["changed"] for entry in entries),
        "diff": {"before": networks(entries, "ssid_before"), "after": networks(entries, "ssid")},
    }
    failures = [
        "%s: %s" % (entry["serial"] or entry["device"], zvkwifi.failure_text(entry["error"]))
        for entry in entries
        if entry["error"] is not None
    ]
    if failures:
        module.fail_json(msg=" ".join(failures), **result)
    module.exit_json(**result)


if __name__ == "__main__":
    main()
