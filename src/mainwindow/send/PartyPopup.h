#pragma once

#include <QListWidget>
#include <functional>

class Directory;
class QComboBox;
class QLineEdit;
struct IStringSource;

// Offers parties while an address is typed, above its field and within the window. It never has the keyboard
// and changes nothing until a party is chosen: with Up and Down and then Accept, or with a click. Esc, a
// click elsewhere and whatever takes the keyboard from the field close it.
class PartyPopup : public QListWidget {
    Q_OBJECT

public:
    // All must outlive it. `directory` is asked for each text.
    PartyPopup(const IStringSource& strings, std::function<const Directory&()> directory, QComboBox& box);

    // Enters the party that is chosen. False when none is, and nothing has changed; closed in any case.
    bool Accept();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Offer();
    void Place();
    void Step(int by);
    bool TakeKey(int key, Qt::KeyboardModifiers modifiers);

    const IStringSource& m_strings;
    std::function<const Directory&()> m_directory;
    bool IsOfBox(const QObject* object) const;

    QComboBox& m_box; // has the keyboard for its field
    QLineEdit& m_field;
};
