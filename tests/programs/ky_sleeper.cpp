/* Prints "ready" and waits until its standard input ends. */

#include <cstdio>

int main()
{
    std::puts("ready");
    std::fflush(stdout);
    while (std::getchar() != EOF) { }
    return 0;
}
