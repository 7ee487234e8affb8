#include "simulator/program/MakePort.h"

#include "simulator/program/PtyPort.h"
#include "simulator/program/TcpPort.h"

namespace sim {

std::unique_ptr<Port> MakePort(const Options& options)
{
    if (!options.ptyLink.isEmpty())
        return std::make_unique<PtyPort>(options.ptyLink);
    return std::make_unique<TcpPort>(options.listenHost, options.listenPort);
}

} // namespace sim
