#include "mainwindow/strip/AttentionPanel.h"

#include "core/attention/AttentionAlarm.h"
#include "core/attention/AttentionBook.h"
#include "core/base/Clock.h"
#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Icons.h"
#include "core/widgets/PlainKey.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/lists/NoticeColours.h"
#include "mainwindow/strip/AttentionModel.h"
#include "mainwindow/strip/StripRow.h"

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QTreeView>
#include <QVBoxLayout>

using namespace NoticeColours;
using Kind = dao::AttentionRecord::Kind;

namespace {

constexpr int MostLines = 6; // of the list; more are scrolled

} // namespace

AttentionPanel::AttentionPanel(const Parts& parts, QWidget* parent)
    : QWidget(parent),
      m_parts(parts),
      m_texts(parts.strings),
      m_model(new AttentionModel(parts.strings, this))
{
    setObjectName(QStringLiteral("attentionPanel"));
    BuildRow();
    BuildList();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_row);
    layout->addWidget(m_list);
    LetKeysIn(false);
    connect(&parts.book, &AttentionBook::Changed, this, &AttentionPanel::Follow);
    connect(&parts.book, &AttentionBook::Appeared, this, [this](const Entry& entry) {
        if (entry.kind == Kind::Emergency)
            GoToFirst();
        Alert();
    });
    connect(
        &parts.book, &AttentionBook::FoundOpen, this,
        [this] {
            if (!m_list->isVisibleTo(this))
                OpenList(true, false);
            Alert();
        });
    connect(&parts.alarm, &AttentionAlarm::Silenced, this, [this] { ShowButtons(Target()); });
    Follow();
}

void AttentionPanel::BuildRow()
{
    m_row = new StripRow(QStringLiteral("attention"), QStringLiteral("warning"), WarningBack, WarningText,
                         m_parts.clock, this);
    m_row->PutButtonsBelow();
    const auto button = [this](const char* name, int caption, const std::function<void()>& press) {
        return &m_row->AddButton(QLatin1String(name), m_parts.strings.LoadString(caption), press);
    };
    m_take = button(
        "cmdTake", MainText::WaitingTake,
        [this] { OnTarget([this](const Entry& entry) { m_parts.book.Take(entry); }); });
    m_silence = button(
        "cmdSilence", MainText::WaitingSilence,
        [this] { OnTarget([this](const Entry& entry) { m_parts.alarm.Silence(entry); }); });
    m_callBack = button(
        "cmdCallBack", MainText::CallBack,
        [this] { OnTarget([this](const Entry& entry) { Q_EMIT CallBackRequested(entry.callBack); }); });
    m_sendAgain = button(
        "cmdSendAgain", MainText::WaitingSendAgain,
        [this] { OnTarget([this](const Entry& entry) { Q_EMIT SendAgainRequested(entry); }); });
    m_done = button(
        "cmdAttentionDone", MainText::WaitingDone,
        [this] { OnTarget([this](const Entry& entry) { m_parts.book.Finish(entry); }); });
    m_open = button("cmdAttentionList", MainText::WaitingShowList,
                    [this] { OpenList(!m_list->isVisibleTo(this), true); });
    m_open->setText(m_parts.strings.LoadString(MainText::WaitingHideList)); // the wider one
    m_open->setMinimumWidth(m_open->sizeHint().width());
}

void AttentionPanel::BuildList()
{
    m_list = new QTreeView(this);
    m_list->setObjectName(QStringLiteral("lvAttention"));
    m_list->setAccessibleName(m_parts.strings.LoadString(MainText::WaitingList));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setAllColumnsShowFocus(true);
    m_list->setIconSize(SmallIconSize(*this));
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_list->setModel(m_model);
    m_list->header()->setStretchLastSection(true);
    m_list->hide();
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (m_filling)
                    return;
                m_chosen = current.data(AttentionModel::IdRole).toString();
                ShowTarget(true);
            });
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_list, m_take, m_silence, m_callBack, m_sendAgain, m_done, m_open})
        widget->installEventFilter(this);
    QWidget* before = m_list; // from the list to what can be done about its entry
    for (QWidget* next : {m_take, m_silence, m_callBack, m_sendAgain, m_done, m_open}) {
        setTabOrder(before, next);
        before = next;
    }
}

void AttentionPanel::ToggleList()
{
    const bool open = !m_list->isVisibleTo(this) || !m_list->hasFocus();
    if (open && m_parts.book.Entries().empty())
        return;
    if (open && !isAncestorOf(QApplication::focusWidget()))
        m_hadFocus = QApplication::focusWidget();
    OpenList(open, true);
    if (open) {
        m_list->setFocus(Qt::ShortcutFocusReason);
        if (!m_list->currentIndex().isValid())
            m_list->setCurrentIndex(m_model->index(0, 0));
    } else if (m_hadFocus) {
        m_hadFocus->setFocus(Qt::ShortcutFocusReason);
    }
}

// Esc leaves; Enter means nothing here, and least of all what it means in the panes.
bool AttentionPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (IsPlain(key, Qt::Key_Escape)) {
            OpenList(false, true);
            if (m_hadFocus)
                m_hadFocus->setFocus(Qt::ShortcutFocusReason);
            return true;
        }
        if (IsPlainEnter(key) && watched == m_list)
            return true;
    }
    return QWidget::eventFilter(watched, event);
}

