#pragma once

#include "dao/Recordset.h"
#include <QByteArray>

namespace dao {

// What a kind of recordset does not offer, refused.
class RecordsetBase : public Recordset {
public:
    int Position(const QString& name) const override;
    QString TextAt(int position) override { return Field(FieldNames().at(position)).toString(); }
    qlonglong NumberAt(int position) override;
    std::string_view Utf8At(int position) override;
    void SetField(const QString& name, const QVariant& value) override;
    void AddNew() override;
    void Edit() override;
    void Update() override;
    void CancelUpdate() override;
    void Delete() override;
    void MoveFirst() override;
    void FindFirst(const QString& criterion) override;
    void SetIndex(const QString& name) override;
    void SeekKey(const QVariantList& key) override;

private:
    QByteArray m_utf8; // what Utf8At gave last
};

} // namespace dao
