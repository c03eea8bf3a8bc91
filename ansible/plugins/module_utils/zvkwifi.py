"""Runs zvkwifi and reads its JSON documents."""

from __future__ import absolute_import, division, print_function

__metaclass__ = type

import json

AUTHENTICATED = 2
NO_TROUBLE = 0

# The parameters of each module.
COMMON_PARAMETERS = {"executable": {"type": "str", "default": "zvkwifi"}}

# The options of zvkwifi set that a task can give, except the secret. The names are those of the
# parameters, with "_" for "-".
SETTINGS = ("ssid", "security", "mode", "channel", "encryption", "wep_auth", "user", "eap", "inner")


def find_program(module, required=True):
    """Returns the path of zvkwifi. Without it the task fails, or if not required returns None."""
    return module.get_bin_path(module.params["executable"], required=required)


def failure_text(error):
    """Returns message and remedy of an "error" of a document."""
    return " ".join(part for part in (error["message"], error["remedy"]) if part)


def run(module, program, words, secret=None):
    """Runs a command of zvkwifi with --json and returns the entries of the printers.

    The secret goes to standard input, so no other process and no file has it. The task fails if
    zvkwifi fails before it has a printer, or prints no document.
    """
    status, out, err = module.run_command(
        [program] + words + ["--json", "--quiet"],
        data=secret,
        environ_update={"LC_ALL": "C.UTF-8", "LANGUAGE": "C"},
    )
    try:
        document = json.loads(out)
    except ValueError:
        module.fail_json(msg="zvkwifi %s printed no document: %s" % (words[0], err.strip()), rc=status)
    if "error" in document:
        module.fail_json(msg=failure_text(document["error"]), rc=status)
    return document["printers"]


def setting_words(params):
    """Returns the settings of a task as options of zvkwifi set."""
    words = []
    for name in SETTINGS:
        value = params[name]
        if isinstance(value, list):
            value = ",".join(value)
        if value not in (None, ""):
            words.append("--%s=%s" % (name.replace("_", "-"), value))
    return words


def is_joined(entry, params):
    """Returns True if the status of a printer shows that it is in the wanted network."""
    is_enterprise = params["security"].lower() in ("802.1x", "wpa-enterprise", "eap")
    authentication = entry.get("authentication") or {}
    return (
        entry["ssid"] == params["ssid"]
        and entry["trouble_code"] == NO_TROUBLE
        and entry["ip"] is not None
        and (not is_enterprise or authentication.get("code") == AUTHENTICATED)
    )
