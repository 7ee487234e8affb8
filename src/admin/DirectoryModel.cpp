#include "admin/DirectoryModel.h"

#include "admin/TextIds.h"
#include "core/session/DbSession.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "dao/tables/AddressTable.h"

#include <algorithm>

QString DirectoryList::Callsign(int row) const
{
    const Entry& entry = At(row);
    return QString::fromUtf8(m_texts.data() + entry.text, entry.callsignSize);
}

QString DirectoryList::Ident(int row) const
{
    const Entry& entry = At(row);
    return QString::fromUtf8(m_texts.data() + entry.text + entry.callsignSize, entry.identSize);
}

QString DirectoryList::IconKey(int row) const
{
    const QString kind = QString::fromStdString(m_kinds[At(row).kind]);
    return At(row).dynamic ? kind + QStringLiteral("_dynamic") : kind;
}

void DirectoryList::Append(qint32 id, bool dynamic, std::string_view kind, std::string_view callsign,
                           std::string_view ident)
{
    auto known = std::find(m_kinds.begin(), m_kinds.end(), kind);
    if (known == m_kinds.end())
        known = m_kinds.emplace(known, kind);
    m_entries.push_back({id, static_cast<quint32>(m_texts.size()), static_cast<quint16>(callsign.size()),
                         static_cast<quint16>(ident.size()), static_cast<quint8>(known - m_kinds.begin()),
                         dynamic});
    m_texts.append(callsign).append(ident);
}

void ReadDirectory(IDbSession& session, DirectoryOrder order, const QString& lookFor, DirectoryList& list)
{
    const auto query = session.Database().QueryDef(order == DirectoryOrder::Callsign
                                                       ? QStringLiteral("find_address_ob_callsign")
                                                       : QStringLiteral("find_address_ob_ident"));
    query->SetParameter(QStringLiteral("lookfor"), lookFor);
    const auto rows = query->OpenSnapshot();
    const int id = rows->Position(dao::AddressTable::IdField);
    const int callsign = rows->Position(dao::AddressTable::CallsignField);
    const int ident = rows->Position(dao::AddressTable::IdentField);
    const int dynamic = rows->Position(dao::AddressTable::DynamicField);
    const int kind = rows->Position(dao::AddressTable::IconKeyField);
    // Each text is copied before the next is asked for.
    std::string callsignText;
    std::string identText;
    for (; !rows->Eof(); rows->MoveNext()) {
        callsignText = rows->Utf8At(callsign);
        identText = rows->Utf8At(ident);
        const qint32 entry = static_cast<qint32>(rows->NumberAt(id));
        const bool isDynamic = rows->NumberAt(dynamic) != 0;
        list.Append(entry, isDynamic, rows->Utf8At(kind), callsignText, identText);
    }
}

DirectoryModel::DirectoryModel(const IStringSource& strings, QObject* parent)
    : QAbstractTableModel(parent),
      m_strings(strings)
{
}

void DirectoryModel::Replace(DirectoryList list)
{
    beginResetModel();
    m_list = std::move(list);
    endResetModel();
}

int DirectoryModel::RowOf(qint32 id) const
{
    for (int row = 0; row < m_list.Count(); ++row)
        if (m_list.Id(row) == id)
            return row;
    return -1;
}

int DirectoryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_list.Count();
}

int DirectoryModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(ColumnCount);
}

QVariant DirectoryModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return index.column() == Callsign ? m_list.Callsign(row) : m_list.Ident(row);
    case Qt::DecorationRole:
        return index.column() == Callsign ? QVariant(Picture(m_list.IconKey(row))) : QVariant();
    case TagRole:
        return m_list.Id(row);
    case IconKeyRole:
        return m_list.IconKey(row);
    default:
        return {};
    }
}

QVariant DirectoryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return {};
    if (role == Qt::DisplayRole)
        return m_strings.LoadString(section == Callsign ? AdminText::CallsignColumn
                                                        : AdminText::AddressColumn);
    if (role == Qt::TextAlignmentRole)
        return static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

const QIcon& DirectoryModel::Picture(const QString& key) const
{
    auto known = m_pictures.find(key);
    if (known == m_pictures.end())
        known = m_pictures.insert(key, LoadIcon(key));
    return *known;
}
