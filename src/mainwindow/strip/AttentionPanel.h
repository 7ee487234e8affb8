#pragma once

#include "mainwindow/strip/AttentionTexts.h"

#include <QPointer>
#include <QWidget>

class AttentionAlarm;
class AttentionBook;
class AttentionModel;
class QPushButton;
class QTreeView;
class StripRow;
struct Clock;
struct IStringSource;

// What waits for a person: a row with the first entry, or the one that is chosen in the list, and what can be
// done about it; and the list of all. Row and list never take the keyboard by themselves: only while somebody
// has opened the list on purpose can keys reach it and the buttons. It takes up no room when nothing waits.
class AttentionPanel : public QWidget {
    Q_OBJECT

public:
    // All must outlive it.
    struct Parts {
        const IStringSource& strings;
        const Clock& clock;
        AttentionBook& book;
        AttentionAlarm& alarm;
    };

    AttentionPanel(const Parts& parts, QWidget* parent);

    // Opens the list with the keyboard in it, or closes it and gives the keyboard back.
    void ToggleList();
    // The list gets as many pixels less than it wants as the window is short of, but keeps a line.
    void ShortenList(int missing);

Q_SIGNALS:
    void ContentChanged();
    void CallBackRequested(const QString& party);
    void SendAgainRequested(const dao::AttentionRecord& entry);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Entry = dao::AttentionRecord;

    void BuildRow();
    void BuildList();
    void Follow();
    void ShowTarget(bool asked);
    void ShowButtons(const Entry* target);
    void OpenList(bool open, bool onPurpose);
    void LetKeysIn(bool on);
    const Entry* Target() const;
    void OnTarget(const std::function<void(const Entry&)>& act);
    void GoToFirst();
    void Alert();

    Parts m_parts;
    AttentionTexts m_texts;
    StripRow* m_row = nullptr;
    QTreeView* m_list = nullptr;
    AttentionModel* m_model;
    QPushButton* m_take = nullptr;
    QPushButton* m_silence = nullptr;
    QPushButton* m_callBack = nullptr;
    QPushButton* m_sendAgain = nullptr;
    QPushButton* m_done = nullptr;
    QPushButton* m_open = nullptr;
    QString m_chosen;             // in the list
    QPointer<QWidget> m_hadFocus; // before the list was opened by a key
    bool m_filling = false;
    int m_leastHeight = 0; // of the list
    int m_wantedHeight = 0;
};
