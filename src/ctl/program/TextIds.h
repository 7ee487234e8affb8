#pragma once

// Catalogue ids that this program's commands load themselves.
namespace CtlText {

constexpr int CallsignRule = 2130;

} // namespace CtlText
