#pragma once

#include "setup/base/SetUpChoice.h"
#include "setup/base/SetUpServices.h"

#include <QWizardPage>

class QLabel;
class QVBoxLayout;

// One step of the assistant: what can be entered, and a line below that says what is wrong with it.
class SetUpPage : public QWizardPage {
    Q_OBJECT

public:
    SetUpPage(const SetUpServices& services, const char* name, int title, int about);

    // Takes what is entered into the choice. Returns why it cannot be used; empty when it was taken.
    virtual QString Take(SetUpChoice& choice) = 0;
    // Takes it out again: the step is left for later.
    virtual void Skip(SetUpChoice& choice) = 0;
    // Fills the page, with what was decided before it.
    virtual void Enter(const SetUpChoice& choice);
    // What runs is given up.
    virtual void Leave() {}

    void Say(const QString& text);

protected:
    QString Text(int id) const;
    // A control with its name, below the others.
    void AddRow(int label, QWidget* control, const char* name);
    template <typename Button> Button* AddButton(int caption, const char* name)
    {
        auto* button = new Button(Text(caption), this);
        button->setObjectName(QLatin1String(name));
        AddWidget(button);
        return button;
    }
    void AddWidget(QWidget* widget);
    QLabel* AddText(const char* name);

    const SetUpServices& m_services;

private:
    QVBoxLayout* m_rows;
    QLabel* m_message;
};
