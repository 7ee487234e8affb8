#pragma once

#include "mainwindow/scada/ScadaItems.h"

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>

struct IStringSource;

// Eight sensors or eight controls with the names that the operator gives them; one without a name is shown by
// its number.
class ScadaModel : public QAbstractListModel {
    Q_OBJECT

public:
    static constexpr int PictureRole = Qt::UserRole; // "son", "soff", "con", "coff", "cwait"
    static constexpr int GhostRole = Qt::UserRole + 1;

    enum class Kind { Sensors, Controls };

    ScadaModel(Kind kind, const IStringSource& strings, QObject* parent);

    // `old`: the values are too old to be trusted.
    void Show(const ScadaItems& items, bool old);
    void MarkCritical(int item, bool on);
    void SetName(int item, const QString& name);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    // Passes an edited name on and lets the receiver set it.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

Q_SIGNALS:
    void Renamed(int item, const QString& name);

private:
    QString PictureKey(const ScadaItem& item) const;
    QIcon Icon(const QString& picture, bool ghost) const;
    QString Describe(int item) const;

    Kind m_kind;
    const IStringSource& m_strings;
    ScadaItems m_items;
    bool m_old = false;
    std::array<bool, ScadaItemCount> m_critical{};
    std::array<QString, ScadaItemCount> m_names;
    mutable QHash<QString, QIcon> m_icons;
};
