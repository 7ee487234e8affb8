#pragma once

#include "core/desktop/FreshKeys.h"

#include <QDialog>

class Map27Executive;
class QLabel;
class QPushButton;
class QTableView;
class SentModel;
struct IStringSource;
struct SessionState;

// Shows what has become of the messages of this shift, and sends the chosen one again as a new message.
// Modeless; hidden between uses. What arrives meanwhile changes neither the choice nor the line that is seen.
class frmSentMessages : public QDialog {
    Q_OBJECT

public:
    // All must outlive the window.
    frmSentMessages(const IStringSource& strings, Map27Executive& executive, const SessionState& session);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Build();
    void FollowChoice();
    void SendChosenAgain();

    const IStringSource& m_strings;
    Map27Executive& m_executive;
    const SessionState& m_session;
    SentModel* m_model;
    FreshKeys::Keys m_down; // that have sent, or went down elsewhere
    QTableView* lvSent;
    QLabel* lblNote; // the chosen one's reason in full, or why it is not sent again from here
    QPushButton* cmdSendAgain;
};
