#include "mainwindow/frame/StartPanel.h"

#include "core/texts/FormatMessage.h"
#include "core/texts/StringSource.h"
#include "mainwindow/base/TextIds.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

StartPanel::StartPanel(const IStringSource& strings, QWidget* parent) : QFrame(parent)
{
    setObjectName(QStringLiteral("startPanel"));
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(this);
    auto* text = new QLabel(FormatMessage(strings, MainText::NobodyLoggedOnYet, {}), this);
    text->setObjectName(QStringLiteral("lblNext"));
    text->setWordWrap(true);
    auto* logon = new QPushButton(strings.LoadString(MainText::LogonNow), this);
    logon->setObjectName(QStringLiteral("cmdLogon"));
    auto* setUp = new QPushButton(strings.LoadString(MainText::SetUpNow), this);
    setUp->setObjectName(QStringLiteral("cmdSetUp"));
    for (QWidget* widget : std::initializer_list<QWidget*>{text, logon, setUp})
        layout->addWidget(widget);
    connect(logon, &QPushButton::clicked, this, &StartPanel::LogonWanted);
    connect(setUp, &QPushButton::clicked, this, &StartPanel::SetUpWanted);
}

void StartPanel::Place(const QRect& room)
{
    const int width = std::min(room.width(), fontMetrics().averageCharWidth() * 64);
    const int height = std::min(room.height(), std::max(sizeHint().height(), heightForWidth(width)));
    QRect place(0, 0, width, height);
    place.moveCenter(room.center());
    setGeometry(place);
}
