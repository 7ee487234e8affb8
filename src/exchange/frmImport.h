#pragma once

#include "core/base/Lane.h"
#include "exchange/ExchangedTable.h"

#include <QDialog>
#include <optional>

class QCheckBox;
class QLabel;
class QPushButton;
class QTreeWidget;

// What importing a file would change, line by line, before it is imported. Nothing is locked while somebody
// looks at it: what others have changed meanwhile is found out within the import's transaction, and then the
// list is shown again instead. Accepted when the file was imported.
class frmImport : public QDialog {
    Q_OBJECT

public:
    frmImport(const ExchangeServices& services, const ExchangedTable& table, const QString& path);

private:
    void Build();
    QCheckBox* AddChoice(const char* name, int textId);
    QPushButton* AddButton(const char* name, int textId);

    void Read();
    void Take(const QByteArray& bytes, const QString& problem);
    // Finds out what would change, and shows it.
    void Preview();
    void Show();
    void ShowProblem(const QString& problem);
    void Enable();
    void Store();
    int Count(ImportOutcome outcome) const;
    QString Text(int id) const;

    ExchangeServices m_services;
    ExchangedTable m_table;
    QString m_path;
    std::optional<CsvTable> m_file;
    std::vector<ImportLine> m_lines;
    QString m_notice;
    QLabel* m_text = nullptr;
    QTreeWidget* m_list = nullptr;
    QCheckBox* m_option = nullptr; // null when there is none
    QCheckBox* m_leaveOut = nullptr;
    QPushButton* m_import = nullptr;
    Lane m_lane{Lane::Kind::OwnThread}; // the last one: it ends before what its answers use
};
