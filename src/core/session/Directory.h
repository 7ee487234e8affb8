#pragma once

#include "core/session/DirectorySearch.h"

#include <QByteArray>
#include <QString>
#include <optional>
#include <string_view>
#include <vector>

namespace dao {
class Database;
}

// The address directory in memory, as it was last read: what a radio event needs of it, found at once. The
// texts lie one after the other in UTF-8, and in lower case again, about 110 octets an entry with all look-up
// tables.
class Directory {
public:
    // Types as the database numbers them.
    enum class Type : quint8 { Individual = 1, Talkgroup = 2 };
    struct Entry {
        qint32 id;
        Type type;
        bool dynamic;
        bool onDuty;
        quint8 position;                        // 0 when the entry has none
        std::string_view callsign, ident, name; // in UTF-8; valid until the next Read or Clear
    };

    // Reads the whole directory in one statement (two where the engines differ about a callsign in it).
    // Raises dao::Error; what was read before holds then.
    void Read(dao::Database& database);
    void Clear() { *this = {}; }
    bool IsRead() const { return m_read; }

    // What a Seek on "i_ident" and on "i_callsign" would find.
    std::optional<QString> CallsignOf(const QString& ident) const;
    std::optional<Type> TypeOf(const QString& ident) const;
    std::optional<QString> IdentOf(const QString& callsign) const;

    // In the order of callsigns, 0 to Size() - 1.
    std::size_t Size() const { return m_rows.size(); }
    Entry At(std::size_t index) const;
    static QString Text(std::string_view utf8)
    {
        return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    }
    std::optional<Entry> Find(qint32 id) const;
    // Indices of entries with this text, the likeliest first.
    std::vector<std::size_t> Search(const QString& text, std::size_t most) const
    {
        return m_search.Find(text, most);
    }

    // Of the individual with this callsign; false when there is none.
    bool SetOnDuty(const QString& callsign, bool onDuty);

private:
    struct Row {
        quint32 texts; // where they begin: callsign, ident, name
        qint32 id;
        quint16 callsignSize;
        quint16 identSize;
        quint16 nameSize;
        quint8 position;
        Type type;
        bool dynamic : 1;
        bool onDuty : 1;
    };
    // Open addressing; a slot holds a row's index and one more, 0 is free.
    using Slots = std::vector<quint32>;

    quint16 Append(std::string_view text);
    void Index();
    QByteArray Folded(const QString& callsign) const;
    bool IsFoldedTo(std::string_view callsign, std::string_view folded) const;
    std::optional<std::size_t> FindIdent(const QString& ident) const;
    std::optional<std::size_t> FindCallsign(const QString& callsign) const;
    std::string_view Callsign(const Row& row) const { return {m_texts.data() + row.texts, row.callsignSize}; }
    std::string_view Ident(const Row& row) const
    {
        return {m_texts.data() + row.texts + row.callsignSize, row.identSize};
    }

    bool m_read = false;
    std::vector<char> m_texts;
    DirectorySearch m_search;
    std::vector<Row> m_rows;
    QString m_dottedI; // as the database folds it; empty while no callsign may have it
    Slots m_byIdent;
    Slots m_byCallsign; // by the folded one
    std::vector<std::pair<qint32, quint32>> m_byId;
};
