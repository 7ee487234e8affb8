#pragma once

#include <QFrame>

class QPushButton;
struct IStringSource;

// What comes next, in a window in which nobody has logged on yet.
class StartPanel : public QFrame {
    Q_OBJECT

public:
    StartPanel(const IStringSource& strings, QWidget* parent);

    // In the middle of a rectangle, as far as it has room.
    void Place(const QRect& room);

Q_SIGNALS:
    void LogonWanted();
    void SetUpWanted();
};
