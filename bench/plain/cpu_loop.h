// The CPU test's pass in plain C (cpu_loop.c): the passes that it counts in length_ms
// milliseconds, and the value that its last pass stored.
#pragma once

extern "C" {
double plain_cpu_loop(int length_ms);
double plain_cpu_last(void);
}
