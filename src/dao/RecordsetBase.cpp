#include "dao/RecordsetBase.h"
#include "dao/Error.h"
#include "dao/TableShape.h"
#include <QDateTime>

namespace dao {

int RecordsetBase::Position(const QString& name) const
{
    return FieldPosition(FieldNames(), name);
}

qlonglong RecordsetBase::NumberAt(int position)
{
    const QVariant value = Field(FieldNames().at(position));
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime().toMSecsSinceEpoch()
                                                  : value.toLongLong();
}

std::string_view RecordsetBase::Utf8At(int position)
{
    m_utf8 = TextAt(position).toUtf8();
    return {m_utf8.constData(), static_cast<std::size_t>(m_utf8.size())};
}

void RecordsetBase::SetField(const QString&, const QVariant&)
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::AddNew()
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::Edit()
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::Update()
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::CancelUpdate() {}

void RecordsetBase::Delete()
{
    throw Error(Kind::NotUpdatable);
}

void RecordsetBase::MoveFirst()
{
    throw Error(Kind::WrongUse, {"MoveFirst"});
}

void RecordsetBase::FindFirst(const QString&)
{
    throw Error(Kind::WrongUse, {"FindFirst"});
}

void RecordsetBase::SetIndex(const QString&)
{
    throw Error(Kind::WrongUse, {"SetIndex"});
}

void RecordsetBase::SeekKey(const QVariantList&)
{
    throw Error(Kind::WrongUse, {"Seek"});
}

} // namespace dao
