#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

// A sentence below a list: that it does not show everything and, where there is one, the way to the rest.
// Hidden while it has nothing to say.
class ListNotice : public QWidget {
    Q_OBJECT

public:
    // The label has the notice's name with "Text" appended.
    ListNotice(const QString& name, QWidget* parent);

    // Shows a button below the sentence; called once.
    QPushButton& AddButton(const QString& name, const QString& caption);
    // An empty text hides the notice.
    void Say(const QString& text);

private:
    QLabel* m_text;
};
