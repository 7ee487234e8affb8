#include "mainwindow/send/PartyPopup.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/send/PartyMatches.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>

namespace {

constexpr std::size_t MostParties = 8;
constexpr int CallsignRole = Qt::UserRole;
constexpr QLatin1Char Separator(';');

// The address that is being typed, of several with separators between them.
struct Piece {
    qsizetype first;
    qsizetype end;
};

Piece PieceAt(const QString& text, qsizetype cursor)
{
    const qsizetype before = cursor > 0 ? text.lastIndexOf(Separator, cursor - 1) : -1;
    const qsizetype after = text.indexOf(Separator, cursor);
    return {before + 1, after < 0 ? text.size() : after};
}

} // namespace

PartyPopup::PartyPopup(const IStringSource& strings, std::function<const Directory&()> directory,
                       QComboBox& box)
    : QListWidget(box.window()),
      m_strings(strings),
      m_directory(std::move(directory)),
      m_box(box),
      m_field(*box.lineEdit())
{
    setObjectName(QStringLiteral("lsParties"));
    setProperty("accessibleNameId", MainText::PartiesName);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    hide();
    // Not what is entered from a list or recalled: only who types is helped.
    connect(&m_field, &QLineEdit::textEdited, this, &PartyPopup::Offer);
    connect(this, &QListWidget::itemClicked, this, &PartyPopup::Accept);
    box.installEventFilter(this);
    m_field.installEventFilter(this);
    qApp->installEventFilter(this);
}

void PartyPopup::Offer()
{
    const Piece piece = PieceAt(m_field.text(), m_field.cursorPosition());
    const auto parties =
        FindParties(m_directory(), m_field.text().mid(piece.first, piece.end - piece.first), MostParties);
    clear();
    for (const Party& party : parties) {
        auto* item = new QListWidgetItem(
            FormatMessage(m_strings, MainText::PartyLine, {party.callsign, party.number, party.name})
                .trimmed(),
            this);
        item->setData(CallsignRole, party.callsign.isEmpty() ? party.number : party.callsign);
    }
    setCurrentItem(nullptr);
    if (parties.empty())
        return hide();
    if (parentWidget() != m_box.window())
        setParent(m_box.window());
    Place();
    show();
    raise();
}

// The send pane is at the bottom of its window.
void PartyPopup::Place()
{
    const int height = count() * sizeHintForRow(0) + 2 * frameWidth();
    const QPoint corner = m_box.mapTo(m_box.window(), QPoint(0, 0));
    setGeometry(corner.x(), std::max(0, corner.y() - height), m_box.width(), std::min(height, corner.y()));
}

// Past either end nothing is chosen, as at first.
void PartyPopup::Step(int by)
{
    const int places = count() + 1;
    const int place = (currentRow() + 1 + by + places) % places;
    setCurrentRow(place - 1);
    if (place == 0)
        clearSelection();
    m_field.setAccessibleDescription(place == 0 ? QString() : currentItem()->text());
}

bool PartyPopup::Accept()
{
    const QListWidgetItem* chosen = isVisible() ? currentItem() : nullptr;
    hide();
    m_field.setAccessibleDescription({});
    if (chosen == nullptr)
        return false;
    const QString text = m_field.text();
    const Piece piece = PieceAt(text, m_field.cursorPosition());
    const QString callsign = chosen->data(CallsignRole).toString();
    m_field.setText(text.left(piece.first) + callsign + text.mid(piece.end));
    m_field.setCursorPosition(static_cast<int>(piece.first + callsign.size()));
    return true;
}

bool PartyPopup::TakeKey(int key, Qt::KeyboardModifiers modifiers)
{
    if ((modifiers & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier)) != Qt::NoModifier)
        return false;
    if (key == Qt::Key_Down)
        Step(1);
    else if (key == Qt::Key_Up)
        Step(-1);
    else if (key == Qt::Key_Escape)
        hide();
    else
        return false;
    return true;
}

bool PartyPopup::IsOfBox(const QObject* object) const
{
    return object == &m_box || object == &m_field;
}

bool PartyPopup::eventFilter(QObject* watched, QEvent* event)
{
    if (!isVisible())
        return QListWidget::eventFilter(watched, event);
    if (IsOfBox(watched) && event->type() == QEvent::KeyPress) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        return TakeKey(key.key(), key.modifiers());
    }
    // Esc would be a dialog's or a shortcut's before it is a key.
    if (IsOfBox(watched) && event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    const bool lost =
        IsOfBox(watched) && (event->type() == QEvent::FocusOut || event->type() == QEvent::Hide);
    const bool moved = watched == m_box.window() && event->type() == QEvent::Resize;
    const auto* clicked = qobject_cast<QWidget*>(watched);
    const bool elsewhere = event->type() == QEvent::MouseButtonPress && clicked != nullptr &&
                           clicked != this && !isAncestorOf(clicked) && !IsOfBox(clicked);
    if (lost || moved || elsewhere)
        hide();
    return QListWidget::eventFilter(watched, event);
}
