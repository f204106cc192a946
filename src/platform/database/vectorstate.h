#pragma once

namespace kovanix {

/// To be called ahead of a step of the engine. The toolkit's text functions leave the upper halves of
/// the processor's vector registers filled; the engine is compiled for every machine, and some processors
/// carry those halves along through each of its instructions, at half the speed. Does nothing where there is
/// nothing to empty.
inline void emptyVectorRegisters() {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx"))
        asm volatile("vzeroupper" ::
                         : "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7", "xmm8", "xmm9",
                           "xmm10", "xmm11", "xmm12", "xmm13", "xmm14", "xmm15");
#endif
}

}  // namespace kovanix
