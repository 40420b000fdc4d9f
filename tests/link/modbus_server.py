"""A Modbus device of pymodbus.

    modbus_server.py tcp PORT [OPTION...]      PORT 0: one that the system chooses
    modbus_server.py rtu DEVICE [OPTION...]

    --host ADDRESS    where it listens, 127.0.0.1 when it is not given
    --no-mask-write   it knows no function 22
    --times           says "asked SECONDS" when it reads registers or bits, by the monotonic clock
    --numbered        of what it reads, each even register holds its own address, and each odd one
                      the number of the request, from 1

Says "ready PORT" when it serves. Byte a of the holding registers is a, the input registers are
their complement; every third coil is on, from 0, and every third discrete input, from 1. There are
1000 of each.
"""

import argparse
import asyncio
import logging
import time

from pymodbus.datastore import ModbusSequentialDataBlock, ModbusServerContext, ModbusSlaveContext
from pymodbus.framer.rtu_framer import ModbusRtuFramer
from pymodbus.server.async_io import ModbusSerialServer, ModbusTcpServer

COUNT = 1000
MASK_WRITE = 22


class TimedBlock(ModbusSequentialDataBlock):
    """Says when it is read."""

    def getValues(self, address, count=1):
        print("asked", time.monotonic(), flush=True)
        return super().getValues(address, count)


class NumberedBlock(ModbusSequentialDataBlock):
    """Holds addresses and the number of the request."""

    requests = 0

    def getValues(self, address, count=1):
        NumberedBlock.requests += 1
        numbers = range(address, address + count)
        return [NumberedBlock.requests & 0xFFFF if r % 2 else r for r in numbers]


def device(block):
    holding = [(2 * r & 0xFF) << 8 | (2 * r + 1 & 0xFF) for r in range(COUNT)]
    tables = {
        "co": [i % 3 == 0 for i in range(COUNT)],
        "di": [i % 3 == 1 for i in range(COUNT)],
        "hr": holding,
        "ir": [r ^ 0xFFFF for r in holding],
    }
    blocks = {name: block(0, values) for name, values in tables.items()}
    return ModbusServerContext(ModbusSlaveContext(zero_mode=True, **blocks), single=True)


async def serve(wanted):
    block = ModbusSequentialDataBlock
    if wanted.times:
        block = TimedBlock
    if wanted.numbered:
        block = NumberedBlock
    port = 0
    if wanted.kind == "tcp":
        server = ModbusTcpServer(
            device(block), address=(wanted.host, int(wanted.where)), allow_reuse_address=True
        )
        task = asyncio.create_task(server.serve_forever())
        await server.serving
        port = server.server.sockets[0].getsockname()[1]
    else:
        server = ModbusSerialServer(
            device(block), framer=ModbusRtuFramer, port=wanted.where, baudrate=19200
        )
        await server.start()
        task = asyncio.create_task(server.serve_forever())
    if wanted.no_mask_write:
        del server.decoder._ServerDecoder__lookup[MASK_WRITE]
    print("ready", port, flush=True)
    await task


logging.disable(logging.ERROR)  # for which pymodbus takes each end of a connection
words = argparse.ArgumentParser()
words.add_argument("kind", choices=["tcp", "rtu"])
words.add_argument("where")
words.add_argument("--host", default="127.0.0.1")
words.add_argument("--no-mask-write", action="store_true")
words.add_argument("--times", action="store_true")
words.add_argument("--numbered", action="store_true")
asyncio.run(serve(words.parse_args()))
