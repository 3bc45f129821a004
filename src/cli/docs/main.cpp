#include <fstream>
#include <iostream>

#include "cli/docs/completion.h"
#include "cli/docs/man_page.h"

// Writes the manual page and the bash completion of orvanta-tool at build
// time, from the same command registry the tool itself is linked with.
//   orvanta-tool-docs MANPAGE COMPLETION
int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: orvanta-tool-docs MANPAGE COMPLETION\n";
        return 2;
    }
    std::ofstream man(argv[1]), completion(argv[2]);
    orv::cli::writeManPage(man);
    orv::cli::writeBashCompletion(completion);
    man.close();
    completion.close();
    if (!man || !completion) {
        std::cerr << "orvanta-tool-docs: cannot write " << argv[1] << " or " << argv[2] << "\n";
        return 1;
    }
    return 0;
}
