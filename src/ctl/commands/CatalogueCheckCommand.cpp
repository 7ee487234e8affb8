#include "core/texts/CatalogueCheck.h"
#include "core/texts/CatalogueFile.h"
#include "ctl/program/Command.h"
#include "ctl/program/Console.h"

namespace {

int Run(const Request& request)
{
    const QString& file = request.arguments[0];
    const Catalogue satellite = ReadCatalogue(file);
    const QStringList problems = ProblemsOf(satellite);
    for (const QString& problem : problems)
        Console::PrintError(QStringLiteral("%1: %2").arg(file, problem));
    if (problems.isEmpty())
        Console::Print(QStringLiteral("%1: complete, %2 texts").arg(file).arg(satellite.size()));
    return problems.isEmpty() ? exitOk : exitFailed;
}

} // namespace

Command CatalogueCheckCommand()
{
    return {
        .words = "catalogue check",
        .synopsis = "FILE",
        .summary = "examine the texts of a language",
        .help =
            R"(Compares FILE, such as CKYNPL7.CResourceStrs, with the texts of this program: texts that are missing,
that the program does not have, or that lack a placeholder like #01. Findings go to standard error,
one a line, with the number of the text. The exit code is 1 when there is one.)",
        .options = {},
        .fewestArguments = 1,
        .mostArguments = 1,
        .run = Run};
}