void AttentionPanel::OpenList(bool open, bool onPurpose)
{
    m_list->setVisible(open);
    if (!open) {
        m_chosen.clear();
        m_list->setCurrentIndex({});
    }
    LetKeysIn(open && onPurpose);
    ShowTarget(true);
    Q_EMIT ContentChanged();
}

void AttentionPanel::LetKeysIn(bool on)
{
    for (QWidget* widget :
         std::initializer_list<QWidget*>{m_list, m_take, m_silence, m_callBack, m_sendAgain, m_done, m_open})
        widget->setFocusPolicy(on ? Qt::TabFocus : Qt::NoFocus);
}

void AttentionPanel::Follow()
{
    const std::vector<Entry>& entries = m_parts.book.Entries();
    m_filling = true;
    m_model->Replace(entries, m_parts.clock.Now());
    const Entry* chosen = m_chosen.isEmpty() ? nullptr : m_parts.book.Find(m_chosen);
    const bool emergencyWaits =
        !entries.empty() && entries.front().kind == Kind::Emergency && !entries.front().IsTaken();
    if (chosen != nullptr && chosen->IsTaken() && emergencyWaits)
        m_chosen.clear(); // the next one is to be seen
    const int row = m_chosen.isEmpty() ? -1 : m_model->RowOf(m_chosen);
    if (row >= 0)
        m_list->setCurrentIndex(m_model->index(row, 0));
    else
        m_chosen.clear();
    m_filling = false;
    for (int column = 0; column < AttentionModel::TakenBy; ++column)
        m_list->resizeColumnToContents(column);
    const int lines = std::clamp(static_cast<int>(entries.size()), 1, MostLines);
    const int line = m_list->sizeHintForRow(0) > 0 ? m_list->sizeHintForRow(0) : fontMetrics().height();
    m_leastHeight = m_list->header()->sizeHint().height() + line + 2 * m_list->frameWidth() +
                    m_list->horizontalScrollBar()->sizeHint().height();
    m_wantedHeight = m_leastHeight + (lines - 1) * line;
    if (entries.empty() && m_list->isVisibleTo(this)) {
        const bool hadKeys = isAncestorOf(QApplication::focusWidget());
        m_list->hide();
        LetKeysIn(false);
        if (hadKeys && m_hadFocus)
            m_hadFocus->setFocus(Qt::OtherFocusReason);
    }
    ShowTarget(false);
    setVisible(!entries.empty());
    Q_EMIT ContentChanged();
}

void AttentionPanel::ShortenList(int missing)
{
    m_list->setFixedHeight(std::max(m_leastHeight, m_wantedHeight - missing));
}

const dao::AttentionRecord* AttentionPanel::Target() const
{
    const std::vector<Entry>& entries = m_parts.book.Entries();
    if (entries.empty())
        return nullptr;
    const Entry* chosen = m_chosen.isEmpty() ? nullptr : m_parts.book.Find(m_chosen);
    return chosen != nullptr ? chosen : &entries.front();
}

// `asked`: the operator has chosen what is shown, and may press at once.
void AttentionPanel::ShowTarget(bool asked)
{
    const Entry* target = Target();
    QString text;
    if (target != nullptr) {
        const std::vector<Entry>& entries = m_parts.book.Entries();
        text = m_texts.Line(*target, m_parts.clock.Now());
        if (entries.size() > 1)
            text = FormatMessage(m_parts.strings, MainText::WaitingInAll, {text, m_texts.Counts(entries)});
        const bool emergency = target->kind == Kind::Emergency;
        Colour(*m_row, emergency ? EmergencyBack : WarningBack, emergency ? White : WarningText);
        m_row->SetBold(emergency);
        m_open->setText(m_parts.strings.LoadString(m_list->isVisibleTo(this) ? MainText::WaitingHideList
                                                                             : MainText::WaitingShowList));
    }
    const QString subject =
        target != nullptr ? target->id + QString::number(m_parts.book.Entries().size()) : QString();
    if (asked)
        m_row->SayAsked(subject, text);
    else
        m_row->SayOf(subject, text);
    ShowButtons(target);
}

void AttentionPanel::ShowButtons(const Entry* target)
{
    if (target == nullptr)
        return;
    const auto offer = [this](QPushButton& button, bool on) {
        if (!on && button.hasFocus()) // the next one must not get the key that was meant for this one
            m_list->setFocus();
        button.setVisible(on);
    };
    offer(*m_take, !target->IsTaken());
    offer(*m_silence, m_parts.alarm.Sounds(*target));
    offer(*m_callBack, !target->callBack.isEmpty() && target->kind != Kind::Failed);
    offer(*m_sendAgain, target->again != Entry::Again::Nothing);
}

void AttentionPanel::OnTarget(const std::function<void(const Entry&)>& act)
{
    if (const Entry* target = Target())
        act(Entry(*target)); // the list changes meanwhile
}

// Nothing that was chosen keeps an emergency out of sight.
void AttentionPanel::GoToFirst()
{
    m_filling = true;
    m_chosen.clear();
    m_list->setCurrentIndex({});
    m_filling = false;
    m_list->scrollToTop();
    ShowTarget(false);
}

void AttentionPanel::Alert()
{
    QAccessibleEvent alert(m_row, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
