#pragma once

#include <QObject>

// Gives the keyboard back to a box or dialog when somebody clicks the window that waits for its answer: the
// keys would go nowhere. Exists once, beside the application.
class ModalFocus : public QObject {
    Q_OBJECT

public:
    ModalFocus();

private:
    static void TakeBack();
};
