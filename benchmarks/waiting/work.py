"""What comes in, and what the operator does, while the database makes the console wait."""

import time

from processes import Trouble

ON_DUTY, OFF_DUTY = 1, 2  # the demonstration's codes


class Storm:
    """Messages from all over the fleet, a fifth of them texts."""

    def __init__(self, messages):
        self.messages = messages

    def prepare(self, bench):
        """Before the console starts."""

    def ask(self, bench):
        """Before the condition begins."""

    def begin(self, bench):
        bench.radio.tell(f"storm {self.messages} 0.2")

    def during_call(self, bench, number):
        """While an emergency call rings."""

    def wrong(self, _):
        """Whether the database holds another regrouping in the end than was confirmed."""
        return 0


class Regroup(Storm):
    """One that is asked for before the condition and confirmed in it; then changes of duty, four during each emergency call."""

    _GROUP, _POSITION, _MEMBER = "Group92", 3, "Unit20"
    _ANSWER = 3000  # ms after the request
    _FIRST, _SECOND = ("Unit31", "Unit32", "Unit33", "Unit34", "Unit35"), ("Unit36", "Unit37", "Unit38", "Unit39", "Unit40")
    # Each one is a change; who goes off duty comes back, so that the last one of each decides.
    _DUTIES = [(unit, code) for units, code in ((_FIRST + _SECOND, ON_DUTY), (_FIRST, OFF_DUTY), (_FIRST, ON_DUTY)) for unit in units]
    _AT_ONCE = 4
    _LIST = 150, 615  # below the last line of the individuals

    def __init__(self):
        super().__init__(len(self._DUTIES))

    def prepare(self, bench):
        bench.site.set("dynamic regrouping", "defgroupkey", f"DGS{bench.site.group_id(self._GROUP):X}_{self._POSITION:X}")

    def ask(self, bench):
        bench.radio.tell(f"behave {self._MEMBER} regroup queued 300 {self._ANSWER}")
        bench.radio.tell(f"status {self._MEMBER} {ON_DUTY}")
        bench.until(lambda: bench.site.duty()[self._MEMBER], 20, "nobody comes on duty")
        time.sleep(2)  # what is listed may be drawn again
        bench.radio.mark()
        bench.screen.chord("Ctrl+Tab")
        bench.screen.click(*self._LIST)
        bench.screen.type(self._MEMBER, 0.02)
        bench.screen.chord("Alt+g")
        bench.screen.chord("r")
        bench.until(lambda: bench.radio.sent("text"), 10, "no regroup command is sent")

    def begin(self, bench):
        if self._is_confirmed(bench):
            raise Trouble("the radio had confirmed the regroup before the condition began")
        bench.until(lambda: self._is_confirmed(bench), 10, "the regroup is not confirmed")

    def during_call(self, bench, number):
        for unit, code in self._DUTIES[number * self._AT_ONCE:(number + 1) * self._AT_ONCE]:
            bench.radio.tell(f"status {unit} {code}")

    def wrong(self, site):
        return int(site.members() != [(self._GROUP, self._MEMBER, self._POSITION)]) + site.open_requests()

    def _is_confirmed(self, bench):
        return self._GROUP in bench.radio.tell(f"groups {self._MEMBER}")
