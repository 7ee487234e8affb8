#pragma once

#include <QString>
#include <optional>

class QAbstractItemView;

// The address line made of the selected lines of a list: their tags in list order, separated by ";". A
// selected line with a blank tag adds no address, but leaves its ";" once an address is there. Nothing when
// no line is selected.
std::optional<QString> AddressesFromSelection(const QAbstractItemView& list, int tagRole);
