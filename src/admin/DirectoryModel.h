#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>
#include <string>
#include <string_view>
#include <vector>

struct IDbSession;
struct IStringSource;

enum class DirectoryOrder { Callsign, Ident };

// Entries of the address directory, stored compactly: a hundred thousand take a few megabytes and are read
// without creating a text object for each.
class DirectoryList {
public:
    int Count() const { return static_cast<int>(m_entries.size()); }
    qint32 Id(int row) const { return At(row).id; }
    QString Callsign(int row) const;
    QString Ident(int row) const;
    // "individual" or "talkgroup", with "_dynamic" for a dynamic entry.
    QString IconKey(int row) const;

    void Append(qint32 id, bool dynamic, std::string_view kind, std::string_view callsign,
                std::string_view ident);

private:
    struct Entry {
        qint32 id;
        quint32 text; // where callsign and ident begin in m_texts, one after the other
        quint16 callsignSize;
        quint16 identSize;
        quint8 kind; // in m_kinds
        bool dynamic;
    };

    const Entry& At(int row) const { return m_entries[static_cast<std::size_t>(row)]; }

    std::vector<Entry> m_entries;
    std::string m_texts; // UTF-8
    std::vector<std::string> m_kinds;
};

// Appends the entries that match the search text, in their order. What was read before a failure is kept.
// Raises Error and dao::Error.
void ReadDirectory(IDbSession& session, DirectoryOrder order, const QString& lookFor, DirectoryList& list);

// The directory, one entry a row; built for a hundred thousand entries.
class DirectoryModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Callsign, Ident, ColumnCount };
    // address_id.
    static constexpr int TagRole = Qt::UserRole;
    // Key of the entry's picture.
    static constexpr int IconKeyRole = Qt::UserRole + 1;

    DirectoryModel(const IStringSource& strings, QObject* parent);

    void Replace(DirectoryList list);
    // The row of an entry; -1 when it is not listed.
    int RowOf(qint32 id) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const QIcon& Picture(const QString& key) const;

    const IStringSource& m_strings;
    DirectoryList m_list;
    mutable QHash<QString, QIcon> m_pictures;
};
