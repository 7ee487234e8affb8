#pragma once

#include "core/texts/StringSource.h"

#include <QString>
#include <memory>

class QWidget;

// The process-wide objects of the console: built in their prescribed order, wired, and torn down in reverse.
class Application {
public:
    explicit Application(const IStringSource& strings);
    ~Application();

    // Builds everything and shows the main window; from then on window events drive the program. Raises
    // whatever could not be built; StageName() then says what it was.
    void StartUp(const QString& settingsFile);
    // Ends the session and the program as the window's close box does, without a question, whatever is open.
    // Before StartUp there is no session to end.
    void EndAtOnce();
    // Closes every secondary window, disconnects the radio and releases the objects.
    void ShutdownApplication();

    const QString& StageName() const { return m_stage; }

private:
    struct Objects;

    void ShowMainWindow();
    bool SetUp(QWidget* owner);

    const IStringSource& m_strings;
    std::unique_ptr<Objects> m_objects;
    QString m_stage; // class of the object being built; empty when none is
};
