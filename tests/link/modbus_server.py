"""A Modbus device of pymodbus.

    modbus_server.py tcp PORT [--no-mask-write]      PORT 0: one that the system chooses
    modbus_server.py rtu DEVICE [--no-mask-write]

Says "ready PORT" when it serves. Byte a of the holding registers is a, the input registers are
their complement; every third coil is on, from 0, and every third discrete input, from 1. There are
1000 of each.
"""

import asyncio
import sys

from pymodbus.datastore import ModbusSequentialDataBlock, ModbusServerContext, ModbusSlaveContext
from pymodbus.framer.rtu_framer import ModbusRtuFramer
from pymodbus.server.async_io import ModbusSerialServer, ModbusTcpServer

COUNT = 1000
MASK_WRITE = 22


def device():
    holding = [(2 * r & 0xFF) << 8 | (2 * r + 1 & 0xFF) for r in range(COUNT)]
    tables = {
        "co": [i % 3 == 0 for i in range(COUNT)],
        "di": [i % 3 == 1 for i in range(COUNT)],
        "hr": holding,
        "ir": [r ^ 0xFFFF for r in holding],
    }
    blocks = {name: ModbusSequentialDataBlock(0, values) for name, values in tables.items()}
    return ModbusServerContext(ModbusSlaveContext(zero_mode=True, **blocks), single=True)


async def serve(kind, where, has_mask_write):
    port = 0
    if kind == "tcp":
        server = ModbusTcpServer(
            device(), address=("127.0.0.1", int(where)), allow_reuse_address=True
        )
        task = asyncio.create_task(server.serve_forever())
        await server.serving
        port = server.server.sockets[0].getsockname()[1]
    else:
        server = ModbusSerialServer(device(), framer=ModbusRtuFramer, port=where, baudrate=19200)
        await server.start()
        task = asyncio.create_task(server.serve_forever())
    if not has_mask_write:
        del server.decoder._ServerDecoder__lookup[MASK_WRITE]
    print("ready", port, flush=True)
    await task


asyncio.run(serve(sys.argv[1], sys.argv[2], "--no-mask-write" not in sys.argv))
