#include "VelmoraApp.h"

int main(int argc, char** argv) {
    velmora::VelmoraApp application(argc, argv);
    return application.run();
}
