#include "dao/records/Recordset.h"
#include "dao/base/Error.h"
#include "dao/base/Names.h"
#include <QDateTime>

namespace dao {

int Recordset::Position(const QString& name) const
{
    return FieldPosition(FieldNames(), name);
}

qlonglong Recordset::NumberAt(int position)
{
    const QVariant value = Field(FieldNames().at(position));
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime().toMSecsSinceEpoch()
                                                  : value.toLongLong();
}

std::string_view Recordset::Utf8At(int position)
{
    m_utf8 = TextAt(position).toUtf8();
    return {m_utf8.constData(), static_cast<std::size_t>(m_utf8.size())};
}

void Recordset::SetField(const QString&, const QVariant&)
{
    throw Error(Kind::NotUpdatable);
}

void Recordset::AddNew()
{
    throw Error(Kind::NotUpdatable);
}

void Recordset::Edit()
{
    throw Error(Kind::NotUpdatable);
}

void Recordset::Update()
{
    throw Error(Kind::NotUpdatable);
}

void Recordset::CancelUpdate() {}

void Recordset::Delete()
{
    throw Error(Kind::NotUpdatable);
}

void Recordset::MoveFirst()
{
    throw Error(Kind::WrongUse, {"MoveFirst"});
}

void Recordset::FindFirst(const QString&)
{
    throw Error(Kind::WrongUse, {"FindFirst"});
}

void Recordset::SetIndex(const QString&)
{
    throw Error(Kind::WrongUse, {"SetIndex"});
}

void Recordset::SeekKey(const QVariantList&)
{
    throw Error(Kind::WrongUse, {"Seek"});
}

} // namespace dao
