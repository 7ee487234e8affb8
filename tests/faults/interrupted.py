"""Commands that are killed, or find the disk full, at each of their changes of files."""

import signal

import power
from commands import ALL
from place import Broken


def _moments(count, most):
    """At most so many of 1..count, the first and the last among them."""
    if count <= most:
        return list(range(1, count + 1))
    return sorted({1 + round(i * (count - 1) / (most - 1)) for i in range(most)})


def _each(site, name, most, interrupt):
    """Calls interrupt(command, moment) at the moments of the command; looks that it has then happened or not, and can be done."""
    command = ALL[name](site)
    site.restore(command.begin)
    whole = command.run(FULL=0)
    if whole.code != 0 or not command.state():
        raise Broken(f"{name} without a fault: {whole}")
    moments = _moments(whole.changes, most)
    for moment in moments:
        site.restore(command.begin)
        try:
            made = interrupt(command, moment)
            done = command.state()
            if made.code == 0 and not done:
                raise Broken("said to be done, and is not")
            site.check_sound()
            second = command.run()
            if second.code != (command.again if done and command.again else 0) or not command.state():
                raise Broken(f"cannot be done afterwards, {second}")
        except Broken as broken:
            raise Broken(f"{name}, change {moment} of {whole.changes}: {broken}") from None
    return len(moments)


def killed(site, name, most):
    def interrupt(command, moment):
        made = command.run(KILL=moment)
        if made.code not in (-signal.SIGKILL, 0):
            raise Broken(str(made))
        return made
    return _each(site, name, most, interrupt)


def full(site, name, most):
    def interrupt(command, moment):
        made = command.run(FULL=moment)
        made.check_answer()
        if made.code == 1 and command.state():
            raise Broken(f"said not to be done, and is: {made}")
        return made
    return _each(site, name, most, interrupt)


def power_cut(site, name, _times):
    command = ALL[name](site)
    site.restore(command.begin)
    record = site.folder / "record"
    whole = command.run(RECORD=record)
    if whole.code != 0:
        raise Broken(f"{name} without a fault: {whole}")

    def look(_said, at_end):
        for file in (site.database, site.database.with_suffix(".kynw")):
            site.check_file(file)
        if not command.state() and at_end:
            raise Broken(f"{name} was said to be done, and is not")

    return power.cuts(record, site.work, site.folder / command.begin, look)
