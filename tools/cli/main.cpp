// zorvik-cli: captures, decodes and exports the probe's data stream from the command line.
#include "Commands.h"
#include "StopSignals.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
    zorvik::cli::installStopSignals();
    std::vector<std::string> args;
    for (int i = 1; i < argc; ++i)
        args.emplace_back(argv[i]);
    return zorvik::cli::runCommandLine(args);
}
