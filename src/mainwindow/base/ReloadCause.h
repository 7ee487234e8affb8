#pragma once

// Who makes a list be read again. Only the operator's own reload lets the selection and the place go. What
// cannot be read is asked about, but not when the reload comes by itself and again and again: that one
// raises, and the list stays as it is.
enum class ReloadCause { Operator, Radio, OtherConsole };
