#pragma once

#include "dao/base/EngineSession.h"
#include "dao/base/Location.h"
#include "dao/base/OpenOptions.h"
#include "dao/sqlite/Connection.h"
#include "dao/sqlite/Files.h"
#include <memory>

namespace dao::sqlite {

// Migrates, opens and attaches the files and checks the password: dao::OpenWorkspace on files.
EngineSession OpenSession(const Location& location, const QString& user, const QString& password,
                          const OpenOptions& options);

struct AttachedFiles {
    std::shared_ptr<Connection> connection;
    FileInfo database;
    FileInfo workgroup;
};

// Opens both files, the workgroup file attached, after checking that they are not newer than this program and
// belong together.
AttachedFiles AttachFiles(const Location& location, const OpenOptions& options);

// The same; files of an older schema are migrated first.
std::shared_ptr<Connection> OpenFiles(const Location& location, const OpenOptions& options);

// dao::CreateDatabase on files.
void CreateFiles(const Location& location, const QString& adminUser, const QString& adminPassword,
                 const PasswordCost& cost, const QString& group = {});

} // namespace dao::sqlite
