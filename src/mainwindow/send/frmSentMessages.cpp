#include "mainwindow/send/frmSentMessages.h"

#include "core/desktop/Keyboard.h"
#include "core/texts/StringSource.h"
#include "core/widgets/Captions.h"
#include "core/widgets/ListHelpers.h"
#include "core/widgets/PlainKey.h"
#include "mainwindow/base/SessionState.h"
#include "mainwindow/base/TextIds.h"
#include "mainwindow/send/SentModel.h"
#include "radio/base/SentMessages.h"
#include "radio/facade/Map27Executive.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

namespace {

constexpr int Widths[] = {10, 14, 26, 30}; // characters; the reason has the rest
constexpr int WindowWidth = 160;
constexpr int WindowLines = 18;

} // namespace

frmSentMessages::frmSentMessages(const IStringSource& strings, Map27Executive& executive,
                                 const SessionState& session)
    : m_strings(strings),
      m_executive(executive),
      m_session(session),
      m_model(new SentModel(strings, executive.Sent(), this)),
      lvSent(new QTableView(this)),
      lblNote(new QLabel(this)),
      cmdSendAgain(new QPushButton(this))
{
    setObjectName(QStringLiteral("frmSentMessages"));
    setProperty("textId", MainText::SentCaption);
    Build();
    LoadCaptions(*this, strings);
    const int letter = fontMetrics().averageCharWidth();
    for (int column = 0; column < SentModel::Why; ++column)
        lvSent->setColumnWidth(column, Widths[column] * letter);
    resize(WindowWidth * letter, WindowLines * fontMetrics().lineSpacing());
    connect(lvSent->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &frmSentMessages::FollowChoice);
    connect(m_model, &QAbstractItemModel::dataChanged, this, &frmSentMessages::FollowChoice);
    connect(m_model, &QAbstractItemModel::modelReset, this, &frmSentMessages::FollowChoice);
    FollowChoice();
}

void frmSentMessages::Build()
{
    lvSent->setObjectName(QStringLiteral("lvSent"));
    lvSent->setProperty("accessibleNameId", MainText::SentCaption);
    lvSent->setModel(m_model);
    lvSent->setSelectionBehavior(QAbstractItemView::SelectRows);
    lvSent->setSelectionMode(QAbstractItemView::SingleSelection);
    lvSent->setTabKeyNavigation(false);
    lvSent->setShowGrid(false);
    lvSent->verticalHeader()->hide();
    lvSent->horizontalHeader()->setStretchLastSection(true);
    lvSent->horizontalHeader()->setHighlightSections(false);
    lvSent->installEventFilter(this);
    lblNote->setObjectName(QStringLiteral("lblNote"));
    lblNote->setTextFormat(Qt::PlainText);
    lblNote->setWordWrap(true);
    cmdSendAgain->setObjectName(QStringLiteral("cmdSendAgain"));
    cmdSendAgain->setProperty("textId", MainText::SendAgain);
    cmdSendAgain->setAutoDefault(false); // Enter belongs to the chosen line
    connect(cmdSendAgain, &QPushButton::clicked, this, &frmSentMessages::SendChosenAgain);
    auto* close = new QPushButton(this);
    close->setObjectName(QStringLiteral("cmdCloseSent"));
    close->setProperty("textId", MainText::CloseSent);
    close->setAutoDefault(false);
    connect(close, &QPushButton::clicked, this, &QWidget::hide);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(lblNote, 1);
    buttons->addWidget(cmdSendAgain);
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lvSent);
    layout->addLayout(buttons);
}

void frmSentMessages::FollowChoice()
{
    const QModelIndex chosen = GetSelectedItem(*lvSent);
    const bool command = chosen.isValid() && !m_model->MessageAt(chosen).mayRepeat;
    QString note;
    if (command)
        note = m_strings.LoadString(MainText::RepeatAtScada);
    else if (chosen.isValid())
        note = chosen.siblingAtColumn(SentModel::Why).data().toString();
    lblNote->setText(note);
    cmdSendAgain->setEnabled(chosen.isValid() && !command && !m_model->MessageAt(chosen).IsOpen());
}

void frmSentMessages::SendChosenAgain()
{
    if (!m_session.LoggedOn || !cmdSendAgain->isEnabled())
        return;
    const SentMessage message = m_model->MessageAt(GetSelectedItem(*lvSent)); // the list changes meanwhile
    m_executive.SendAgain(message);
}

// Enter sends the chosen line again, once for each press that was meant for this window.
bool frmSentMessages::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn) {
        m_down = Keyboard::Held();
    } else if (event->type() == QEvent::KeyRelease) {
        const quint32 code = Keyboard::CodeOf(*static_cast<QKeyEvent*>(event));
        if (!Keyboard::Held().contains(code))
            m_down.erase(code);
    } else if (event->type() == QEvent::KeyPress && !HasSelectedItem(*lvSent) &&
               (IsPlain(*static_cast<QKeyEvent*>(event), Qt::Key_Down) ||
                IsPlain(*static_cast<QKeyEvent*>(event), Qt::Key_Up))) {
        lvSent->selectRow(std::max(0, lvSent->currentIndex().row())); // the one that has the focus is meant
        return true;
    } else if (event->type() == QEvent::KeyPress && IsPlainEnter(*static_cast<QKeyEvent*>(event))) {
        if (m_down.insert(Keyboard::CodeOf(*static_cast<QKeyEvent*>(event))).second)
            SendChosenAgain();
        return true;
    }
    return QDialog::eventFilter(watched, event);
}
