#pragma once

#include <QString>

class QAbstractButton;
class QDialog;
class QLabel;

// Makes a dialog at least as large as its texts need at its present width; word-wrapped ones may need more
// than it has.
void GrowToContents(QDialog& dialog);

// Shows a sentence in a dialog's message line; the dialog grows when it needs more lines than are free.
void ShowMessageLine(QDialog& dialog, QLabel& line, const QString& text);

// A button with only "..." on it need not be as wide as the others.
void MakeNarrow(QAbstractButton& button);
