#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QIcon>
#include <deque>
#include <vector>

struct IStringSource;

// One line of the message log.
struct LogLine {
    QString text;
    QString iconKey; // a key without a picture shows none
    QString tag;     // the other party; empty for a date line
    bool emergency = false;
    QString record{};    // what it is called by the event log while it is not on a disk
    bool marked = false; // and shown so

    bool operator==(const LogLine&) const = default;
};

// The lines that the message log shows, oldest first. One column; its header is the given caption.
class LogModel : public QAbstractListModel {
    Q_OBJECT

public:
    enum Role { TagRole = Qt::UserRole, IconKeyRole, EmergencyRole };

    LogModel(const IStringSource& strings, QObject* parent);

    void Append(const LogLine& line);
    void RemoveFirst(); // does nothing without a line
    void Clear();
    void Replace(std::vector<LogLine> lines);
    // These records are on a disk.
    void SetSafe(const QStringList& records);
    // Marks the lines whose records are not.
    void ShowWaiting();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QIcon Icon(const QString& key) const;
    QString Spoken(const LogLine& line) const;
    void Tell(std::size_t row);

    QString m_caption;
    QString m_waiting; // what is said of a line whose record is not on a disk
    QString m_emergency;
    QHash<QString, QString> m_pictures; // by the key of each, what it says
    std::deque<LogLine> m_lines;
    mutable QHash<QString, QIcon> m_icons; // filled on demand
};
