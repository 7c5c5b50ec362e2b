#include <csignal>

#include "VelmoraApp.h"

int main(int argc, char** argv) {
    // A file that may not grow on is a write that fails, and no end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    velmora::VelmoraApp application(argc, argv);
    return application.run();
}
