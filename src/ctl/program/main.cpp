#include "core/base/CoreDumps.h"
#include "ctl/program/Program.h"

#include <QCoreApplication>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <langinfo.h>

int main(int argc, char* argv[])
{
    ForbidCoreDumps();
    // Scripts often run without a locale. Qt would switch to UTF-8 by itself, but with a warning on standard
    // error.
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0)
        setenv("LC_ALL", "C.UTF-8", 1);

    const QCoreApplication application(argc, argv);
    return RunProgram(QCoreApplication::arguments().mid(1));
}
