#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

// A sentence about a list, below it: that it does not show everything, and, if there is one, the way to the
// rest. Hidden while it has nothing to say.
class ListNotice : public QWidget {
    Q_OBJECT

public:
    // The label is named like the notice with "Text" behind.
    ListNotice(const QString& name, QWidget* parent);

    // Shows a button below the sentence; called once.
    QPushButton& AddButton(const QString& name, const QString& caption);
    // An empty text hides the notice.
    void Say(const QString& text);

private:
    QLabel* m_text;
};
