#include "core/texts/FormatMessage.h"

#include "support/Table.h"

namespace {

// Text, what becomes of it, values.
TEST(FormatMessageTest, FillsAndExpands)
{
    for (const TableRow& row : ReadTable("core.tsv", "Messages", 26)) {
        QStringList values;
        for (std::size_t i = 2; i < row.size(); ++i)
            values.append(QString::fromStdString(row[i]));
        EXPECT_EQ(FormatMessage(QString::fromStdString(row.at(0)), values).toStdString(), row.at(1))
            << row.at(0);
    }
}

} // namespace
