#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>
#include <vector>

struct IStringSource;

// A radio of the directory as the list of individuals shows it.
struct IndividualRow {
    QString callsign;
    QString ident;
    QString name;
    QString picture; // key; that of a radio that takes part in dynamic regrouping ends with "_dynamic"
    qint32 id = 0;   // address_id
};

// Picture key of a row with this directory key.
QString PictureOfIndividual(const QString& iconKey, bool dynamic);
// Whether a radio with this picture can be regrouped.
bool AllowsRegroup(const QString& picture);

class IndividualsModel : public QAbstractTableModel {
    Q_OBJECT

public:
    static constexpr int KeyRole = Qt::UserRole;
    static constexpr int TagRole = Qt::UserRole + 1; // callsign
    static constexpr int PictureRole = Qt::UserRole + 2;

    IndividualsModel(const IStringSource& strings, QObject* parent);

    void Replace(std::vector<IndividualRow> rows);
    QModelIndex Find(const QString& key) const; // invalid when there is none

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QIcon Icon(const QString& picture) const;

    const IStringSource& m_strings;
    std::vector<IndividualRow> m_rows;
    QHash<qint32, int> m_rowOfId;
    mutable QHash<QString, QIcon> m_icons;
};
