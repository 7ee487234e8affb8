#pragma once

#include "mainwindow/base/ReloadCause.h"
#include "radio/agent/Views.h"

#include <QModelIndex>
#include <QWidget>

class IndividualsModel;
class ListNotice;
class QLabel;
class QTreeView;
class Settings;
struct IDbSession;
struct IPrompt;
struct IStringSource;
struct SessionState;

// "picIndividuals": the list of individual radios, on duty where duty status is kept. Changes that come from
// the radio neither scroll it nor alter what the operator has selected.
class IndividualsPane : public QWidget, public IIndividualsView {
    Q_OBJECT

public:
    struct Parts {
        const IStringSource& strings;
        IPrompt& prompt;
        Settings& settings;
        IDbSession& database;
        const SessionState& session;
    };

    IndividualsPane(const Parts& parts, QWidget* parent);

    // Reads the radios that match a search text; an empty one matches all. Does nothing while nobody is
    // logged on. Whether it has read; what was shown stays when the operator gives up.
    bool ReloadInds(const QString& lookfor);
    // The same list afresh from the session's memory, because another console changed it; selection and
    // scroll stay.
    void ReloadQuietly() { Reload(m_lookfor, ReloadCause::OtherConsole); }
    // From the radio; drawn from the session's memory in the event loop, once for several changes.
    void ReloadInds() override;

    // Sizes the columns to contents and headers.
    void SizeColumns();
    QModelIndex SelectedItem() const; // invalid when there is none
    bool AllowsRegrouping() const;    // of the selected item
    void ShowSelection();
    // Covers the list so that nobody can read it, or shows it again.
    void Cover(bool on);

Q_SIGNALS:
    // The operator chose items: their callsigns as an address line, empty when no item is chosen any longer.
    void AddressesChosen(const QString& addresses);
    // What the selection allows may have changed.
    void AllowedChanged();
    // Double-click or Enter.
    void CallRequested();
    void MenuRequested(const QPoint& place);

private:
    void BuildList();
    void TellSelection();
    void TellChosen();
    bool Reload(const QString& lookfor, ReloadCause cause);
    void ReloadMissed();

    Parts m_parts;
    IndividualsModel* m_model;
    QTreeView* lvIndividuals = nullptr;
    QLabel* m_cover;
    ListNotice* m_notice;            // that the list is cut off at its limit
    bool m_changedByProgram = false; // the selection changes, but not by the operator
    QString m_lookfor;               // of the last reload
    bool m_reloading = false;        // it may wait, or a question about it may be open
    bool m_reloadMissed = false;     // the radio wanted one meanwhile
    bool m_reloadDue = false;
};
