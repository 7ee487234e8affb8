#pragma once

#include "ctl/CtlRun.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

// A database of its own whose administrator has the password "secret", and what is imported and exported.
class Site : public testing::Test {
protected:
    CtlRun Create(const QStringList& options = {}) const
    {
        return RunWithPasswords(QStringList{"db", "create", m_target} + options);
    }
    CtlRun Import(const QString& what, const QByteArray& text, const QStringList& options = {}) const
    {
        const QString file = WriteFile(m_folder.filePath("in.csv"), text);
        return RunWithPasswords(QStringList{what, "import", m_target, file} + options);
    }
    CtlRun Export(const QString& what) const
    {
        return RunWithPasswords({what, "export", m_target, m_folder.filePath("out.csv")});
    }
    QByteArray Exported(const QString& what) const
    {
        const QString path = m_folder.filePath("out.csv");
        QFile::remove(path);
        const CtlRun run = Export(what);
        EXPECT_EQ(run.code, 0) << run.err.toStdString();
        EXPECT_EQ(static_cast<int>(QFile::permissions(path)) & 0x77, 0); // its owner's alone
        return ReadFile(path);
    }

    QTemporaryDir m_folder;
    const QString m_target = m_folder.filePath("site.kyndb");
};
