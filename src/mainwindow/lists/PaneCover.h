#pragma once

class QLabel;
class QWidget;
struct IStringSource;

// What stands in the place of a list that nobody may read before the next logon; hidden at first. The parent
// owns it.
QLabel* NewPaneCover(const IStringSource& strings, QWidget* parent);
