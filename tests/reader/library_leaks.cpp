// What the CAD library, by which the tests make their shapes, never gives back. The leak sanitizer asks by this name.
extern "C" const char* __lsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier)

extern "C" const char* __lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libTK\n";
}
