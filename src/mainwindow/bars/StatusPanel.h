#pragma once

#include <QIcon>
#include <QLabel>

// One panel of the status bar. A text that is too long ends in "...", so that no panel pushes another one
// out.
class StatusPanel : public QLabel {
    Q_OBJECT

public:
    StatusPanel(const QString& name, QWidget* parent);

    // Width that the panel reserves for this text, whatever it shows.
    void ReserveFor(const QString& text);
    // Drawn instead of the text; the text stays what it is.
    void ShowPicture(const QIcon& picture);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_reserved;
    QIcon m_picture;
};
