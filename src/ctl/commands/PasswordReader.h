#pragma once

#include <QString>

// Asks for passwords: on the terminal, unseen, or from standard input, one a line in the order in which they
// are asked for. Every member raises Error when there is nothing to read from, or when the reading is
// interrupted.
class PasswordReader {
public:
    explicit PasswordReader(bool fromStandardInput) : m_fromStandardInput(fromStandardInput) {}

    QString Existing(const QString& account);
    // On the terminal it is asked for twice; Error when the two differ.
    QString New(const QString& account);

private:
    QString Read(const QString& prompt);

    bool m_fromStandardInput;
};
