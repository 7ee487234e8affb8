"""What the console has to work through. A condition begins a second before the storm and ends `seconds` later."""

import errno
import time
from collections import namedtuple

from sites import Files, LateStandby, Server, Standby
from work import Regroup, Storm

Condition = namedtuple("Condition", "name site seconds begin end from_start emergencies work", defaults=(False, True, Storm(500)))


def _nothing(_):
    pass


def _fail(reason, everywhere=False):
    return lambda bench: bench.marks.fail(reason, everywhere)


def _lock(on):
    return lambda bench: bench.site.lock(on)


def _silence(on):
    return lambda bench: bench.site.proxy.silent(on)


def _cut(bench, times, pause):
    for _ in range(times):
        bench.site.proxy.cut()
        time.sleep(pause)


def _replace(first, pause, before=_nothing):
    """The standby takes the server's place after so many seconds, and so many later."""
    def go(bench):
        time.sleep(first)
        bench.site.kill_primary()
        time.sleep(pause)
        bench.site.promote()

    def begin(bench):
        before(bench)
        bench.beside(lambda: go(bench))
    return begin


def _round_trip(milliseconds):
    return Condition(f"server, round trip {milliseconds} ms", Server, 20,
                     lambda bench: bench.site.proxy.round_trip(milliseconds), _nothing, True)


ALL = [
    Condition("files, quiet", Files, 20, _nothing, _nothing),
    Condition("files, each flush 200 ms", Files, 20, lambda bench: bench.marks.slow_flushes(200), _nothing),
    Condition("file locked 30 s", Files, 30, _lock(True), _lock(False)),
    Condition("disk full 20 s", Files, 20, _fail(errno.ENOSPC), _fail(0)),
    Condition("disk full 20 s, for the spool, too", Files, 20, _fail(errno.ENOSPC, True), _fail(0)),
    Condition("file read-only 20 s", Files, 20, _fail(errno.EROFS), _fail(0)),
    Condition("file deleted, put back after 20 s", Files, 20, lambda bench: bench.site.delete(),
              lambda bench: bench.site.put_back()),
    Condition("server, quiet", Server, 20, _nothing, _nothing),
    _round_trip(50),
    _round_trip(200),
    Condition("server silent 60 s", Server, 60, _silence(True), _silence(False)),
    Condition("server's lines cut, three times in 15 s", Server, 15,
              lambda bench: bench.beside(lambda: _cut(bench, 3, 5)), _nothing),
    Condition("server killed, back after 20 s", Server, 20, lambda bench: bench.site.kill_server(),
              lambda bench: bench.site.start_server()),
    Condition("server replaced by its standby, which it waits for", Standby, 25, _replace(8, 5), _nothing),
    Condition("server replaced by its standby, which had missed 50 messages", LateStandby, 25,
              _replace(12, 2, lambda bench: bench.site.standby("pause")), _nothing, work=Storm(50)),
    Condition("regroup and 20 changes of duty, file locked 30 s", Files, 30, _lock(True), _lock(False), work=Regroup()),
    Condition("regroup and 20 changes of duty, server silent 30 s", Server, 30, _silence(True), _silence(False), work=Regroup()),
    Condition("window's thread blocked 60 s", Files, 60, lambda bench: bench.marks.block(60), _nothing, False, False),
]
