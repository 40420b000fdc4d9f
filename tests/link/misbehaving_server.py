"""A Modbus device whose first two connections misbehave in one way, and which is honest from then
on. Its registers are 17; what it says while it misbehaves is 0xDEAD.

    misbehaving_server.py WAY

Says "ready PORT" when it serves.
"""

import socket
import struct
import sys
import time

TRUTH = 17
LIE = 0xDEAD


def answer(request, value, transaction=0, protocol=0, function=0, more=0, unit=0,
           length=0):
    """The answer to a request for registers, with some of its numbers changed by so much."""
    number, _, _, its, wanted, _, count = struct.unpack(">HHHBBHH", request)
    values = struct.pack(">H", value) * (count + more)
    body = struct.pack(">BBB", its + unit, wanted + function, len(values)) + values
    return struct.pack(">HHH", number + transaction & 0xFFFF, protocol, len(body) + length) + body


def lies(way, request):
    """What is sent instead of the answer, piece by piece."""
    lie = answer(request, LIE)
    return {
        "silence": [],
        "garbage": [bytes(range(7, 71))],
        "much_garbage": [b"\xde\xad" * 2000],
        "half_an_answer": [lie[: len(lie) // 2]],
        "only_a_header": [lie[:7]],
        "another_request": [answer(request, LIE, transaction=1)],
        "an_earlier_request": [answer(request, LIE, transaction=-1)],
        "another_protocol": [answer(request, LIE, protocol=1)],
        "another_unit": [answer(request, LIE, unit=1)],
        "another_length": [answer(request, LIE, length=1)],
        "another_function": [answer(request, LIE, function=1)],
        "more_registers": [answer(request, LIE, more=1)],
        "fewer_registers": [answer(request, LIE, more=-1)],
        "more_bytes": [lie + b"\0"],
        "two_answers": [lie + answer(request, LIE, transaction=1)],
        "byte_by_byte": [lie[i : i + 1] for i in range(len(lie))],
    }[way]


def serve(connection, way):
    with connection:
        while True:
            request = connection.recv(12, socket.MSG_WAITALL)
            if len(request) < 12 or way == "hanging_up":
                return
            if not way:
                connection.sendall(answer(request, TRUTH))
                continue
            for piece in lies(way, request):
                connection.sendall(piece)
                if way == "byte_by_byte":
                    time.sleep(0.1)


server = socket.create_server(("127.0.0.1", 0))
print("ready", server.getsockname()[1], flush=True)
misbehaviours = 2
while True:
    accepted, _ = server.accept()
    try:
        serve(accepted, sys.argv[1] if misbehaviours > 0 else "")
    except OSError:
        pass  # the other side has given up
    misbehaviours -= 1
