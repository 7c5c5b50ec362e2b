// What the libraries never give back by which the tests make shapes and read scenes. The leak sanitizer asks by this
// name.
extern "C" const char* __lsan_default_suppressions(); // NOLINT(bugprone-reserved-identifier)

extern "C" const char* __lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libTK\nleak:libCoin\n";
}
