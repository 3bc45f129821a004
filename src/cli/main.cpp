#include <iostream>

#include "cli/cli.h"

int main(int argc, char** argv) {
    orv::SystemClock clock;
    return orv::cli::runTool(std::vector<std::string>(argv, argv + argc), clock, std::cout,
                             std::cerr);
}
