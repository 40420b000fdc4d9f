#!/usr/bin/env python3
"""Stores the values of a machine far away in an SQLite file. docs/remote.md says what is sent."""

import argparse
import json
import queue
import secrets
import signal
import sqlite3
import sys
import threading
import time
import urllib.parse

import paho.mqtt.client as mqtt

FORMAT = 1
RENEWAL = 3.0  # seconds; the machine forgets after 10 what is not asked for again

TABLES = """
CREATE TABLE IF NOT EXISTS reading (came REAL, machine TEXT, session TEXT, sequence INTEGER,
    running INTEGER, operand TEXT, value INTEGER, age INTEGER);
CREATE TABLE IF NOT EXISTS hole (came REAL, machine TEXT, session TEXT, first INTEGER,
    last INTEGER);
"""


class Store:
    """What the messages of one machine come to in the file."""

    def __init__(self, file, machine, operands):
        self.base = sqlite3.connect(file)
        self.base.executescript(TABLES)
        self.machine = machine
        self.operands = set(operands)
        self.session = None
        self.sequence = None
        self.known = {}

    def take(self, came, message):
        session, sequence = message["session"], message["sequence"]
        if session != self.session:
            self.session, self.sequence, self.known = session, None, {}
        if self.sequence is not None and sequence <= self.sequence:
            return
        if self.sequence is not None and sequence > self.sequence + 1:
            self.base.execute(
                "INSERT INTO hole VALUES (?, ?, ?, ?, ?)",
                (came, self.machine, session, self.sequence + 1, sequence - 1),
            )
        self.sequence = sequence
        told = dict(message["values"])
        told.update(dict.fromkeys(message["refused"]))
        for operand in sorted(self.operands & told.keys()):
            value = told[operand]
            if operand in self.known and self.known[operand] == value:
                continue
            self.known[operand] = value
            self.base.execute(
                "INSERT INTO reading VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
                (came, self.machine, session, sequence, message["running"], operand, value,
                 message["ages"].get(operand, 0)),
            )
        self.base.commit()


def values_of(payload):
    """The message, or None for what is none of this format."""
    try:
        message = json.loads(payload)
    except ValueError:
        return None
    return message if isinstance(message, dict) and message.get("format") == FORMAT else None


def options():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("address", help="mqtts://USER@BROKER[:PORT]/PLANT/MACHINE")
    parser.add_argument("operands", nargs="+", metavar="OPERAND", help="as in MW20 or DB1.DBW0")
    parser.add_argument("--file", required=True, help="the SQLite file, made when it is missing")
    parser.add_argument("--password-file", help="its first line is the password")
    parser.add_argument("--ca", help="certificates to be trusted; else those of the system")
    return parser.parse_args()


def main():
    order = options()
    address = urllib.parse.urlsplit(order.address)
    names = address.path.strip("/")
    if address.scheme != "mqtts" or not address.hostname or names.count("/") != 1:
        sys.exit("collect_values: an address is mqtts://USER@BROKER[:PORT]/PLANT/MACHINE")
    user = address.username or "anonymous"
    values = f"plc/{names}/values"
    watch = f"plc/{names}/watch/{user}/{secrets.token_hex(8)}"

    def on_connect(client, _, __, refused):
        if refused:
            print(f"collect_values: {mqtt.connack_string(refused)}", file=sys.stderr)
        else:
            client.subscribe(values)

    messages = queue.Queue()
    subscribed = threading.Event()
    client = mqtt.Client()
    client.on_connect = on_connect
    client.on_subscribe = lambda *_: subscribed.set()
    client.on_message = lambda _, __, message: messages.put((time.time(), message))
    client.tls_set(order.ca)
    if order.password_file:
        with open(order.password_file, encoding="utf-8") as file:
            client.username_pw_set(user, file.readline().rstrip("\n"))
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))

    store = Store(order.file, names, order.operands)
    try:
        client.connect(address.hostname, address.port or 8883)
    except OSError as wrong:
        sys.exit(f"collect_values: {wrong}")
    client.loop_start()
    due = time.monotonic()
    try:
        while True:
            if subscribed.is_set() and client.is_connected() and time.monotonic() >= due:
                client.publish(watch, json.dumps({"format": FORMAT, "operands": order.operands}))
                due = time.monotonic() + RENEWAL
            try:
                came, message = messages.get(timeout=0.1)
            except queue.Empty:
                continue
            read = None if message.retain else values_of(message.payload)
            try:
                if read is not None:
                    store.take(came, read)
            except (AttributeError, KeyError, TypeError, ValueError, sqlite3.InterfaceError) as wrong:
                print(f"collect_values: a message is dropped: {wrong!r}", file=sys.stderr)
    except KeyboardInterrupt:
        pass
    finally:
        client.publish(watch, json.dumps({"format": FORMAT, "operands": []}))
        client.disconnect()
        client.loop_stop()


if __name__ == "__main__":
    main()
