// Writes the control code reference to the file named on the command line;
// the build runs it so that ansi.rtf stands beside the program.

#include <fstream>
#include <iostream>

#include "support/ansireference.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: zelvan_ansi_rtf OUTPUT\n";
        return 2;
    }
    std::ofstream out(argv[1], std::ios::binary);
    out << zelvan::ansiReferenceRtf();
    return out ? 0 : 1;
}
