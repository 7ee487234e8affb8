#pragma once

#include "addressing/MptAddressing.h"
#include "dao/tables/AddressTable.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

struct IStringSource;

// Entries of the address directory from a file: each is checked against the directory and the lines before
// it, then all are stored. An entry takes the place of the one with its callsign.
class DirectoryImport {
public:
    static QStringList Columns();
    static QStringList FieldsOf(const dao::AddressRecord& entry);

    // Addresses are checked with the database's numbering; without a usable one only their length is.
    DirectoryImport(dao::Database& database, std::unique_ptr<MptAddressing> addressing,
                    const IStringSource& strings);

    // Announces a line: the address of its entry may pass to another one. All lines are announced before the
    // first is checked.
    void Announce(const QStringList& fields);
    // Why the fields of a line cannot be imported; empty when they can, and are then remembered.
    QString Check(const QStringList& fields);
    void Store();

private:
    struct Known {
        dao::AddressRecord entry;
        bool regrouped = false;
    };

    void ReadDirectory();
    QString Prepare(const QStringList& fields, dao::AddressRecord& entry) const;
    QString Parse(const QStringList& fields, dao::AddressRecord& entry) const;
    QString CheckFields(const dao::AddressRecord& entry) const;
    QString CompleteIdent(QString& ident) const;
    QString CheckBesideDirectory(const dao::AddressRecord& entry) const;
    void ParkIdents(dao::Recordset& rows);

    dao::Database& m_database;
    std::unique_ptr<MptAddressing> m_addressing;
    const IStringSource& m_strings;
    QHash<QString, Known> m_known;        // by folded callsign
    QHash<QString, QString> m_identOwner; // folded callsign of an address, as it will be after the import
    std::vector<dao::AddressRecord> m_entries;
    QHash<QString, bool> m_seen; // callsigns of the file, folded
};
