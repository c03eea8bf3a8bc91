# Copyright (c) 2026 The zvkconfig authors
# MIT License (see https://opensource.org/license/mit)

from __future__ import absolute_import, division, print_function

__metaclass__ = type


class ModuleDocFragment(object):
    """The documentation that the modules share."""

    DOCUMENTATION = r"""
options:
  executable:
    description: The name or path of C(zvkwifi).
    type: str
    default: zvkwifi
author:
  - The zvkconfig authors (@zvkconfig)
"""
