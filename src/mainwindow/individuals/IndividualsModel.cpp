#include "mainwindow/individuals/IndividualsModel.h"

#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/talkgroups/NodeKeys.h"

namespace {

constexpr QLatin1String DynamicSuffix("_dynamic");
constexpr qsizetype ShortestDynamicKey = 9;
constexpr int Captions[] = {MainText::CallsignColumn, MainText::AddressColumn, MainText::NameColumn};

} // namespace

QString PictureOfIndividual(const QString& iconKey, bool dynamic)
{
    return dynamic ? iconKey + DynamicSuffix : iconKey;
}

bool AllowsRegroup(const QString& picture)
{
    return picture.size() >= ShortestDynamicKey && picture.endsWith(DynamicSuffix);
}

IndividualsModel::IndividualsModel(const IStringSource& strings, QObject* parent)
    : QAbstractTableModel(parent),
      m_strings(strings)
{
}

void IndividualsModel::Replace(std::vector<IndividualRow> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    m_rowOfId.clear();
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        m_rowOfId.insert(m_rows[row].id, static_cast<int>(row));
    endResetModel();
}

QModelIndex IndividualsModel::Find(const QString& key) const
{
    const auto row = m_rowOfId.constFind(IndividualIdOf(key));
    return row != m_rowOfId.constEnd() ? index(*row, 0) : QModelIndex();
}

int IndividualsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int IndividualsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(std::size(Captions));
}

QVariant IndividualsModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const IndividualRow& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == 0 ? row.callsign : index.column() == 1 ? row.ident : row.name;
    case Qt::DecorationRole:
        return index.column() == 0 ? QVariant(Icon(row.picture)) : QVariant();
    case KeyRole:
        return MakeIndividualKey(row.id);
    case TagRole:
        return row.callsign;
    case PictureRole:
        return row.picture;
    default:
        return {};
    }
}

QVariant IndividualsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    if (role == Qt::DisplayRole)
        return m_strings.LoadString(Captions[section]);
    return role == Qt::TextAlignmentRole ? QVariant(static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter))
                                         : QVariant();
}

QIcon IndividualsModel::Icon(const QString& picture) const
{
    const auto known = m_icons.constFind(picture);
    return known != m_icons.constEnd() ? *known : *m_icons.insert(picture, LoadIcon(picture));
}
