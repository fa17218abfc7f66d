#include <cstdio>
#include <cstring>

/// Crashes, or with "live" does not: by it CrashFails.cmake proves that a crash fails a run under Wine.
int main(int argc, char** argv) {
    std::puts("about to crash");
    std::fflush(stdout);
    if (argc < 2 || std::strcmp(argv[1], "live") != 0)
        *static_cast<volatile int*>(nullptr) = 1;
    std::puts("still alive");
    return 0;
}
