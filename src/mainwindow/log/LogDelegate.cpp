#include "mainwindow/log/LogDelegate.h"

#include "core/widgets/Icons.h"
#include "mainwindow/log/LogModel.h"

#include <QStyle>
#include <QWidget>

namespace {

constexpr char16_t FirstPrintable = 0x20;
constexpr char16_t Delete = 0x7F;
constexpr char16_t ControlPictures = 0x2400;
constexpr char16_t DeletePicture = 0x2421;
constexpr char16_t LineEndSign = 0x21B5;
constexpr char16_t TabSign = 0x21E5;

constexpr int MarkGap = 3;

QChar SignOf(QChar character)
{
    switch (character.unicode()) {
    case u'\r':
    case u'\n':
        return QChar(LineEndSign);
    case u'\t':
        return QChar(TabSign);
    case Delete:
        return QChar(DeletePicture);
    default:
        return QChar(static_cast<char16_t>(ControlPictures + character.unicode()));
    }
}

} // namespace

QString LogDelegate::displayText(const QVariant& value, const QLocale&) const
{
    QString text = value.toString();
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    for (QChar& character : text)
        if (character.unicode() < FirstPrintable || character.unicode() == Delete)
            character = SignOf(character);
    return text;
}

// The mark is in the right half of the space for the picture.
void LogDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    PlainIconDelegate::initStyleOption(option, index);
    if (index.data(LogModel::EmergencyRole).toBool()) {
        option->decorationAlignment = Qt::AlignLeft | Qt::AlignVCenter;
        option->decorationSize.rwidth() = 2 * option->decorationSize.height() + MarkGap;
    }
}

void LogDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    PlainIconDelegate::paint(painter, option, index);
    if (!index.data(LogModel::EmergencyRole).toBool())
        return;
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QRect place =
        item.widget->style()->subElementRect(QStyle::SE_ItemViewItemDecoration, &item, item.widget);
    const int edge = place.height();
    if (m_emergency.isNull())
        m_emergency = LoadIcon(QStringLiteral("emergency"));
    PaintPicture(*painter, item, m_emergency, {place.right() + 1 - edge, place.top(), edge, edge});
}
