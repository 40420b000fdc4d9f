"""A Modbus device that misbehaves in one way and is honest else. Its registers are 17; what it says
while it misbehaves is 0xDEAD.

    misbehaving_server.py WAY           on the network: its first two connections misbehave
    misbehaving_server.py WAY DEVICE    on a serial line: its second to fourth answers misbehave

Says "ready PORT" when it serves.
"""

import os
import socket
import struct
import sys
import time
import tty

TRUTH = 17
LIE = 0xDEAD


def answer(request, value, function=0, more=0, unit=0, length=0):
    """The answer to a request for registers, with some of its numbers changed by so much."""
    its, wanted, _, count = struct.unpack(">BBHH", request)
    values = struct.pack(">H", value) * (count + more)
    return struct.pack(">BBB", its + unit, wanted + function, len(values) + length) + values


def in_tcp_frame(request, body, transaction=0, protocol=0, length=0):
    number = struct.unpack(">H", request[:2])[0] + transaction & 0xFFFF
    return struct.pack(">HHH", number, protocol, len(body) + length) + body


def checksum(body):
    crc = 0xFFFF
    for byte in body:
        crc ^= byte
        for _ in range(8):
            crc = crc >> 1 ^ (0xA001 if crc & 1 else 0)
    return struct.pack("<H", crc)


def in_rtu_frame(_, body):
    return body + checksum(body)


def lies(way, request, ask, frame):
    """What is sent instead of the answer, piece by piece."""

    def lie(**changes):
        return frame(request, answer(ask, LIE, **changes))

    def lie_in_frame(**changes):
        return frame(request, answer(ask, LIE), **changes)

    return {
        "silence": lambda: [],
        "garbage": lambda: [bytes(range(7, 71))],
        "much_garbage": lambda: [b"\xde\xad" * 2000],
        "half_an_answer": lambda: [lie()[: len(lie()) // 2]],
        "only_a_header": lambda: [lie()[:7]],
        "wrong_checksum": lambda: [lie()[:-1] + bytes([lie()[-1] ^ 1])],
        "another_request": lambda: [lie_in_frame(transaction=1)],
        "an_earlier_request": lambda: [lie_in_frame(transaction=-1)],
        "another_protocol": lambda: [lie_in_frame(protocol=1)],
        "another_unit": lambda: [lie(unit=1)],
        "another_length": lambda: [lie_in_frame(length=1)],
        "another_count": lambda: [lie(length=2)],
        "another_function": lambda: [lie(function=1)],
        "more_registers": lambda: [lie(more=1)],
        "fewer_registers": lambda: [lie(more=-1)],
        "more_bytes": lambda: [lie() + b"\0"],
        "two_answers": lambda: [lie() + lie()],
        "an_answer_and_the_next": lambda: [lie() + lie_in_frame(transaction=1)],
        "byte_by_byte": lambda: [lie()[i : i + 1] for i in range(len(lie()))],
    }[way]()


def say(way, pieces, send):
    for piece in pieces:
        send(piece)
        if way == "byte_by_byte":
            time.sleep(0.1)


def serve_connection(connection, way):
    with connection:
        while True:
            request = connection.recv(12, socket.MSG_WAITALL)
            if len(request) < 12 or way == "hanging_up":
                return
            ask = request[6:]
            if way:
                say(way, lies(way, request, ask, in_tcp_frame), connection.sendall)
            else:
                connection.sendall(in_tcp_frame(request, answer(ask, TRUTH)))


def serve_network(way):
    server = socket.create_server(("127.0.0.1", 0))
    print("ready", server.getsockname()[1], flush=True)
    misbehaviours = 2
    while True:
        accepted, _ = server.accept()
        try:
            serve_connection(accepted, way if misbehaviours > 0 else "")
        except OSError:
            pass  # the other side has given up
        misbehaviours -= 1


def serve_line(way, device):
    line = os.open(device, os.O_RDWR | os.O_NOCTTY)
    tty.setraw(line)
    print("ready 0", flush=True)
    request = b""
    answers = 0
    while True:
        request += os.read(line, 8 - len(request))
        if len(request) < 8:
            continue
        ask = request[:6]
        answers += 1
        if 2 <= answers <= 4:
            say(way, lies(way, request, ask, in_rtu_frame), lambda piece: os.write(line, piece))
        else:
            os.write(line, in_rtu_frame(request, answer(ask, TRUTH)))
        request = b""


if len(sys.argv) > 2:
    serve_line(sys.argv[1], sys.argv[2])
else:
    serve_network(sys.argv[1])
