#pragma once

#include <QObject>
#include <QStringList>
#include <functional>
#include <optional>

class QComboBox;

// What was sent, newest first, and the place in it of somebody who goes through it. What stood there before
// is the newest of all and comes back at the end.
class Recall {
public:
    static constexpr qsizetype Most = 50;

    // An equal one moves to the front. Who goes through it begins anew.
    void Add(const QString& text);
    void Clear();
    // One step from what is shown; nothing at either end.
    std::optional<QString> Older(const QString& shown);
    std::optional<QString> Newer();

private:
    QStringList m_items;
    qsizetype m_at = -1; // -1: at what stood there before
    QString m_draft;
};

// Up and Down in an editable box, with these modifiers, recall what was sent from it. The box keeps no items.
class RecallKeys : public QObject {
    Q_OBJECT

public:
    RecallKeys(QComboBox& box, Qt::KeyboardModifiers modifiers);

    void Add(const QString& text) { m_recall.Add(text); }
    void Clear() { m_recall.Clear(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QComboBox& m_box;
    Qt::KeyboardModifiers m_modifiers;
    Recall m_recall;
};
