// Stands in for a helper whose document never ends: gives one page and then nothing more.

#include <unistd.h>

#include <cstdio>

int main()
{
    std::fputs("page one\f", stdout);
    std::fflush(stdout);
    while (true) {
        pause();
    }
}
