#pragma once

#include <QObject>
#include <functional>

// F1 in any window of the program asks for the page of the guide that fits it.
class HelpKey : public QObject {
    Q_OBJECT

public:
    // `show` is given the page's name; empty for the contents.
    explicit HelpKey(std::function<void(const QString& page)> show);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void(const QString& page)> m_show;
};
