#!/usr/bin/python3
"""A minimal platform service for the panel: what the panel calls, and nothing that it does not.

    ovik-service.py [--session] [--interfaces XML] CONFIGURATION

CONFIGURATION is a file with the network configuration as JSON, as in platform-service.md. The service keeps it in
memory; a real one stores it, and changes the device where this one prints what it would do. It publishes on the system
bus; --session chooses the session bus. XML is the description of the interfaces, by default the installed one. Needs
the package python3-gi.
"""
import argparse
import json
import sys

from gi.repository import Gio, GLib

NAME = "com.quen.OVIK"
DESCRIPTION = "/usr/share/dbus-1/interfaces/com.quen.OVIK.xml"
OBJECTS = {"/": NAME, "/MainOSInfo": NAME + ".PartitionInfo", "/NetworkManager": NAME + ".NetworkManager",
           "/ServiceManager": NAME + ".ServiceManager", "/SystemInfo": NAME + ".SystemInfo"}
ADDRESSES = ("ip_address", "netmask", "gateway_ip")


class Refused(Exception):
    """Becomes an error reply."""


def to_text(document):
    """Never as \\u escapes, which make the panel refuse the whole text."""
    return json.dumps(document, ensure_ascii=False)


class Service:
    """One method for each member that the panel calls, under the member's name."""

    def __init__(self, document):
        self.document = document
        self.changed = set()
        self.enabled_services = set()

    def interface(self, name):
        for interface in self.document["interfaces"]:
            if interface["name"] == name:
                return interface
        raise Refused(f"there is no interface {name}")

    def getConfigJSON(self):
        return to_text(self.document)

    def getInterfaceConfig(self, name):
        return to_text(self.interface(name))

    def setInterfaceConfigJSON(self, name, text):
        """Takes the four settings that an operator can change; whatever else the text says came from this service, and
        may have lost letters or gained defaults on its way through the panel."""
        interface, wanted = self.interface(name), json.loads(text)
        if interface.get("readonly", True):
            raise Refused(f"{name} cannot be changed")
        if not wanted["dhcp"] and wanted["ip_address"] == "0.0.0.0":
            raise Refused("what was typed is no address")
        interface["dhcp"] = wanted["dhcp"]
        if not wanted["dhcp"]:
            interface.update((key, wanted[key]) for key in ADDRESSES)
        self.changed.add(name)
        return 0

    def applyNewConfiguration(self):
        for interface in map(self.interface, sorted(self.changed)):
            print("apply", to_text(interface))
            for key in ADDRESSES:
                interface.pop("actual_" + key, None)  # with DHCP they come back with the lease
                if not interface["dhcp"]:
                    interface["actual_" + key] = interface[key]
        self.changed.clear()
        return 0

    def enabled(self, service):
        return service in self.enabled_services

    def enable(self, service):
        return self.control("enable", service)

    def disable(self, service):
        return self.control("disable", service)

    def start(self, service):
        return self.control("start", service)

    def stop(self, service):
        return self.control("stop", service)

    def control(self, action, service):
        print(action, service)
        {"enable": self.enabled_services.add, "disable": self.enabled_services.discard}.get(action, str)(service)
        return 0

    def on_call(self, _connection, _sender, _path, interface, member, arguments, invocation):
        """Replies to every call; one that goes unanswered stops the panel for up to 25 seconds."""
        print(f"{interface}.{member}", to_text(arguments.unpack()))
        method = getattr(self, member) if member in CALLED else None
        try:
            if not method:
                raise Refused(f"{interface}.{member} is not provided")
            signature = "".join(argument.signature for argument in invocation.get_method_info().out_args)
            invocation.return_value(GLib.Variant(f"({signature})", (method(*arguments.unpack()),)))
        except (Refused, LookupError, TypeError, ValueError) as problem:
            invocation.return_dbus_error(NAME + ".Error.Refused", str(problem))


CALLED = ("getConfigJSON", "getInterfaceConfig", "setInterfaceConfigJSON", "applyNewConfiguration", "enabled", "enable",
          "disable", "start", "stop")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--session", action="store_true")
    parser.add_argument("--interfaces", default=DESCRIPTION, metavar="XML")
    parser.add_argument("configuration")
    arguments = parser.parse_args()
    sys.stdout.reconfigure(line_buffering=True)
    with open(arguments.configuration, encoding="utf-8") as file:
        service = Service(json.load(file))
    with open(arguments.interfaces, encoding="utf-8") as file:
        description = Gio.DBusNodeInfo.new_for_xml(file.read())
    bus = Gio.bus_get_sync(Gio.BusType.SESSION if arguments.session else Gio.BusType.SYSTEM)
    for path, interface in OBJECTS.items():
        bus.register_object(path, description.lookup_interface(interface), service.on_call)
    # After the objects: from now on the panel may call.
    Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, lambda *_: print("ready"),
                                   lambda *_: sys.exit(f"the bus does not let this program own {NAME}"))
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
