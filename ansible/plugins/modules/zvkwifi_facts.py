#!/usr/bin/python
# Copyright (c) 2026 The zvkconfig authors
# MIT License (see https://opensource.org/license/mit)

from __future__ import absolute_import, division, print_function

__metaclass__ = type

DOCUMENTATION = r"""
---
module: zvkwifi_facts
short_description: Gather facts about the USB printers of a host
version_added: "1.0.0"
description:
  - Lists the printers that are connected to the host by USB, and reads what their wireless adapters report.
  - A printer that does not answer is no failure. Its entry has the reason in C(error).
options:
  printers:
    description: The printers, as for M(zvkconfig.wifi.zvkwifi_network). If empty, every printer of the host.
    type: list
    elements: str
    default: []
  status:
    description: Read the status of the adapters. Otherwise only the printers are listed, and I(printers) must be empty.
    type: bool
    default: true
extends_documentation_fragment:
  - zvkconfig.wifi.zvkwifi
attributes:
  check_mode:
    description: Stores nothing.
    support: full
  diff_mode:
    description: Changes nothing.
    support: none
"""

EXAMPLES = r"""
- name: Gather facts about the printers
  zvkconfig.wifi.zvkwifi_facts:

- name: Show the printers that are in no network
  ansible.builtin.debug:
    msg: "{{ zvkwifi_printers | selectattr('ip', 'none') | map(attribute='serial') }}"
"""

RETURN = r"""
ansible_facts:
  description: The facts.
  returned: always
  type: dict
  contains:
    zvkwifi_version:
      description: The version of zvkwifi.
      type: str
    zvkwifi_printers:
      description:
        - The printers. Each has C(device), C(address), C(serial), C(make), C(model), C(state) and C(result). With
          I(status) it also has C(ssid), C(ip), C(trouble_code), C(authentication), C(seconds) and C(error).
      type: list
      elements: dict
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.zvkconfig.wifi.plugins.module_utils import zvkwifi


def main():
    module = AnsibleModule(
        argument_spec={
            **zvkwifi.COMMON_PARAMETERS,
            "printers": {"type": "list", "elements": "str", "default": []},
            "status": {"type": "bool", "default": True},
        },
        supports_check_mode=True,
    )
    names = module.params["printers"]
    if names and not module.params["status"]:
        module.fail_json(msg="printers: expected none without status")
    program = zvkwifi.find_program(module)
    version = module.run_command([program, "--version"], check_rc=True)[1].split()[-1]
    printers = [] if names else zvkwifi.run(module, program, ["list"])
    if module.params["status"] and (names or printers):
        printers = zvkwifi.run(module, program, ["status"] + (names or ["--all"]))
    module.exit_json(
        changed=False,
        ansible_facts={"zvkwifi_version": version, "zvkwifi_printers": printers},
    )


if __name__ == "__main__":
    main()
