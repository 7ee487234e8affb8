#pragma once

#include "radio/agent/Views.h"

#include <QDialog>
#include <memory>

class Map27Executive;
struct IStringSource;
namespace Ui {
class frmNumInfoDiagnostics;
}

// Keeps the radio's latest report about its numbering, shown or not, and says what in it contradicts the
// configuration. Modeless; hidden between uses.
class frmNumInfoDiagnostics : public QDialog, public INumberingView {
    Q_OBJECT

public:
    // Both must outlive the window.
    frmNumInfoDiagnostics(const IStringSource& strings, Map27Executive& executive);
    ~frmNumInfoDiagnostics() override;

    void DisplayDiags(const RadioNumbering& numbering) override;
    void ShowDoubts(const QStringList& doubts);

private:
    const IStringSource& m_strings;
    std::unique_ptr<Ui::frmNumInfoDiagnostics> m_ui;
};
