"""What the console has to work through. A condition begins a second before the storm and ends `seconds` later."""

import errno
from collections import namedtuple

Condition = namedtuple("Condition", "name engine seconds begin end from_start emergencies", defaults=(False, True))


def _nothing(_):
    pass


def _fail(reason, everywhere=False):
    return lambda bench: bench.marks.fail(reason, everywhere)


def _round_trip(milliseconds):
    return Condition(f"server, round trip {milliseconds} ms", "server", 20,
                     lambda bench: bench.site.proxy.round_trip(milliseconds), _nothing, True)


ALL = [
    Condition("files, quiet", "files", 20, _nothing, _nothing),
    Condition("files, each flush 200 ms", "files", 20, lambda bench: bench.marks.slow_flushes(200), _nothing),
    Condition("file locked 30 s", "files", 30, lambda bench: bench.site.lock(True), lambda bench: bench.site.lock(False)),
    Condition("disk full 20 s", "files", 20, _fail(errno.ENOSPC), _fail(0)),
    Condition("disk full 20 s, for the spool, too", "files", 20, _fail(errno.ENOSPC, True), _fail(0)),
    Condition("file read-only 20 s", "files", 20, _fail(errno.EROFS), _fail(0)),
    Condition("file deleted, put back after 20 s", "files", 20, lambda bench: bench.site.delete(),
              lambda bench: bench.site.put_back()),
    Condition("server, quiet", "server", 20, _nothing, _nothing),
    _round_trip(50),
    _round_trip(200),
    Condition("server silent 60 s", "server", 60, lambda bench: bench.site.proxy.silent(True),
              lambda bench: bench.site.proxy.silent(False)),
    Condition("server's lines cut, three times in 15 s", "server", 15,
              lambda bench: bench.repeat(bench.site.proxy.cut, 3, 5), _nothing),
    Condition("server killed, back after 20 s", "server", 20, lambda bench: bench.site.kill_server(),
              lambda bench: bench.site.start_server()),
    Condition("window's thread blocked 60 s", "files", 60, lambda bench: bench.marks.block(60), _nothing, False, False),
]
