// The floor of a process that links the library: one that links what the library stands on, uses
// nothing of it, and ends as soon as it has begun.
#include <unistd.h>

int main() { _exit(0); }
