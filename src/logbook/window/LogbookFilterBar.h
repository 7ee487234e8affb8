#pragma once

#include "logbook/query/LogFilter.h"

#include <QTimer>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QDateTimeEdit;
class QGridLayout;
class QLineEdit;
struct IStringSource;

// What the log window is asked for. Each change tells the filter that it makes, what is typed a moment after
// the last key.
class LogbookFilterBar : public QWidget {
    Q_OBJECT

public:
    // `now`: what the fields for times begin with.
    LogbookFilterBar(const IStringSource& strings, const QDateTime& now, QWidget* parent);

    LogFilter Filter() const;
    void FocusSearch();

Q_SIGNALS:
    void FilterChanged();
    void TimeChosen(const QDateTime& time);

private:
    void Label(int textId, QWidget* field, int row, int column);
    QDateTimeEdit* TimeField(const char* name, int accessibleNameId, const QDateTime& time);
    void AddTimes(const QDateTime& now);
    void Tell();

    QGridLayout* m_grid;
    QLineEdit* txtSearch;
    QLineEdit* txtParty;
    QComboBox* cmbKind;
    QComboBox* cmbDirection;
    QCheckBox* chkEmergency;
    QCheckBox* chkSince;
    QCheckBox* chkUntil;
    QDateTimeEdit* txtSince;
    QDateTimeEdit* txtUntil;
    QDateTimeEdit* txtGoTo;
    QTimer m_typed;
};
