"""Stands between a program and a server, and does to what passes what a bad network does.

    proxy.py PORT-OF-THE-SERVER

Says "ready PORT" when it listens. On a signal it says what it does from then on:
SIGUSR1  swallows all that comes, in both directions, or passes it again
SIGUSR2  holds all that comes, or passes what it has held and all that comes
SIGWINCH holds what goes to the server, or passes what it has held and all that comes
SIGHUP   cuts all connections
"""

import asyncio
import signal
import sys


class Proxy:
    def __init__(self, port):
        self.port = port
        self.swallows = False
        self.to_server = asyncio.Event()
        self.to_server.set()
        self.to_program = asyncio.Event()
        self.to_program.set()
        self.writers = set()

    async def pump(self, reader, writer, passes):
        while data := await reader.read(65536):
            await passes.wait()
            if not self.swallows:
                writer.write(data)
                await writer.drain()
        writer.close()

    async def serve(self, reader, writer):
        to_reader, to_writer = await asyncio.open_connection("127.0.0.1", self.port)
        own = {writer, to_writer}
        self.writers |= own
        await asyncio.gather(
            self.pump(reader, to_writer, self.to_server),
            self.pump(to_reader, writer, self.to_program),
            return_exceptions=True,
        )
        for each in own:
            each.close()
        self.writers -= own

    def swallow(self):
        self.swallows = not self.swallows
        print("swallows" if self.swallows else "passes", flush=True)

    def hold(self, *ways):
        holds = self.to_server.is_set()
        for way in ways:
            if holds:
                way.clear()
            else:
                way.set()
        print("holds" if holds else "passes", flush=True)

    def cut(self):
        for writer in self.writers:
            writer.transport.abort()
        print("cut", flush=True)


async def main():
    proxy = Proxy(int(sys.argv[1]))
    loop = asyncio.get_running_loop()
    loop.add_signal_handler(signal.SIGUSR1, proxy.swallow)
    loop.add_signal_handler(signal.SIGUSR2, proxy.hold, proxy.to_server, proxy.to_program)
    loop.add_signal_handler(signal.SIGWINCH, proxy.hold, proxy.to_server)
    loop.add_signal_handler(signal.SIGHUP, proxy.cut)
    server = await asyncio.start_server(proxy.serve, "127.0.0.1", 0)
    print("ready", server.sockets[0].getsockname()[1], flush=True)
    await server.serve_forever()


asyncio.run(main())
