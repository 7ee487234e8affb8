#pragma once

// Catalogue ids that this program's commands load themselves.
namespace ctl {

constexpr int textCallsignRule = 2130;

} // namespace ctl
