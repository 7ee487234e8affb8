#pragma once

namespace map27 {

// Which way a message goes. Apart from Messages.h, whose variants have the same names.
enum class Direction { ToRadio, FromRadio };

} // namespace map27
