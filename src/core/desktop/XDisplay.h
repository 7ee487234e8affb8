#pragma once

struct _XDisplay;

// The connection that the program's windows use, for what the toolkit cannot ask; null when it does not run
// on an X display.
_XDisplay* XDisplay();
