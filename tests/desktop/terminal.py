"""Another program: a window that keeps what is typed into it. Arguments: its title and the file it writes."""

import sys

from Xlib import X, XK, Xutil, display


def main(title, path):
    screen = display.Display()
    root = screen.screen()
    window = root.root.create_window(40, 700, 420, 200, 0, root.root_depth, X.InputOutput, X.CopyFromParent,
                                     background_pixel=root.white_pixel, event_mask=X.KeyPressMask | X.StructureNotifyMask)
    window.set_wm_name(title)
    window.set_wm_class(title, title)
    window.set_wm_hints(flags=Xutil.InputHint | Xutil.StateHint, input=1, initial_state=Xutil.NormalState)
    window.set_wm_protocols([screen.intern_atom("WM_DELETE_WINDOW")])
    window.map()
    with open(path, "a", encoding="utf-8", buffering=1) as kept:
        while True:
            event = screen.next_event()
            if event.type == X.ClientMessage:
                return
            if event.type == X.KeyPress:
                symbol = screen.keycode_to_keysym(event.detail, event.state & X.ShiftMask)
                kept.write(screen.lookup_string(symbol) or f"<{XK.keysym_to_string(symbol) or symbol}>")
                kept.flush()


if __name__ == "__main__":
    main(*sys.argv[1:3])
