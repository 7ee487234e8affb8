#pragma once

#include <QDialog>
#include <memory>

struct IPrompt;
struct IStringSource;
namespace Ui {
class frmAbout;
}

// The program's title, version and description, and the way to the desktop's system information.
class frmAbout : public QDialog {
    Q_OBJECT

public:
    frmAbout(IPrompt& prompt, const IStringSource& strings, QWidget* parent = nullptr);
    ~frmAbout() override;

private:
    void ShowSystemInformation();

    IPrompt& m_prompt;
    const IStringSource& m_strings;
    std::unique_ptr<Ui::frmAbout> m_ui;
};
