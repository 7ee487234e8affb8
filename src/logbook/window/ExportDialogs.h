#pragma once

#include <functional>
#include <memory>

class QPrinter;
class QString;
class QWidget;
struct IStringSource;

// What is asked before something is written or printed. `then` is called only where somebody chooses; both
// stand in front of their owner and let everything else go on.
namespace ExportDialogs {

void AskForFile(QWidget& owner, const IStringSource& strings, bool pdf,
                const std::function<void(const QString& file)>& then);
void AskForPrinter(QWidget& owner, const std::function<void(const std::shared_ptr<QPrinter>& printer)>& then);

} // namespace ExportDialogs
