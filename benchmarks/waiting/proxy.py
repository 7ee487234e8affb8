"""A proxy before a server: it delays, falls silent and cuts."""

import asyncio
import threading


class Proxy:
    """Use from one thread; the connections are served by another."""

    def __init__(self, target):
        self._target = target
        self._delay = 0.0  # seconds each way
        self._silent = False
        self._writers = set()
        self._loop = asyncio.new_event_loop()
        started = threading.Event()
        threading.Thread(target=self._run, args=(started,), daemon=True).start()
        started.wait()

    def round_trip(self, milliseconds):
        self._delay = milliseconds / 2000

    def silent(self, on):
        """Nothing gets through in either direction, and nothing is lost."""
        self._silent = on

    def cut(self):
        """Ends all connections."""
        self._loop.call_soon_threadsafe(self._abort)

    def _abort(self):
        for writer in self._writers:
            writer.transport.abort()

    def _run(self, started):
        asyncio.set_event_loop(self._loop)
        self._loop.set_exception_handler(lambda *_: None)  # of connections that end
        server = self._loop.run_until_complete(asyncio.start_server(self._serve, "127.0.0.1", 0))
        self.port = server.sockets[0].getsockname()[1]
        started.set()
        self._loop.run_forever()

    async def _serve(self, reader, writer):
        try:
            while self._silent:
                await asyncio.sleep(0.01)
            onward_reader, onward = await asyncio.open_connection("127.0.0.1", self._target)
        except OSError:
            writer.transport.abort()
            return
        ends = {writer, onward}
        self._writers |= ends
        await asyncio.wait([asyncio.ensure_future(self._pass(reader, onward)),
                            asyncio.ensure_future(self._pass(onward_reader, writer))],
                           return_when=asyncio.FIRST_COMPLETED)
        for end in ends:
            end.transport.abort()
        self._writers -= ends

    async def _pass(self, reader, writer):
        under_way = asyncio.Queue()
        delivery = asyncio.ensure_future(self._deliver(under_way, writer))
        while octets := await reader.read(65536):
            under_way.put_nowait((self._loop.time() + self._delay, octets))
        under_way.put_nowait(None)
        await delivery

    async def _deliver(self, under_way, writer):
        while entry := await under_way.get():
            due, octets = entry
            await asyncio.sleep(max(0, due - self._loop.time()))
            while self._silent:
                await asyncio.sleep(0.01)
            writer.write(octets)
            await writer.drain()
