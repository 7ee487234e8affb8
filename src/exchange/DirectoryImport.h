#pragma once

#include "addressing/MptAddressing.h"
#include "dao/tables/AddressTable.h"
#include "exchange/CsvTable.h"
#include "exchange/TableImport.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

struct IDbSession;
struct IStringSource;

// Entries of the address directory from a file: each is checked against the directory and the lines before
// it, then all are stored. An entry takes the place of the one with its callsign.
class DirectoryImport : public TableImport {
public:
    static CsvTable::Columns Columns();
    // The directory as such a file holds it; counts its entries.
    static QString Text(dao::Database& database, int& count);
    // The conversion of the numbering that the database is configured for; null when it is not.
    static std::unique_ptr<MptAddressing> AddressingOf(IDbSession& session, const IStringSource& strings);

    // Addresses are checked with the database's numbering; without a usable one only their length is.
    DirectoryImport(dao::Database& database, CsvTable table, std::unique_ptr<MptAddressing> addressing,
                    const IStringSource& strings);

    std::vector<ImportLine> Check() override;
    void Store() override;
    QString Notice() const override;

private:
    struct Known {
        dao::AddressRecord entry;
        bool regrouped = false;
    };

    void ReadDirectory();
    void Announce(const QStringList& fields);
    ImportLine CheckRow(const CsvTable::Row& row);
    QString TooLong(const QString& field, const QString& text) const;
    QString Prepare(const QStringList& fields, dao::AddressRecord& entry) const;
    QString Parse(const QStringList& fields, dao::AddressRecord& entry) const;
    QString CheckFields(const dao::AddressRecord& entry) const;
    QString CompleteIdent(QString& ident) const;
    QString CheckBesideDirectory(const dao::AddressRecord& entry) const;
    void ParkIdents(dao::Recordset& rows);

    dao::Database& m_database;
    CsvTable m_table;
    std::unique_ptr<MptAddressing> m_addressing;
    const IStringSource& m_strings;
    QHash<QString, Known> m_known;        // by folded callsign
    QHash<QString, QString> m_identOwner; // folded callsign of an address, as it will be after the import
    std::vector<dao::AddressRecord> m_entries; // added and changed ones
    QHash<QString, bool> m_seen;               // callsigns of the file, folded
};
