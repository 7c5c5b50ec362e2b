// The switch of a build that holds all mutants: the number in VELMORA_MUTANT is on. Where VELMORA_MUTANT_TRACE names a
// file of one byte for each number, the bytes of the mutants that are reached become 1, in every process alike.

#pragma once

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

struct VelmoraMutants {
    long on = -1;
    long count = 0;
    char* reached = nullptr;

    VelmoraMutants() {
        if (const char* number = std::getenv("VELMORA_MUTANT")) {
            on = std::strtol(number, nullptr, 10);
        }
        if (const char* trace = std::getenv("VELMORA_MUTANT_TRACE")) {
            share(::open(trace, O_RDWR | O_CLOEXEC));
        }
    }

    void share(int file) {
        struct stat about {};
        if (file < 0 || ::fstat(file, &about) != 0) {
            return;
        }
        void* bytes =
            ::mmap(nullptr, static_cast<std::size_t>(about.st_size), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        ::close(file);
        if (bytes != MAP_FAILED) {
            reached = static_cast<char*>(bytes);
            count = about.st_size;
        }
    }
};

/// Whether a mutant is on. Asked first wherever it is first reached, so that no order of initialisation matters.
inline bool velmora_mutant(long number) {
    static const VelmoraMutants mutants;
    if (number < mutants.count) {
        mutants.reached[number] = 1;
    }
    return number == mutants.on;
}
