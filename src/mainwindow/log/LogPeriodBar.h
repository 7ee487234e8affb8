#pragma once

#include <QWidget>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class Settings;
enum class TimeUnit;
struct IStringSource;
template <typename Key> class ToolBarOf;

// The strip below the message log: its toolbar and the period that a reload shows. Where one row is too
// narrow for all of it, the period moves to a second one.
class LogPeriodBar : public QWidget {
    Q_OBJECT

public:
    enum class Button { Refresh, Clear, Font };

    LogPeriodBar(const IStringSource& strings, QWidget* parent);

    // Raise Error for a stored preference that is invalid, and when one cannot be stored.
    void Load(const Settings& settings);
    void Save(Settings& settings) const;

    std::optional<int> Period() const; // as typed; nothing when that is not a number
    TimeUnit Unit() const;

    int HeightAt(int width) const;

Q_SIGNALS:
    // Of the toolbar.
    void ButtonClicked(LogPeriodBar::Button button);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    int RowHeight() const;
    int BoxWidth() const;
    int PeriodWidth() const;
    bool FitsInOneRow(int width) const;
    void LayOut();

    ToolBarOf<Button>* tbRefreshLog;
    QLabel* lblSeeLast;
    QLineEdit* txtLogPeriod;
    QComboBox* cmbLogTimeUnit;
};
