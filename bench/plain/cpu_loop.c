/* The CPU test's pass in plain C, compiled on its own: the yardstick that the program's own
 * loop is measured against. The same expression on the same numbers, read from volatile storage
 * on every pass as the program's loop reads them, one reading of the millisecond clock per pass,
 * and a plain double for the count. */
#include <math.h>

#ifdef _WIN32
#include <windows.h>
static long long plain_ticks(void) { return (long long)(int)GetTickCount(); }
#else
#include <time.h>
static long long plain_ticks(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return (long long)(int)(t.tv_sec * 1000 + t.tv_nsec / 1000000);
}
#endif

volatile double plain_angle = 45.68;
volatile double plain_base = 3478;
volatile double plain_exponent = 3.59;
volatile double plain_divisor = 4.12;
volatile double plain_last = 0;

double plain_cpu_loop(int length_ms) {
  long long end = plain_ticks() + length_ms;
  double passes = 0;
  while (plain_ticks() < end) {
    plain_last = log(cos(plain_angle) + pow(plain_base, plain_exponent) / plain_divisor);
    passes += 1;
  }
  return passes;
}

double plain_cpu_last(void) { return plain_last; }
