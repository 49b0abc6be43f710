// Sets the mode of the processor's unit for floats.
#include "common/denormals.h"

#if defined(__x86_64__) || defined(_M_X64) || defined(__SSE2__)
#include <xmmintrin.h>
#endif

#include <cstdint>

namespace tonewright {

#if defined(__x86_64__) || defined(_M_X64) || defined(__SSE2__)

void TakeDenormalsForZero() {
    constexpr unsigned ResultsAreZero = 0x8000;
    constexpr unsigned OperandsAreZero = 0x0040;
    _mm_setcsr(_mm_getcsr() | ResultsAreZero | OperandsAreZero);
}

#elif defined(__aarch64__)

void TakeDenormalsForZero() {
    constexpr std::uint64_t FlushToZero = std::uint64_t{1} << 24;
    std::uint64_t mode = 0;
    asm volatile("mrs %0, fpcr" : "=r"(mode));
    asm volatile("msr fpcr, %0" : : "r"(mode | FlushToZero));
}

#elif defined(__arm__) && defined(__VFP_FP__) && !defined(__SOFTFP__)

void TakeDenormalsForZero() {
    constexpr std::uint32_t FlushToZero = std::uint32_t{1} << 24;
    std::uint32_t mode = 0;
    asm volatile("vmrs %0, fpscr" : "=r"(mode));
    asm volatile("vmsr fpscr, %0" : : "r"(mode | FlushToZero));
}

#else

void TakeDenormalsForZero() {}

#endif

} // namespace tonewright
