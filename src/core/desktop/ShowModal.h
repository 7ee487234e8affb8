#pragma once

class QDialog;
class QWidget;

// Shows a dialog modal to one window and returns its result when it is closed. Other windows, above all the
// one of a radio call, stay usable meanwhile. The dialog belongs to its owner only while it is shown.
int ShowModal(QDialog& dialog, QWidget& owner);
