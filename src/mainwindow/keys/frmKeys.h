#pragma once

#include <QDialog>
#include <functional>

class KeyBindings;
class KeyBox;
class QLabel;
class QPrinter;
class QPushButton;
class QTableWidget;
struct IPrompt;
struct IStringSource;
struct KeyRow;

// The sheet of all keys, to be read, printed and, line by line, changed. Modeless; hidden between uses.
class frmKeys : public QDialog {
    Q_OBJECT

public:
    // All must outlive the window.
    frmKeys(const IStringSource& strings, IPrompt& prompt, KeyBindings& keys);

    // On paper, or in a file. Raises Error when the printer takes nothing.
    void PrintOn(QPrinter& printer) const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void Build();
    void BuildTable();
    void Fill();
    void FollowLine();
    void AskForPrinter();
    const KeyRow* Row() const;
    void Change(const std::function<QString(const KeyRow& row)>& change);

    const IStringSource& m_strings;
    IPrompt& m_prompt;
    KeyBindings& m_keys;
    QTableWidget* lvKeys;
    KeyBox* txtKey;
    QLabel* lblNote; // why a key was refused
    QPushButton* cmdSetKey;
    QPushButton* cmdNoKey;
    QPushButton* cmdKeyAsDelivered;
};
